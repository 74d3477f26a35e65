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
    // Reports hold "Vector<int>" and CR-only line breaks: shown as rich text the first would
    // vanish as an unknown tag, and a label does not break lines at a lone CR.
    QString text = QString::fromUtf8(message);
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Quirnel"), text, QMessageBox::Ok);
    box.setTextFormat(Qt::PlainText);
    box.exec();
}

} // namespace

void InstallFailureDialog()
{
    SetFailureReporter(&ReportInDialog);
}

} // namespace ost
