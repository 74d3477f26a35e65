// Cells keep the document's text mode whatever writes them: a UTF-16 document read from a
// UTF-8 file keeps every character through the column commands and a save, and text of the
// other width is converted rather than lost.

#include "document/csv_loader.h"
#include "document/csv_saver.h"
#include "editing/column_commands.h"
#include "tests/support/editing_doubles.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

class ColumnTextMode : public ::testing::Test, public EditingFixture
{
protected:
    /// Loads `text` (UTF-8 with a byte-order mark, so the cells are UTF-16).
    void Load(const std::string& text)
    {
        WriteFile(folder / "in.csv", "\xEF\xBB\xBF" + text);
        FileFormat format;
        format.path = (folder / "in.csv").string();
        ASSERT_TRUE(LoadCsvFile(document, format, "Error"));
        ASSERT_TRUE(document.IsUnicode());
    }
    /// Saves to a new file and returns its bytes.
    std::string Saved()
    {
        const std::string path = (folder / "out.csv").string();
        EXPECT_TRUE(SaveCsvFile(document, path));
        return ReadFile(path);
    }

    TempDir folder;
};

TEST_F(ColumnTextMode, Utf16DocumentKeepsEveryCharacterThroughCommandsAndSave)
{
    // Greek, CJK, an accented letter and a character beyond 16 bits (a surrogate pair).
    Load("名前,Ωμέγα,x\r\nδέλτα,日本,é\r\n😀,,z\r\n");
    Focus(0, 1);
    prefs.combineSeparator = "→";
    dialogs.Expect<CombineColumnsRequest>("CombineColumns", [](CombineColumnsRequest& request) {
        request.source = 2;
        request.alwaysSeparate = true;
        return true;
    });
    CombineColumnsCommand(context);
    dialogs.Expect<SetEntireColumnRequest>("SetEntireColumn", [](SetEntireColumnRequest& request) {
        request.fill = ColumnFill::Text;
        request.text = "ß𝄞";
        request.scope = FillScope::Blank;
        return true;
    });
    SetEntireColumnCommand(context, 2);
    Focus(1, 1);
    dialogs.Expect<ShiftCellsRequest>("ShiftCells", [](ShiftCellsRequest& request) {
        EXPECT_EQ(request.rows, (std::vector<std::vector<std::string>>{{"😀→", "ß𝄞", "z"}}));
        request.left = false;
        return true;
    });
    ShiftCellsCommand(context);

    EXPECT_EQ(Saved(), "\xEF\xBB\xBF"
                       "名前,Ωμέγα,x\r\n"
                       "δέλτα→日本,日本,é\r\n"
                       ",😀→,ß𝄞\r\n");
}

TEST_F(ColumnTextMode, NewAndRenamedColumnsOfAUtf16DocumentKeepTheirNames)
{
    Load("a\r\n1\r\n");
    Focus(0, 1);
    dialogs.Expect<NewColumnRequest>("NewColumn", [](NewColumnRequest& request) {
        request.name = "Ünïcode 😀";
        return true;
    });
    NewColumnCommand(context, 1);
    dialogs.Expect<RenameColumnRequest>("RenameColumn", [](RenameColumnRequest& request) {
        EXPECT_EQ(request.name, "a");
        request.name = "Άλφα";
        return true;
    });
    RenameColumnCommand(context, 1);
    dialogs.Expect<SetEntireColumnRequest>("SetEntireColumn", [](SetEntireColumnRequest& request) {
        request.fill = ColumnFill::Numbers;
        request.startNumber = "9";
        return true;
    });
    SetEntireColumnCommand(context, 2);
    EXPECT_EQ(Saved(), "\xEF\xBB\xBF"
                       "Άλφα,Ünïcode 😀\r\n"
                       "1,9\r\n");
}

TEST_F(ColumnTextMode, TextOfTheOtherWidthIsConvertedNotLost)
{
    Load("a\r\nx\r\n");
    // 8-bit text (the system code page; UTF-8 here) given to a UTF-16 document.
    ASSERT_TRUE(document.SetCellText8(0, 1, "Grüße"));
    EXPECT_EQ(document.CellText16(0, 1), u"Grüße");
    EXPECT_EQ(Saved(), "\xEF\xBB\xBF"
                       "a\r\nGrüße\r\n");
}

TEST(TableDocumentTextMode, UnicodeTextGivenToAn8BitDocumentIsConverted)
{
    ScriptedUi ui;
    TableDocument document(ui);
    document.AddColumn("a");
    document.SetRowCount(1);
    ASSERT_TRUE(document.SetCellText16(0, 1, u"abc"));
    EXPECT_EQ(document.CellText8(0, 1), "abc");
    EXPECT_FALSE(document.Table().CellIsWide(0, 1));
}

} // namespace
} // namespace quirnel::test
