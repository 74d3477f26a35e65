#include "app/qt/qt_startup.h"
#include "ostrand/core/out_of_memory.h"
#include "ostrand/qt/failure_dialog.h"

#include <QApplication>

#include <clocale>
#include <string>
#include <vector>

int main(int argc, char** argv)
{
    ost::InstallOutOfMemoryHandler();
    ost::InstallFailureDialog();
    // Code page 0 follows the user's locale.
    std::setlocale(LC_ALL, "");
    QApplication app(argc, argv);
    quirnel::QtStartupHost host;
    // The shell has already cut the command line; each argument is one token.
    std::vector<std::string> arguments;
    for (int i = 1; i < argc; ++i)
        arguments.emplace_back(argv[i]);
    int result = quirnel::RunStartup(arguments, host);
    return quirnel::Shutdown(host, result);
}
