#include "app/startup.h"
#include "tests/support/scripted_ui.h"

#include <gtest/gtest.h>

namespace quirnel {
namespace {

using test::ScriptedUi;

const char* const kWelcome =
    "Thank you for trying our software!\n\nDo you want to open .CSV files with Quirnel by "
    "default?";

/// Records every call start-up makes, in order, as one line each.
class RecordingHost : public StartupHost, public InstanceFinder
{
public:
    class Window : public StartupWindow
    {
    public:
        explicit Window(RecordingHost& host) : m_host(host) {}
        ~Window() override { m_host.Log("window destroyed"); }
        void SetExplicitStart(bool on) override { m_host.Log(on ? "explicit" : "not explicit"); }
        bool Create(const std::string& title) override
        {
            m_host.Log("create " + title);
            return m_host.createSucceeds;
        }
        bool IsFirstRun() const override { return m_host.firstRun; }
        std::string MostRecentFile() const override { return m_host.recentFile; }
        void Show() override { m_host.Log("show"); }
        void OpenFile(const std::string& path, char delimiter) override
        {
            m_host.Log("open " + path + " " + std::to_string(int(delimiter)));
        }
        void OpenAssociationDialog() override { m_host.Log("association dialog"); }
        void Close() override { m_host.Log("close"); }

    private:
        RecordingHost& m_host;
    };

    void Log(std::string line) { calls.push_back(std::move(line)); }

    void InitializeFramework() override { Log("init"); }
    void PrintUsage(const std::string&) override { Log("usage"); }
    void ShowFatalMessage(const std::string& text) override { Log("fatal " + text); }
    std::string CurrentFolder() override { return "/data"; }
    std::string ProgramPath() override { return "/bin/quirnel"; }
    InstanceFinder& Instances() override { return *this; }
    ost::UserInterface& Ui() override { return ui; }
    AssociationStore& Associations() override { return store; }
    std::unique_ptr<StartupWindow> CreateMainWindow() override
    {
        Log("new window");
        return std::make_unique<Window>(*this);
    }
    void ProcessPendingMessages(int maxCount) override
    {
        Log("pending " + std::to_string(maxCount));
    }
    void RegisterInstanceMessages() override { Log("listen"); }
    int RunMessageLoop(StartupWindow&) override
    {
        Log("loop");
        return 7;
    }
    std::optional<InstanceHandle> FindInstanceWithDocument(const std::string& className,
                                                           const std::string& path) override
    {
        Log("find " + className + " " + path);
        if (path == otherInstancePath)
            return InstanceHandle("other");
        return std::nullopt;
    }
    void BringToForeground(const InstanceHandle& instance) override { Log("raise " + instance); }

