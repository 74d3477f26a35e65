#pragma once
// Helpers shared by the main-window suites: answering modal boxes from a timer, file bytes,
// cell text, finding menu entries, and a window over a temporary folder.

#include "app/qt/main_window.h"

#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QFile>
#include <QMenu>
#include <QMessageBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <functional>
#include <memory>

namespace quirnel::test {

/// Runs `act` on the next modal widget (dialog or message box) once it is shown.
inline void OnNextModal(std::function<void(QWidget*)> act)
{
    auto* timer = new QTimer;
    timer->setInterval(10);
    auto tries = std::make_shared<int>(0);
    QObject::connect(timer, &QTimer::timeout, [timer, act, tries] {
        QWidget* modal = QApplication::activeModalWidget();
        if (!modal && ++*tries < 500)
            return;
        timer->stop();
        timer->deleteLater();
        if (modal)
            act(modal);
    });
    timer->start();
}

/// What a message box said; filled when the box is closed.
struct SeenBox
{
    QString title;
    QString text;
};

/// Closes the next message box and remembers its title and text.
inline void RecordNextBox(SeenBox& seen)
{
    OnNextModal([&seen](QWidget* modal) {
        auto* box = qobject_cast<QMessageBox*>(modal);
        QVERIFY(box);
        seen.title = box->windowTitle();
        seen.text = box->text();
        box->accept();
    });
}

inline bool WriteBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly | QIODevice::Truncate) &&
           file.write(bytes) == bytes.size();
}

inline QByteArray ReadBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline QString CellText(MainWindow& window, int row, int column)
{
    return QString::fromStdU16String(window.Document().CellTextWide(row, column));
}

/// Chooses the entry with this value in the dialog's combo box named `name` and presses OK.
inline void ChooseAndAccept(QWidget* dialog, const char* name, int value)
{
    auto* box = dialog->findChild<QComboBox*>(QString::fromUtf8(name));
    QVERIFY(box);
    const int index = box->findData(value);
    QVERIFY(index >= 0);
    box->setCurrentIndex(index);
    static_cast<QDialog*>(dialog)->accept();
}

/// The entry with this text in the menu, or with `deep` also in its submenus.
inline QAction* FindAction(QMenu* menu, const QString& text, bool deep = true)
{
    for (QAction* action : menu->actions()) {
        if (action->text() == text)
            return action;
        if (deep && action->menu())
            if (QAction* found = FindAction(action->menu(), text))
                return found;
    }
    return nullptr;
}

/// A temporary folder holding the files and the settings of the windows a test makes.
class WindowFolder
{
public:
    QString Path(const QString& name) const { return m_dir.path() + QStringLiteral("/") + name; }
    MainWindowOptions Options() const
    {
        MainWindowOptions options;
        options.settingsFolder = Path(QStringLiteral("settings")).toStdString();
        return options;
    }
    std::unique_ptr<MainWindow> NewWindow() const
    {
        return std::make_unique<MainWindow>(Options());
    }
    /// A window with `bytes` written to `name` and opened; null if either step fails.
    std::unique_ptr<MainWindow> OpenWindow(const QByteArray& bytes,
                                           const QString& name = QStringLiteral("t.csv")) const
    {
        auto window = NewWindow();
        if (!WriteBytes(Path(name), bytes) || !window->OpenPath(Path(name).toStdString()))
            return nullptr;
        return window;
    }

private:
    QTemporaryDir m_dir;
};

} // namespace quirnel::test
