#pragma once
// The per-file format record: how a CSV file was read and how it is to be written back. The
// reader fills it, File Properties changes it and the writer obeys it.

#include <cstdint>
#include <string>

namespace quirnel {

/// Parse and write flags. The bit values are fixed: the clipboard and the file history pass
/// them around as plain numbers.
inline constexpr unsigned CSV_IGNORE_COMMENTS = 1;
inline constexpr unsigned CSV_APPEND = 2;
inline constexpr unsigned CSV_WIDE = 4;
inline constexpr unsigned CSV_BACKSLASH_ESCAPE = 8;
inline constexpr unsigned CSV_FROM_UTF8 = 16;
inline constexpr unsigned CSV_QUOTE_ALL = 32;

inline constexpr char kSeparatorAuto = 0;

struct FileFormat
{
    /// Full path of the file.
    std::string path;
    /// 0 = the system's 8-bit code page, 65001 = UTF-8, else a Windows code page number.
    std::uint32_t codePage = 0;
    /// Suppresses the loader's failure messages (the comment question is still asked).
    bool quiet = false;
    bool noColumnNames = false;
    bool backslashEscape = false;
    bool ignoreComments = false;
    /// Quote every cell on saving; not used by the reader.
    bool delimitAllCells = false;
    /// "\r\n", "\n", "\r" or "\n\r".
    std::string newline = "\r\n";
    /// 0 = detect; otherwise ',', '\t', ';' or '|'.
    char separator = kSeparatorAuto;
};

} // namespace quirnel
