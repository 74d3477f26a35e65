#include "document/file_properties.h"
#include "tests/support/temp_dir.h"
#include "view/table_control.h"

#include <gtest/gtest.h>

namespace quirnel {
namespace {

/// Three data columns, four rows of 8-bit text.
void Fill(TableControl& table)
{
    for (const char* name : {"Name", "Amount", "Date"}) {
        TableColumn column;
        column.headerText = name;
        column.flags = COLUMN_CHOOSE_ALIGN | COLUMN_CHOOSE_SORT;
        table.AddColumn(column);
    }
    table.SetRowCount(4);
    const char* cells[4][3] = {{"b", "10", "2024-01-02"},
                               {"a", "9", "2023-05-06"},
                               {"d", "100", "2022-01-01"},
                               {"c", "-1", "2021-12-31"}};
    for (int row = 0; row < 4; ++row)
        for (int c = 0; c < 3; ++c)
            table.SetCellText8(row, c + 1, cells[row][c]);
}

class FilePropertiesTest : public testing::Test
{
protected:
    FilePropertiesTest()
    {
        Fill(table);
        format.path = "/data/sales.csv";
    }

    TableControl table;
    FileFormat format;
    FileHistory history;
};

TEST_F(FilePropertiesTest, RecordHoldsViewStateInItsKeys)
{
    table.MutableColumn(2).width = 140;
    table.SetColumnSortMethod(2, kSortNumeric);
    table.SetColumnAlignment(2, Alignment::Right);
    table.SetColumnAlignment(3, Alignment::Center);
    table.SetSort(2, false);
    table.SetFocusCell(1, 2);
    format.delimitAllCells = true;
    format.codePage = 1251;

    FileRecord record = MakeFileRecord(table, format, true);
    std::vector<std::string> keys;
    for (const auto& entry : record.Values())
        keys.push_back(entry.first);
    EXPECT_EQ(keys, (std::vector<std::string>{"Widths", "SortMethods", "SortColumn", "Align",
                                              "CodePage", "FocusCell", "Flags"}));
    EXPECT_EQ(*record.Find("Widths"), std::to_string(table.Column(0).width) + ",100,140,100");
    // The index column keeps its own numeric method and right alignment.
    EXPECT_EQ(*record.Find("SortMethods"), "1,0,1,0");
    EXPECT_EQ(*record.Find("SortColumn"), "2");
    EXPECT_EQ(*record.Find("Align"), "2,0,2,1");
    EXPECT_EQ(*record.Find("CodePage"), "1251");
    EXPECT_EQ(*record.Find("FocusCell"), "1,2");
    EXPECT_EQ(*record.Find("Flags"), "7");
}

TEST_F(FilePropertiesTest, CodePageAndFocusCellOnlyWhenTheyMatter)
{
    for (std::uint32_t codePage : {0u, 65001u}) {
        format.codePage = codePage;
        FileRecord record = MakeFileRecord(table, format, true);
        EXPECT_EQ(record.Find("CodePage"), nullptr) << codePage;
        EXPECT_EQ(record.Find("FocusCell"), nullptr);
        EXPECT_EQ(*record.Find("Flags"), "1");
        EXPECT_EQ(*record.Find("SortColumn"), "-1");
    }
}

TEST_F(FilePropertiesTest, RestoreBringsBackWidthsSortAlignmentAndFocus)
{
    table.MutableColumn(1).width = 77;
    table.SetColumnSortMethod(2, kSortNumeric);
    table.SetColumnAlignment(2, Alignment::Right);
    table.SetSort(2, false);
    table.SetFocusCell(3, 1);
    StoreFileProperties(history, table, format, true);

    TableControl reopened;
    Fill(reopened);
    FileFormat loaded;
    loaded.path = format.path;
    bool editorMode = false;
    ASSERT_TRUE(RestoreFileProperties(history, {reopened, loaded, editorMode}));
    EXPECT_EQ(reopened.Column(1).width, 77);
    EXPECT_EQ(reopened.Column(2).sortMethod, kSortNumeric);
    EXPECT_EQ(reopened.ColumnAlignment(2), Alignment::Right);
    EXPECT_EQ(reopened.SortColumn(), 2);
    EXPECT_FALSE(reopened.SortAscending());
    // Numeric descending: 100, 10, 9, -1.
    EXPECT_EQ(reopened.CellText8(reopened.RowAtDisplayPosition(0), 2), "100");
    EXPECT_EQ(reopened.CellText8(reopened.RowAtDisplayPosition(3), 2), "-1");
    EXPECT_EQ(reopened.FocusRow(), 3);
    EXPECT_EQ(reopened.FocusColumn(), 1);
    EXPECT_TRUE(editorMode);
    EXPECT_FALSE(loaded.delimitAllCells);
}

TEST_F(FilePropertiesTest, DamagedValuesAreSkippedOneByOne)
{
    FileRecord record;
    record.Set("Widths", "50,x,60");
    record.Set("SortMethods", "0,99,1");
    record.Set("SortColumn", "12");
    record.Set("FocusCell", "1");
    record.Set("Flags", "3");
    record.Set("Align", "0,2");
    bool editorMode = false;
    int widthBefore = table.Column(1).width;
    ApplyFileRecord(record, {table, format, editorMode});
    EXPECT_EQ(table.Column(1).width, widthBefore);
    EXPECT_EQ(table.Column(1).sortMethod, kSortTextNoCase);
    EXPECT_EQ(table.Column(2).sortMethod, kSortNumeric);
    EXPECT_EQ(table.SortColumn(), -1);
    EXPECT_EQ(table.FocusRow(), -1);
    EXPECT_TRUE(format.delimitAllCells);
    EXPECT_FALSE(editorMode); // no current cell
    EXPECT_EQ(table.ColumnAlignment(1), Alignment::Right);
}

TEST_F(FilePropertiesTest, UnknownPathRestoresNothing)
{
    bool editorMode = false;
    EXPECT_FALSE(RestoreFileProperties(history, {table, format, editorMode}));
    FileFormat unnamed;
    StoreFileProperties(history, table, unnamed, false);
    EXPECT_EQ(history.Count(), 0);
}

TEST(FileHistory, TrimmedToHundredMostRecentFirst)
{
    FileHistory history;
    TableControl table;
    FileFormat format;
    for (int i = 0; i < 105; ++i) {
        format.path = "/f" + std::to_string(i) + ".csv";
        StoreFileProperties(history, table, format, false);
    }
    EXPECT_EQ(history.Count(), 100);
    EXPECT_EQ(history.Paths().front(), "/f104.csv");
    EXPECT_EQ(history.Paths().back(), "/f5.csv");
    EXPECT_EQ(history.Find("/f4.csv"), nullptr);
    history.Touch("/f50.csv");
    EXPECT_EQ(history.Paths().front(), "/f50.csv");
    EXPECT_EQ(history.Count(), 100);
}

TEST(FileHistory, SurvivesSaveAndLoad)
{
    test::TempDir dir;
    FileHistory history;
    FileRecord record;
    record.Set("CodePage", "1251");
    record.Set("Widths", "20,100");
    history.Put("/a b/c=d.csv", record);
    history.Put("/second.csv", FileRecord());
    ASSERT_TRUE(history.Save(dir / "history.dat"));

    FileHistory loaded;
    loaded.Load(dir / "history.dat");
    EXPECT_EQ(loaded.Paths(), (std::vector<std::string>{"/second.csv", "/a b/c=d.csv"}));
    ASSERT_NE(loaded.Find("/a b/c=d.csv"), nullptr);
    EXPECT_EQ(*loaded.Find("/a b/c=d.csv"), record);
    EXPECT_EQ(RememberedCodePage(loaded, "/a b/c=d.csv"), 1251u);
    EXPECT_EQ(RememberedCodePage(loaded, "/second.csv"), std::nullopt);

    FileHistory missing;
    missing.Load(dir / "none.dat");
    EXPECT_EQ(missing.Count(), 0);
}

TEST(FilePropertiesRequest, ShowsUnknownSeparatorAsCommaAndUnknownNewlineAsFirst)
{
    FileFormat format;
    format.separator = '#';
    format.newline = "\r\r";
    FilePropertiesRequest request = MakeFilePropertiesRequest(format);
    EXPECT_EQ(request.separator, ',');
    EXPECT_EQ(request.newline, 0);
    format.separator = '\t';
    format.newline = "\n\r";
    request = MakeFilePropertiesRequest(format);
    EXPECT_EQ(request.separator, 9);
    EXPECT_EQ(request.newline, 3);
}

TEST(FilePropertiesRequest, ChoiceListsInOrder)
{
    auto sets = CharacterSetChoices();
    ASSERT_GE(sets.size(), 2u);
    EXPECT_EQ(sets[0].label, "8-bit ASCII (System Default)");
    EXPECT_EQ(sets[0].value, 0);
    EXPECT_EQ(sets[1].label, "UTF-8 (Unicode)");
    EXPECT_EQ(sets[1].value, 65001);
    for (std::size_t i = 2; i < sets.size(); ++i)
        EXPECT_NE(sets[i].value, 65000);
    std::vector<int> separators;
    for (const auto& s : SeparatorChoices())
        separators.push_back(s.value);
    EXPECT_EQ(separators, (std::vector<int>{44, 59, 124, 9}));
}

TEST_F(FilePropertiesTest, SwitchingToUtf8ConvertsNamesAndCells)
{
    table.SetCellText8(0, 1,
                       "Gr\xc3\xbc\xc3\x9f"
                       "e");
    FilePropertiesRequest request = MakeFilePropertiesRequest(format);
    request.codePage = 65001;
    request.newline = 1;
    request.delimitAllCells = true;
    EXPECT_EQ(ApplyFilePropertiesRequest(request, format, 0, table), 1);
    EXPECT_EQ(format.codePage, 65001u);
    EXPECT_EQ(format.newline, "\n");
    EXPECT_TRUE(format.delimitAllCells);
    EXPECT_TRUE(table.Column(1).wide);
    EXPECT_EQ(table.Column(1).headerTextWide, u"Name");
    EXPECT_TRUE(table.CellIsWide(0, 1));
    EXPECT_EQ(table.CellText16(0, 1), u"Gr\u00fc\u00dfe");
    EXPECT_EQ(table.CellText16(2, 2), u"100");

    // Between two non-zero code pages nothing is converted.
    request.codePage = 1251;
    EXPECT_EQ(ApplyFilePropertiesRequest(request, format, 1, table), 1);
    EXPECT_TRUE(table.CellIsWide(0, 1));

    request.codePage = 0;
    EXPECT_EQ(ApplyFilePropertiesRequest(request, format, 1, table), 0);
    EXPECT_FALSE(table.Column(1).wide);
    EXPECT_EQ(table.Column(1).headerText, "Name");
    EXPECT_FALSE(table.CellIsWide(0, 1));
    EXPECT_EQ(table.CellText8(0, 1), "Gr\xc3\xbc\xc3\x9f"
                                     "e");
}

TEST_F(FilePropertiesTest, SwitchingToACodePageReadsTheBytesInIt)
{
    table.SetCellText8(1, 1, "\xcf\xf0\xe8\xe2\xe5\xf2"); // "Privet" in Cyrillic, 1251
    FilePropertiesRequest request = MakeFilePropertiesRequest(format);
    request.codePage = 1251;
    EXPECT_EQ(ApplyFilePropertiesRequest(request, format, 0, table), 1);
    EXPECT_EQ(table.CellText16(1, 1), u"\u041f\u0440\u0438\u0432\u0435\u0442");
    EXPECT_EQ(table.CellText16(1, 2), u"9");
}

TEST(NewFileFormat, CodePageStaysSystemEvenForWideCells)
{
    NewFileRequest request;
    request.encoding = 1;
    request.separator = 9;
    FileFormat format = NewFileFormat(request);
    EXPECT_EQ(format.codePage, 0u);
    EXPECT_EQ(format.separator, '\t');
    EXPECT_EQ(format.newline, "\r\n");
    EXPECT_FALSE(format.noColumnNames || format.delimitAllCells || format.quiet ||
                 format.backslashEscape || format.ignoreComments);
}

} // namespace
} // namespace quirnel