    std::vector<std::string> calls;
    ScriptedUi ui;
    InMemoryAssociationStore store;
    bool createSucceeds = true;
    bool firstRun = false;
    std::string recentFile;
    std::string otherInstancePath = "<none>";
};

using Calls = std::vector<std::string>;

TEST(RunStartup, OpensCommandLineFileWithDelimiter)
{
    RecordingHost host;
    EXPECT_EQ(RunStartup({"/sep2", "a.csv"}, host), 0);
    EXPECT_EQ(host.calls, (Calls{"init", "find Quirnel Window Class /data/a.csv", "new window",
                                 "explicit", "create Quirnel", "pending 100", "show",
                                 "open /data/a.csv 9", "listen", "loop", "window destroyed"}));
}

TEST(RunStartup, DocumentShownElsewhereRaisesThatInstanceAndEnds)
{
    RecordingHost host;
    host.otherInstancePath = "/data/a.csv";
    EXPECT_EQ(RunStartup({"a.csv"}, host), 0);
    EXPECT_EQ(host.calls, (Calls{"init", "find Quirnel Window Class /data/a.csv", "raise other"}));
}

TEST(RunStartup, CommandLineFaultEndsBeforeAnyWindow)
{
    RecordingHost host;
    EXPECT_EQ(RunStartup({"a.csv", "b.csv"}, host), 1);
    ASSERT_EQ(host.calls.size(), 2u);
    EXPECT_EQ(host.calls[1].substr(0, 6), "fatal ");
    RecordingHost other;
    RunStartup({"/x"}, other);
    EXPECT_EQ(other.calls, (Calls{"init", "fatal Invalid command line switch:\r\n/x"}));
}

TEST(RunStartup, HelpPrintsUsageWithoutWindow)
{
    RecordingHost host;
    EXPECT_EQ(RunStartup({"a.csv", "-help"}, host), 0);
    EXPECT_EQ(host.calls, (Calls{"init", "usage"}));
}

TEST(RunStartup, BlankPathOpensNothing)
{
    RecordingHost host;
    RunStartup({"  "}, host);
    EXPECT_EQ(host.calls, (Calls{"init", "new window", "explicit", "create Quirnel", "listen",
                                 "loop", "window destroyed"}));
}

TEST(RunStartup, FirstRunAsksWelcomeAndYesAssociatesCsvQuietly)
{
    RecordingHost host;
    host.firstRun = true;
    host.ui.Expect("Welcome!", kWelcome, ost::kButtonYes);
    RunStartup({"a.csv"}, host);
    EXPECT_EQ(host.store.ReadValue(AssociationRoot::Classes, ".csv", ""),
              std::optional<std::string>("Veltrane Quirnel"));
}

TEST(RunStartup, FirstRunNoLeavesAssociationsAlone)
{
    RecordingHost host;
    host.firstRun = true;
    host.ui.Expect("Welcome!", kWelcome, ost::kButtonNo);
    RunStartup({}, host);
    EXPECT_TRUE(host.store.Keys().empty());
}

TEST(RunStartup, AssociationSwitchSkipsWelcomeAndInstanceCheck)
{
    RecordingHost host;
    host.firstRun = true;
    host.otherInstancePath = "/data/a.csv";
    RunStartup({"/a\"csv?tsv\"", "a.csv"}, host);
    EXPECT_EQ(host.calls, (Calls{"init", "new window", "explicit", "create Quirnel", "pending 100",
                                 "show", "open /data/a.csv 0", "pending 100", "close", "listen",
                                 "loop", "window destroyed"}));
    EXPECT_TRUE(host.store.HasKey(AssociationRoot::Classes, ".tsv"));
}

TEST(RunStartup, AssociationReportsSuccessAndAnotherOpensDialog)
{
    RecordingHost host;
    host.ui.Expect("Associate", "The association was successful.", ost::kFirstExtraButtonId);
    RunStartup({"/rs", "/a\"csv\""}, host);
    EXPECT_EQ(host.calls, (Calls{"init", "new window", "create Quirnel", "association dialog",
                                 "listen", "loop", "window destroyed"}));
}

TEST(RunStartup, NewVersionReopensRecentFileUnlessShownElsewhere)
{
    RecordingHost host;
    host.recentFile = "/data/r.csv";
    RunStartup({"/ost_new_version"}, host);
    EXPECT_EQ(host.calls, (Calls{"init", "new window", "explicit", "create Quirnel",
                                 "find Quirnel Window Class /data/r.csv", "open /data/r.csv 0",
                                 "listen", "loop", "window destroyed"}));

    RecordingHost shown;
    shown.recentFile = "/data/r.csv";
    shown.otherInstancePath = "/data/r.csv";
    shown.firstRun = true; // never asked with /ost_new_version
    RunStartup({"/ost_new_version"}, shown);
    EXPECT_EQ(std::count(shown.calls.begin(), shown.calls.end(), "open /data/r.csv 0"), 0);
}

TEST(RunStartup, FailedWindowCreationEndsSilently)
{
    RecordingHost host;
    host.createSucceeds = false;
    EXPECT_EQ(RunStartup({"a.csv"}, host), 0);
    EXPECT_EQ(host.calls.back(), "window destroyed");
    EXPECT_EQ(std::count(host.calls.begin(), host.calls.end(), "loop"), 0);
}

class RecordingShutdown : public ShutdownHost
{
public:
    void TearDownFramework() override { calls.push_back("framework"); }
    BackgroundWorker* Worker() override { return worker; }
    void Sleep(std::chrono::milliseconds duration) override
    {
        calls.push_back("sleep " + std::to_string(duration.count()));
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    void TearDownUserInterface() override { calls.push_back("ui"); }
    std::string ProgramToStartAtExit() override { return program; }
    void StartProgram(const std::string& p) override { calls.push_back("start " + p); }
    void InstallQuietFailureFilter() override { calls.push_back("filter"); }
    void ClearRunningFlag() override { calls.push_back("not running"); }

    std::vector<std::string> calls;
    BackgroundWorker* worker = nullptr;
    std::string program;
};

TEST(Shutdown, RunsInOrderWithoutWorker)
{
    RecordingShutdown host;
    host.program = "/tmp/setup";
    EXPECT_EQ(Shutdown(host, 0), 0);
    EXPECT_EQ(host.calls, (Calls{"framework", "ui", "start /tmp/setup", "filter", "not running"}));
}

TEST(Shutdown, WorkerIsStoppedAndAwaitedBeforeUserInterface)
{
    BackgroundWorker worker;
    worker.Start();
    std::atomic<bool> release{false};
    worker.Post([&] {
        while (!release)
            std::this_thread::yield();
    });
    RecordingShutdown host;
    host.worker = &worker;
    std::thread releaser([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
        release = true;
    });
    Shutdown(host, 0);
    releaser.join();
    EXPECT_FALSE(worker.IsRunning());
    ASSERT_GE(host.calls.size(), 4u);
    EXPECT_EQ(host.calls.front(), "framework");
    auto ui = std::find(host.calls.begin(), host.calls.end(), "ui");
    ASSERT_NE(ui, host.calls.end());
    for (auto it = host.calls.begin() + 1; it != ui; ++it)
        EXPECT_EQ(*it, "sleep 40");
}

TEST(BackgroundWorker, RunsPostedTasksInOrder)
{
    std::vector<int> order;
    {
        BackgroundWorker worker;
        worker.Start();
        std::atomic<bool> done{false};
        worker.Post([&] { order.push_back(1); });
        worker.Post([&] { order.push_back(2); });
        worker.Post([&] { done = true; });
        while (!done)
            std::this_thread::yield();
    }
    EXPECT_EQ(order, (std::vector<int>{1, 2}));
}

} // namespace
} // namespace quirnel
