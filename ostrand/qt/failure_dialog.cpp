#include "ostrand/qt/failure_dialog.h"

#include "ostrand/core/fatal.h"

#include <QApplication>
#include <QMessageBox>
#include <QString>
#include <QThread>

namespace ost {
namespace {

void ReportInDialog(const char* message)
{
    // The text always reaches standard error too: the dialog may fail to appear when the
    // program is already broken, and a terminal user should see why it stopped.
    ReportToStandardError(message);
    auto* app = qobject_cast<QApplication*>(QCoreApplication::instance());
    if (!app || QThread::currentThread() != app->thread())
        return;
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Quirnel"), QString::fromUtf8(message),
                    QMessageBox::Ok);
    box.exec();
}

} // namespace

void InstallFailureDialog()
{
    SetFailureReporter(&ReportInDialog);
}

} // namespace ost
