// quirnel-csv: the editor's CSV reader and writer for scripts.

#include "tools/quirnel-csv/csv_tool.h"

#include <clocale>
#include <cstdio>

int main(int argc, char** argv)
{
    std::setlocale(LC_ALL, "");
    std::vector<std::string> args(argv + 1, argv + argc);
    std::string out;
    std::string err;
    const int code = quirnel::RunCsvTool(args, out, err);
    std::fwrite(out.data(), 1, out.size(), stdout);
    std::fwrite(err.data(), 1, err.size(), stderr);
    return code;
}
