#pragma once
// The program's start-up and shutdown in their fixed order, written against small interfaces
// so that the order and every decision can run without a window system.

#include "app/association.h"
#include "app/startup_options.h"

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace ost {
class UserInterface;
}

namespace quirnel {

/// Fixed once at start and read everywhere (titles, messages, association values).
struct ProductIdentity
{
    const char* name = "Quirnel";
    const char16_t* wideName = u"Quirnel";
    const char* version = "8.0";
    int number = 20417;
    const char* historyFileName = "rh20417.txt";
};
const ProductIdentity& Product();

/// Another instance's main window, as the finder names it (its socket name here).
using InstanceHandle = std::string;

class InstanceFinder
{
public:
    virtual ~InstanceFinder() = default;
    /// Another instance whose main window has this (absolute) document open; an empty path
    /// finds nothing.
    virtual std::optional<InstanceHandle> FindInstanceWithDocument(const std::string& className,
                                                                   const std::string& path) = 0;
    virtual void BringToForeground(const InstanceHandle& instance) = 0;
};

/// What start-up needs of the main window.
class StartupWindow
{
public:
    virtual ~StartupWindow() = default;
    /// A path or /ost_new_version was given: the window does not reopen its last file itself.
    virtual void SetExplicitStart(bool explicitStart) = 0;
    /// Creates the window titled `title`; false when that fails.
    virtual bool Create(const std::string& title) = 0;
    /// The settings file did not exist when the window loaded its settings.
    virtual bool IsFirstRun() const = 0;
    /// The most recent entry of the recent-files list, or "".
    virtual std::string MostRecentFile() const = 0;
    virtual void Show() = 0;
    /// Opens through the reader; failures are reported by the reader and the window stays.
    virtual void OpenFile(const std::string& path, char delimiter) = 0;
    virtual void OpenAssociationDialog() = 0;
    virtual void Close() = 0;
};

class StartupHost
{
public:
    virtual ~StartupHost() = default;
    virtual void InitializeFramework() = 0;
    virtual void PrintUsage(const std::string& text) = 0;
    /// Shows a command-line fault; the process ends after it.
    virtual void ShowFatalMessage(const std::string& text) = 0;
    virtual std::string CurrentFolder() = 0;
    virtual std::string ProgramPath() = 0;
    virtual InstanceFinder& Instances() = 0;
    virtual ost::UserInterface& Ui() = 0;
    virtual AssociationStore& Associations() = 0;
    virtual std::unique_ptr<StartupWindow> CreateMainWindow() = 0;
    /// Lets the toolkit handle up to this many pending events (so a new window paints).
    virtual void ProcessPendingMessages(int maxCount) = 0;
    /// Starts answering other instances' requests.
    virtual void RegisterInstanceMessages() = 0;
    virtual int RunMessageLoop(StartupWindow& window) = 0;
};

/// Exit code of the process: 0, or 1 after a command-line fault (the only early failure a
/// script can act on).
int RunStartup(const std::vector<std::string>& arguments, StartupHost& host);

/// The first-run question and, on Yes, the association of ".csv".
void AskFirstRunQuestion(ost::UserInterface& ui, AssociationStore& store,
                         const std::string& programPath);

/// The framework's one background thread: runs posted tasks in order until asked to stop.
class BackgroundWorker
{
public:
    BackgroundWorker() = default;
    ~BackgroundWorker();
    BackgroundWorker(const BackgroundWorker&) = delete;
    BackgroundWorker& operator=(const BackgroundWorker&) = delete;

    void Start();
    void Post(std::function<void()> task);
    /// Asks the thread to end after its current task; does not wait.
    void RequestStop();
    bool IsRunning() const { return m_running.load(); }
    /// Joins a thread that has ended (after IsRunning turned false).
    void Reap();

private:
    void Run();

    std::thread m_thread;
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<std::function<void()>> m_tasks;
    bool m_stop = false;
    std::atomic<bool> m_running{false};
};

class ShutdownHost
{
public:
    virtual ~ShutdownHost() = default;
    virtual void TearDownFramework() = 0;
    /// nullptr when the framework never started its worker.
    virtual BackgroundWorker* Worker() = 0;
    virtual void Sleep(std::chrono::milliseconds duration) = 0;
    virtual void TearDownUserInterface() = 0;
    /// A program to start at exit (set by an update), or "".
    virtual std::string ProgramToStartAtExit() = 0;
    virtual void StartProgram(const std::string& program) = 0;
    virtual void InstallQuietFailureFilter() = 0;
    virtual void ClearRunningFlag() = 0;
};

inline constexpr std::chrono::milliseconds kWorkerStopPoll{40};

/// Tears down in order and returns `startupResult`.
int Shutdown(ShutdownHost& host, int startupResult);

} // namespace quirnel
