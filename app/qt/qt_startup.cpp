#include "app/qt/qt_startup.h"

#include "app/instance_protocol.h"
#include "app/qt/main_window.h"

#include <QApplication>
#include <QDir>
#include <QIcon>
#include <QMessageBox>
#include <QProcess>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>

#include <cstdio>

namespace quirnel {

namespace {

std::string XdgFolder(const char* variable, const char* fallback)
{
    QString value = qEnvironmentVariable(variable);
    if (value.isEmpty() || !QDir::isAbsolutePath(value))
        value = QDir::homePath() + QStringLiteral("/") + QString::fromUtf8(fallback);
    return value.toStdString();
}

/// Start-up's view of the main window; the window object lives exactly as long as this.
class MainWindowStartup : public StartupWindow
{
public:
    explicit MainWindowStartup(std::unique_ptr<MainWindow> window) : m_window(std::move(window)) {}
    void SetExplicitStart(bool on) override { m_window->SetExplicitStart(on); }
    bool Create(const std::string& title) override
    {
        m_window->setWindowTitle(QString::fromStdString(title));
        m_window->show();
        m_window->AutoOpenLastFile();
        return true;
    }
    bool IsFirstRun() const override { return m_window->IsFirstRun(); }
    std::string MostRecentFile() const override { return m_window->MostRecentFile(); }
    void Show() override { m_window->show(); }
    void OpenFile(const std::string& path, char delimiter) override
    {
        m_window->OpenPath(path, delimiter);
    }
    void OpenAssociationDialog() override { m_window->OnCommand(16176); }
    void Close() override { m_window->close(); }
    MainWindow& Window() { return *m_window; }

private:
    std::unique_ptr<MainWindow> m_window;
};

} // namespace

QtStartupHost::QtStartupHost()
{
    m_sinceStart.start();
    m_associations = std::make_unique<FreedesktopAssociationStore>(
        XdgFolder("XDG_DATA_HOME", ".local/share"), XdgFolder("XDG_CONFIG_HOME", ".config"));
}

QtStartupHost::~QtStartupHost() = default;

void QtStartupHost::InitializeFramework()
{
    QApplication::setApplicationName(QString::fromUtf8(Product().name));
    QApplication::setApplicationVersion(QString::fromUtf8(Product().version));
    QApplication::setWindowIcon(QIcon::fromTheme(QStringLiteral("x-office-spreadsheet")));
    m_worker.Start();
}

void QtStartupHost::PrintUsage(const std::string& text)
{
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

void QtStartupHost::ShowFatalMessage(const std::string& text)
{
    std::fprintf(stderr, "%s\n", text.c_str());
    m_ui.Message(Product().name, text, ost::MessageIcon::Error);
}

std::string QtStartupHost::CurrentFolder()
{
    return QDir::currentPath().toStdString();
}

std::string QtStartupHost::ProgramPath()
{
    return QCoreApplication::applicationFilePath().toStdString();
}

std::unique_ptr<StartupWindow> QtStartupHost::CreateMainWindow()
{
    MainWindowOptions options;
    options.instances = &m_finder;
    options.associations = m_associations.get();
    options.programPath = ProgramPath();
    auto window = std::make_unique<MainWindow>(options);
    m_window = window.get();
    m_ui.SetParentWidget(m_window);
    return std::make_unique<MainWindowStartup>(std::move(window));
}

void QtStartupHost::ProcessPendingMessages(int maxCount)
{
    // Each pass handles what is queued now; a few passes let a new window lay out and paint.
    for (int i = 0; i < maxCount && i < 3 && QCoreApplication::instance(); ++i)
        QCoreApplication::processEvents();
}

void QtStartupHost::RegisterInstanceMessages()
{
    if (m_window && m_window->ListenForInstances())
        m_finder.SetOwnName(QString::fromStdString(
            InstanceSocketName(kWindowClassName, LocalSocketInstanceFinder::UserName(),
                               static_cast<long>(QCoreApplication::applicationPid()))));
}

int QtStartupHost::RunMessageLoop(StartupWindow& window)
{
    (void)window;
    QTimer::singleShot(0, [this] {
        if (m_firstLoopTurn < 0)
            m_firstLoopTurn = m_sinceStart.elapsed();
    });
    // The window may already have closed (an association run that finished).
    if (!m_window || !m_window->isVisible())
        return 0;
    QApplication::setQuitOnLastWindowClosed(true);
    int code = QApplication::exec();
    m_window = nullptr;
    return code;
}

void QtStartupHost::TearDownFramework()
{
    m_ui.SetParentWidget(nullptr);
}

void QtStartupHost::Sleep(std::chrono::milliseconds duration)
{
    QThread::msleep(static_cast<unsigned long>(duration.count()));
}

void QtStartupHost::TearDownUserInterface()
{
    while (QApplication::overrideCursor())
        QApplication::restoreOverrideCursor();
}

void QtStartupHost::StartProgram(const std::string& program)
{
    QProcess::startDetached(QString::fromStdString(program), {});
}

} // namespace quirnel
