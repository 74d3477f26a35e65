#pragma once
// How the fuzz targets over the loader read their input: the first two bytes choose the
// reader's options, the rest is the file. Every combination of options is one byte pair away,
// so the fuzzer explores them as it explores the file's bytes.

#include "document/file_format.h"
#include "document/table_document.h"
#include "ostrand/core/string.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace quirnel::fuzz {

struct LoadChoice
{
    FileFormat format;
    /// The answer to the comment question.
    bool answerYes = false;
    bool warnTooFew = true;
    std::string_view file;
};

/// Code pages to read in: 8-bit cells, UTF-8 and a western one where some bytes mean nothing.
inline constexpr std::uint32_t kCodePages[] = {0, 65001, 1252, 0};

inline LoadChoice Choose(const std::uint8_t* data, std::size_t size)
{
    LoadChoice choice;
    const std::uint8_t first = size > 0 ? data[0] : 0;
    const std::uint8_t second = size > 1 ? data[1] : 0;
    choice.format.path = "/fuzz/input.csv";
    choice.format.separator = "\0,\t;|"[first % 5];
    choice.format.backslashEscape = second & 1;
    choice.format.ignoreComments = second & 2;
    choice.format.noColumnNames = second & 4;
    choice.format.quiet = second & 8;
    choice.format.codePage = kCodePages[(second >> 4) & 3];
    choice.answerYes = second & 64;
    choice.warnTooFew = !(second & 128);
    choice.file = size > 2 ? std::string_view(reinterpret_cast<const char*>(data) + 2, size - 2)
                           : std::string_view();
    return choice;
}

/// Column names and then every row, as UTF-8.
inline std::vector<std::vector<std::string>> Contents(const TableDocument& document)
{
    std::vector<std::vector<std::string>> table;
    std::vector<std::string> names;
    for (int c = 1; c < document.ColumnCount(); ++c)
        names.push_back(document.ColumnName(c));
    table.push_back(names);
    for (int r = 0; r < document.RowCount(); ++r) {
        std::vector<std::string> row;
        for (int c = 1; c < document.ColumnCount(); ++c)
            row.push_back(document.IsUnicode() ? ost::Utf16ToUtf8(document.CellText16(r, c))
                                               : std::string(document.CellText8(r, c)));
        table.push_back(row);
    }
    return table;
}

} // namespace quirnel::fuzz
