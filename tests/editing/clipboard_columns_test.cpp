// Columns through a fake clipboard: the chosen columns leave as records, cutting removes them
// only once copied, and Paste Column makes room for every record it is given.

#include "editing/clipboard_columns.h"
#include "editing/tool_context.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

using Strings = std::vector<std::string>;

struct ClipboardColumns : EditingFixture, ::testing::Test
{
    ClipboardColumns() { Open({"name", "amount", "note"}, {{"b", "2", "x"}, {"a", "1", "y"}}); }

    std::vector<std::string> Names() const
    {
        Strings names;
        for (int c = 1; c < document.ColumnCount(); ++c)
            names.push_back(document.ColumnName(c));
        return names;
    }
};

TEST_F(ClipboardColumns, CopyOffersTheCurrentColumnAndCopiesTheChosenOnes)
{
    Focus(0, 3);
    dialogs.Expect<CopyColumnsRequest>("CopyColumns", [](CopyColumnsRequest& request) {
        EXPECT_EQ(request.title, "Copy Column");
        EXPECT_EQ(request.text, "Choose which columns should be copied.");
        EXPECT_EQ(request.columns, (Strings{"name", "amount", "note"}));
        EXPECT_EQ(request.chosen, (std::vector<bool>{false, false, true}));
        request.chosen[0] = true;
        return true;
    });
    CopyColumnCommand(context, false);
    EXPECT_EQ(clipboard.formats.at("text/csv"), "name,note\r\nb,x\r\na,y\r\n");
    EXPECT_EQ(clipboard.formats.at("text/plain"), "name\tnote\r\nb\tx\r\na\ty\r\n");
    EXPECT_EQ(clipboard.formats.at("application/x-ostrand-csv-data"), "1");
    EXPECT_FALSE(document.Modified());
}

TEST_F(ClipboardColumns, CutRemovesTheChosenColumnsAfterCopyingThem)
{
    Focus(1, 3);
    dialogs.Expect<CopyColumnsRequest>("CopyColumns", [](CopyColumnsRequest& request) {
        EXPECT_EQ(request.text, "Choose which columns should be cut.");
        request.chosen = {false, true, true};
        request.includeNames = false;
        return true;
    });
    CopyColumnCommand(context, true, 2);
    EXPECT_EQ(clipboard.formats.at("text/csv"), "2,x\r\n1,y\r\n");
    EXPECT_EQ(clipboard.formats.count("application/x-ostrand-csv-data"), 0u);
    EXPECT_EQ(Names(), (Strings{"name"}));
    EXPECT_EQ(document.Table().FocusColumn(), 1);
    EXPECT_TRUE(document.Modified());
}

TEST_F(ClipboardColumns, CancelOrNoColumnChosenChangesNothing)
{
    dialogs.Expect<CopyColumnsRequest>("CopyColumns", [](auto&) { return false; });
    CopyColumnCommand(context, true, 1);
    dialogs.Expect<CopyColumnsRequest>("CopyColumns", [](CopyColumnsRequest& request) {
        request.chosen.assign(3, false);
        return true;
    });
    CopyColumnCommand(context, true, 1);
    EXPECT_EQ(Names(), (Strings{"name", "amount", "note"}));
    EXPECT_EQ(clipboard.writes, 0);
    EXPECT_FALSE(document.Modified());
}

TEST_F(ClipboardColumns, PasteNamesColumnsFromTheFirstRecordAndAppendsRowsForTheRest)
{
    clipboard.formats["text/plain"] = "k\tl\r\n1\t2\r\n3\t4\r\n5\r\n";
    clipboard.formats["application/x-ostrand-csv-data"] = "1";
    Focus(0, 1);
    dialogs.Expect<PasteColumnRequest>("PasteColumn", [](PasteColumnRequest& request) {
        EXPECT_EQ(request.columns, (Strings{"#", "name", "amount", "note"}));
        EXPECT_EQ(request.insertAfter, 1);
        EXPECT_TRUE(request.firstRowNames);
        EXPECT_EQ(request.names, (Strings{"k", "l"}));
        return true;
    });
    PasteColumnCommand(context);
    EXPECT_EQ(Names(), (Strings{"name", "k", "l", "amount", "note"}));
    EXPECT_EQ(Stored(2), (Strings{"1", "3", "5"}));
    EXPECT_EQ(Stored(3), (Strings{"2", "4", ""}));
    EXPECT_EQ(Stored(1), (Strings{"b", "a", ""}));
    EXPECT_TRUE(document.Modified());
}

TEST_F(ClipboardColumns, PasteWithEnteredNamesKeepsTheFirstRecordAsData)
{
    clipboard.formats["text/plain"] = "7\r\n8\r\n";
    Focus(0, 3);
    dialogs.Expect<PasteColumnRequest>("PasteColumn", [](PasteColumnRequest& request) {
        EXPECT_FALSE(request.firstRowNames);
        request.insertAfter = 0;
        request.names = {"first"};
        return true;
    });
    PasteColumnCommand(context);
    EXPECT_EQ(Names(), (Strings{"first", "name", "amount", "note"}));
    EXPECT_EQ(Stored(1), (Strings{"7", "8"}));
}

TEST_F(ClipboardColumns, PasteRefusesAnEmptyClipboard)
{
    ui.Expect("Paste Column", "The clipboard does not contain a column.");
    PasteColumnCommand(context);
    EXPECT_EQ(document.ColumnCount(), 4);
}

TEST_F(ClipboardColumns, EntireColumnGoesAsShownWithoutNames)
{
    document.Table().SetSort(1, true);
    CopyEntireColumnCommand(context, 3);
    EXPECT_EQ(clipboard.formats.at("text/plain"), "y\r\nx\r\n");
    EXPECT_EQ(clipboard.formats.count("application/x-ostrand-csv-data"), 0u);
    CopyEntireColumnCommand(context, 9);
    EXPECT_EQ(clipboard.writes, 1);
}

} // namespace
} // namespace quirnel::test
