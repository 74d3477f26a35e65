#include "document/csv_loader.h"
#include "editing/warning_text.h"
#include "tests/support/editing_doubles.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <fstream>

namespace quirnel::test {
namespace {

/// The pane's lines for a file loaded as the editor loads it.
std::vector<std::string> LinesFor(const std::string& bytes)
{
    TempDir dir;
    const std::string path = (dir.Path() / "w.csv").string();
    std::ofstream(path, std::ios::binary) << bytes;
    ScriptedUi ui;
    TableDocument document(ui);
    FileFormat format;
    format.path = path;
    EXPECT_TRUE(LoadCsvFile(document, format, "Open"));
    std::vector<std::string> lines;
    for (const CSV_Warning& warning : document.Warnings())
        lines.push_back(WarningLineText(warning, document.IsUnicode()));
    return lines;
}

TEST(WarningLineText, SaysEachMessageOnceAndShowsTheFieldsASaveLeavesOut)
{
    EXPECT_EQ(LinesFor("a,b,c\r\n1,2\r\n1,2,3,x,\"y, z\"\r\n"),
              (std::vector<std::string>{"Row 1 only contains 2 columns.",
                                        "Row 2 has 2 extra columns: x, y, z"}));
    // UTF-16 documents keep their extra fields as UTF-8.
    EXPECT_EQ(LinesFor("\xEF\xBB\xBF"
                       "a\r\n1,caf\xC3\xA9\r\n"),
              (std::vector<std::string>{"Row 1 has 1 extra column: caf\xC3\xA9"}));
}

} // namespace
} // namespace quirnel::test
