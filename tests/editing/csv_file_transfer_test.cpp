// Import and Export through real files: import reads as Open does and appends through the
// mapping; export writes what is shown in the document's own format and leaves it untouched.

#include "editing/csv_file_transfer.h"
#include "editing/tool_context.h"
#include "tests/support/editing_doubles.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

using Strings = std::vector<std::string>;

struct CsvTransfer : EditingFixture, ::testing::Test
{
    CsvTransfer() { Open({"name", "amount"}, {{"b", "2"}, {"a", "1"}, {"c", "3"}}); }

    void ExpectFile(const std::filesystem::path& path, bool save)
    {
        dialogs.Expect<CsvFileRequest>("ChooseCsvFile", [=](CsvFileRequest& request) {
            EXPECT_EQ(request.save, save);
            request.path = path.string();
            return true;
        });
    }

    TempDir dir;
};

TEST_F(CsvTransfer, ImportWithTheSameNamesAppendsWithoutAsking)
{
    WriteFile(dir / "more.csv", "name;amount\nd;4\ne;5\n");
    ExpectFile(dir / "more.csv", false);
    ImportCsvFileCommand(context);
    EXPECT_EQ(Stored(1), (Strings{"b", "a", "c", "d", "e"}));
    EXPECT_EQ(Stored(2), (Strings{"2", "1", "3", "4", "5"}));
    EXPECT_TRUE(document.Modified());
}

TEST_F(CsvTransfer, ImportWithOtherNamesGoesThroughTheMapping)
{
    WriteFile(dir / "other.csv", "amount,extra\r\n9,z\r\n");
    ExpectFile(dir / "other.csv", false);
    dialogs.Expect<PasteMappingRequest>("PasteMapping", [](PasteMappingRequest& request) {
        EXPECT_EQ(request.title, "Import From CSV File");
        EXPECT_TRUE(request.hasNames);
        EXPECT_EQ(request.clipboardColumns, (Strings{"amount", "extra"}));
        EXPECT_EQ(request.mapping, (std::vector<int>{2, 0}));
        return true;
    });
    ImportCsvFileCommand(context);
    EXPECT_EQ(Stored(1), (Strings{"b", "a", "c", ""}));
    EXPECT_EQ(Stored(2), (Strings{"2", "1", "3", "9"}));
}

TEST_F(CsvTransfer, ImportOfAnUnreadableFileLeavesTheTable)
{
    ExpectFile(dir / "missing.csv", false);
    ui.Expect("Import From CSV File",
              "Failed to load the CSV file.\r\n\r\nNo such file or directory");
    ImportCsvFileCommand(context);
    dialogs.Expect<CsvFileRequest>("ChooseCsvFile", [](auto&) { return false; });
    ImportCsvFileCommand(context);
    EXPECT_EQ(document.RowCount(), 3);
    EXPECT_FALSE(document.Modified());
}

TEST_F(CsvTransfer, ExportWritesWhatIsShownInTheDocumentsFormat)
{
    FileFormat format;
    format.path = (dir / "own.csv").string();
    format.separator = ';';
    format.newline = "\n";
    document.StoreFormat(format);
    document.SetCellText8(2, 1, "c;d");
    TableControl& table = document.Table();
    table.SetSort(1, true);
    table.SetRowHidden(1, true);
    table.SetColumnHidden(2, true);
    ExpectFile(dir / "out.csv", true);
    ExportCsvFileCommand(context);
    EXPECT_EQ(ReadFile(dir / "out.csv"), "name\nb\n\"c;d\"\n");
    EXPECT_EQ(document.Path(), (dir / "own.csv").string());
    EXPECT_FALSE(document.Modified());
    EXPECT_EQ(dir.Entries(), (Strings{"out.csv"})) << "no temporary file, no backup";
}

TEST_F(CsvTransfer, ExportOfAUnicodeTableKeepsItsCodePage)
{
    EditingFixture f;
    f.document.SetTextMode(true);
    f.document.AddColumn({}, u"n");
    f.document.SetRowCount(1);
    f.document.SetCellText16(0, 1, u"\u00e9");
    FileFormat format;
    format.codePage = 65001;
    f.document.StoreFormat(format);
    f.document.SetFileOpen(true);
    f.dialogs.Expect<CsvFileRequest>("ChooseCsvFile", [&](CsvFileRequest& request) {
        request.path = (dir / "u.csv").string();
        return true;
    });
    ExportCsvFileCommand(f.context);
    EXPECT_EQ(ReadFile(dir / "u.csv"), "\xEF\xBB\xBFn\r\n\xC3\xA9\r\n");
}

} // namespace
} // namespace quirnel::test
