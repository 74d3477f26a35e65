#pragma once
// The start-up and shutdown hosts over Qt: the real finder, message boxes, the freedesktop
// association store and the MainWindow.

#include "app/qt/instance_finder.h"
#include "app/startup.h"
#include "ostrand/qt/qt_user_interface.h"

#include <QElapsedTimer>
#include <QWidget>

#include <memory>

namespace quirnel {

class MainWindow;

class QtStartupHost : public StartupHost, public ShutdownHost
{
public:
    QtStartupHost();
    ~QtStartupHost() override;

    // ---- StartupHost ----
    void InitializeFramework() override;
    void PrintUsage(const std::string& text) override;
    void ShowFatalMessage(const std::string& text) override;
    std::string CurrentFolder() override;
    std::string ProgramPath() override;
    InstanceFinder& Instances() override { return m_finder; }
    ost::UserInterface& Ui() override { return m_ui; }
    AssociationStore& Associations() override { return *m_associations; }
    std::unique_ptr<StartupWindow> CreateMainWindow() override;
    void ProcessPendingMessages(int maxCount) override;
    void RegisterInstanceMessages() override;
    int RunMessageLoop(StartupWindow& window) override;

    // ---- ShutdownHost ----
    void TearDownFramework() override;
    BackgroundWorker* Worker() override { return &m_worker; }
    void Sleep(std::chrono::milliseconds duration) override;
    void TearDownUserInterface() override;
    std::string ProgramToStartAtExit() override { return {}; }
    void StartProgram(const std::string& program) override;
    void InstallQuietFailureFilter() override {}
    void ClearRunningFlag() override { m_running = false; }

    /// Milliseconds from start to the first turn of the message loop; -1 before it.
    qint64 StartToLoopMilliseconds() const { return m_firstLoopTurn; }

private:
    QElapsedTimer m_sinceStart;
    qint64 m_firstLoopTurn = -1;
    LocalSocketInstanceFinder m_finder;
    ost::QtUserInterface m_ui;
    std::unique_ptr<AssociationStore> m_associations;
    BackgroundWorker m_worker;
    MainWindow* m_window = nullptr;
    bool m_running = true;
};

} // namespace quirnel
