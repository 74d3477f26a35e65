#include "app/startup.h"

#include "app/instance_protocol.h"
#include "ostrand/core/user_interface.h"

namespace quirnel {

const ProductIdentity& Product()
{
    static const ProductIdentity identity;
    return identity;
}

void AskFirstRunQuestion(ost::UserInterface& ui, AssociationStore& store,
                         const std::string& programPath)
{
    int answer = ui.Message("Welcome!",
                            std::string("Thank you for trying our software!\n\nDo you want to open "
                                        ".CSV files with ") +
                                Product().name + " by default?",
                            ost::MessageIcon::Question, ost::kButtonYes | ost::kButtonNo);
    if (answer != ost::kButtonYes)
        return;
    AssociateOptions options;
    options.asDefault = true;
    options.suppressSuccess = true;
    options.addNewFileEntry = false;
    options.skipConfirmation = true;
    AssociateExtension({"csv"}, options, store, ui, programPath);
}

int RunStartup(const std::vector<std::string>& arguments, StartupHost& host)
{
    host.InitializeFramework();

    if (HasHelpSwitch(arguments)) {
        host.PrintUsage(UsageText());
        return 0;
    }

    std::string fault;
    std::optional<StartupOptions> parsed =
        ParseStartupOptions(arguments, host.CurrentFolder(), &fault);
    if (!parsed) {
        host.ShowFatalMessage(fault);
        return 1;
    }
    const StartupOptions& options = *parsed;
    const bool hasPath = HasNonBlank(options.path);

    if (!options.associationList && hasPath) {
        if (auto other =
                host.Instances().FindInstanceWithDocument(kWindowClassName, options.path)) {
            host.Instances().BringToForeground(*other);
            return 0;
        }
    }

    std::unique_ptr<StartupWindow> window = host.CreateMainWindow();
    if (!options.path.empty() || options.newVersion)
        window->SetExplicitStart(true);
    if (!window->Create(Product().name))
        return 0;

    if (options.newVersion) {
        std::string recent = window->MostRecentFile();
        if (!recent.empty() && !host.Instances().FindInstanceWithDocument(kWindowClassName, recent))
            window->OpenFile(recent, 0);
    } else {
        if (hasPath) {
            host.ProcessPendingMessages(100);
            window->Show();
            window->OpenFile(options.path, options.delimiter);
        }
        if (!options.associationList) {
            if (window->IsFirstRun())
                AskFirstRunQuestion(host.Ui(), host.Associations(), host.ProgramPath());
        } else {
            AssociateOptions associate;
            associate.asDefault = true;
            associate.suppressSuccess = !options.reportSuccess;
            associate.addNewFileEntry = false;
            associate.skipConfirmation = options.noConfirm;
            if (AssociateExtension(*options.associationList, associate, host.Associations(),
                                   host.Ui(), host.ProgramPath())) {
                window->OpenAssociationDialog();
            } else {
                host.ProcessPendingMessages(100);
                window->Close();
            }
        }
    }

    host.RegisterInstanceMessages();
    host.RunMessageLoop(*window);
    window.reset();
    return 0;
}

BackgroundWorker::~BackgroundWorker()
{
    RequestStop();
    if (m_thread.joinable())
        m_thread.join();
}

void BackgroundWorker::Start()
{
    if (m_thread.joinable())
        return;
    m_stop = false;
    m_running = true;
    m_thread = std::thread([this] { Run(); });
}

void BackgroundWorker::Post(std::function<void()> task)
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_tasks.push_back(std::move(task));
    }
    m_wake.notify_one();
}

void BackgroundWorker::RequestStop()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_one();
}

void BackgroundWorker::Reap()
{
    if (!m_running && m_thread.joinable())
        m_thread.join();
}

void BackgroundWorker::Run()
{
    for (;;) {
        std::function<void()> task;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_wake.wait(lock, [this] { return m_stop || !m_tasks.empty(); });
            if (m_stop)
                break;
            task = std::move(m_tasks.front());
            m_tasks.pop_front();
        }
        task();
    }
    m_running = false;
}

int Shutdown(ShutdownHost& host, int startupResult)
{
    host.TearDownFramework();
    if (BackgroundWorker* worker = host.Worker(); worker && worker->IsRunning()) {
        worker->RequestStop();
        while (worker->IsRunning())
            host.Sleep(kWorkerStopPoll);
        worker->Reap();
    }
    host.TearDownUserInterface();
    if (std::string program = host.ProgramToStartAtExit(); !program.empty())
        host.StartProgram(program);
    host.InstallQuietFailureFilter();
    host.ClearRunningFlag();
    return startupResult;
}

} // namespace quirnel
