// Measures the editor's work on one CSV file and prints one "name value unit" line per figure.

#include <cstdio>
#include <filesystem>

int main(int argc, char** argv)
{
    if (argc != 2) {
        std::fputs("usage: quirnel-bench FILE\n", stderr);
        return 2;
    }
    std::error_code error;
    const auto size = std::filesystem::file_size(argv[1], error);
    if (error) {
        std::fprintf(stderr, "quirnel-bench: %s: %s\n", argv[1], error.message().c_str());
        return 2;
    }
    std::printf("file_mb %.1f MB\n", static_cast<double>(size) / 1e6);
    return 0;
}
