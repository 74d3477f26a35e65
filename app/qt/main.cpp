#include "ostrand/core/out_of_memory.h"
#include "ostrand/qt/failure_dialog.h"

#include <QApplication>
#include <QMainWindow>

int main(int argc, char** argv)
{
    ost::InstallOutOfMemoryHandler();
    ost::InstallFailureDialog();
    QApplication app(argc, argv);
    QMainWindow window;
    window.setWindowTitle(QStringLiteral("Quirnel"));
    window.resize(900, 600);
    window.show();
    return app.exec();
}
