#include <cstdio>
#include <cstring>

namespace {

const char kUsage[] =
    "usage: quirnel-csv dump-json FILE [options]\n"
    "       quirnel-csv check FILE [options]\n"
    "       quirnel-csv normalize IN OUT [options]\n"
    "options: --sep auto|comma|tab|semicolon|bar  --no-column-names  --backslash-escape\n"
    "         --ignore-comments  --code-page N  --no-warn-too-few\n";

} // namespace

int main(int argc, char** argv)
{
    const bool askedForHelp =
        argc > 1 && (!std::strcmp(argv[1], "--help") || !std::strcmp(argv[1], "-h"));
    std::fputs(kUsage, askedForHelp ? stdout : stderr);
    return askedForHelp ? 0 : 2;
}
