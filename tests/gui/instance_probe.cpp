// A stand-in for the editor in the two-process test: "serve PATH" listens as an instance that
// shows PATH and prints "activated" when asked to come forward; "start ARGS..." runs the real
// start-up over the real finder and prints "window" if it got as far as making one.

#include "app/instance_protocol.h"
#include "app/qt/instance_finder.h"
#include "app/startup.h"
#include "tests/support/scripted_ui.h"

#include <QCoreApplication>
#include <QDir>
#include <QTimer>

#include <cstdio>
#include <filesystem>

using namespace quirnel;

namespace {

class ProbeWindow : public StartupWindow
{
public:
    void SetExplicitStart(bool) override {}
    bool Create(const std::string&) override
    {
        std::puts("window");
        std::fflush(stdout);
        return true;
    }
    bool IsFirstRun() const override { return false; }
    std::string MostRecentFile() const override { return {}; }
    void Show() override {}
    void OpenFile(const std::string& path, char) override
    {
        std::printf("open %s\n", path.c_str());
        std::fflush(stdout);
    }
    void OpenAssociationDialog() override {}
    void Close() override {}
};

class ProbeHost : public StartupHost
{
public:
    void InitializeFramework() override {}
    void PrintUsage(const std::string&) override {}
    void ShowFatalMessage(const std::string&) override {}
    std::string CurrentFolder() override { return QDir::currentPath().toStdString(); }
    std::string ProgramPath() override { return "probe"; }
    InstanceFinder& Instances() override { return finder; }
    ost::UserInterface& Ui() override { return ui; }
    AssociationStore& Associations() override { return store; }
    std::unique_ptr<StartupWindow> CreateMainWindow() override
    {
        return std::make_unique<ProbeWindow>();
    }
    void ProcessPendingMessages(int) override {}
    void RegisterInstanceMessages() override {}
    int RunMessageLoop(StartupWindow&) override { return 0; }

    LocalSocketInstanceFinder finder;
    test::ScriptedUi ui;
    InMemoryAssociationStore store;
};

} // namespace

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    if (argc >= 3 && std::string(argv[1]) == "serve") {
        const std::u16string shown = QString::fromLocal8Bit(argv[2]).toStdU16String();
        InstanceServer server(
            [&](const std::u16string& path) { return IsSameDocument(path, shown); },
            [] {
                std::puts("activated");
                std::fflush(stdout);
                QTimer::singleShot(0, [] { QCoreApplication::exit(0); });
            });
        if (!server.Listen(kWindowClassName))
            return 2;
        std::puts("listening");
        std::fflush(stdout);
        return app.exec();
    }
    if (argc >= 2 && std::string(argv[1]) == "start") {
        ProbeHost host;
        std::vector<std::string> arguments(argv + 2, argv + argc);
        return RunStartup(arguments, host);
    }
    return 3;
}
