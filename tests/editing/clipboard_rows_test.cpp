// Rows through a fake clipboard: what a copy puts there, when Paste Row(s) asks for a mapping
// and a place, and that nothing is lost or changed on the way back.

#include "editing/clipboard_rows.h"
#include "editing/tool_context.h"
#include "ostrand/core/string.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

using Strings = std::vector<std::string>;

struct ClipboardRows : EditingFixture, ::testing::Test
{
    ClipboardRows() { Open({"name", "amount"}, {{"b", "2"}, {"a", "1"}, {"c, d", "3"}}); }

    /// The next dialog is the place dialog, expecting `preselected`, answered with `place`.
    void ExpectPlace(int preselected, int place)
    {
        dialogs.Expect<PastePlaceRequest>("PastePlace", [=](PastePlaceRequest& request) {
            EXPECT_EQ(request.place, preselected);
            request.place = place;
            return true;
        });
    }
};

TEST_F(ClipboardRows, CopyPutsCsvTabbedTextAndMarker)
{
    Select({0, 2});
    CopyRowsCommand(context, false);
    EXPECT_EQ(clipboard.formats.at("text/csv"), "name,amount\r\nb,2\r\n\"c, d\",3\r\n");
    EXPECT_EQ(clipboard.formats.at("text/plain"), "name\tamount\r\nb\t2\r\n\"c, d\"\t3\r\n");
    EXPECT_EQ(clipboard.formats.at("application/x-ostrand-csv-data"), "1");
    EXPECT_FALSE(document.Modified());
}

TEST_F(ClipboardRows, CopyThenPasteIntoTheSameColumnsNeedsNoMapping)
{
    Focus(2);
    CopyRowsCommand(context, false);
    Focus(0);
    prefs.pasteRowsLocation = kPasteAfterCurrent;
    ExpectPlace(kPasteAfterCurrent, kPasteAtBeginning);
    PasteRowsCommand(context);
    EXPECT_EQ(Stored(1), (Strings{"c, d", "b", "a", "c, d"}));
    EXPECT_EQ(Stored(2), (Strings{"3", "2", "1", "3"}));
    EXPECT_EQ(prefs.pasteRowsLocation, kPasteAtBeginning);
    EXPECT_EQ(document.Table().FocusRow(), 0);
    EXPECT_TRUE(document.Modified());
}

TEST_F(ClipboardRows, CopyWithoutNamesOffersMappingWithTheBoxChecked)
{
    prefs.copyRowsNoColumnNames = true;
    Focus(1);
    CopyRowsCommand(context, false);
    EXPECT_EQ(clipboard.formats.at("text/csv"), "a,1\r\n");
    dialogs.Expect<PasteMappingRequest>("PasteMapping", [](PasteMappingRequest& request) {
        EXPECT_EQ(request.title, "Paste Row(s)");
        EXPECT_TRUE(request.hasNames);
        EXPECT_EQ(request.clipboardColumns, (Strings{"a", "1"}));
        EXPECT_EQ(request.tableColumns, (Strings{"name", "amount"}));
        EXPECT_EQ(request.mapping, (std::vector<int>{1, 2}));
        request.hasNames = false;
        return true;
    });
    ExpectPlace(kPasteBeforeCurrent, kPasteAtEnd);
    PasteRowsCommand(context);
    EXPECT_EQ(Stored(1), (Strings{"b", "a", "c, d", "a"}));
}

TEST_F(ClipboardRows, NamesLeftCheckedAreNotPastedAsData)
{
    prefs.copyRowsNoColumnNames = true;
    Focus(1);
    CopyRowsCommand(context, false);
    dialogs.Expect<PasteMappingRequest>("PasteMapping", [](auto&) { return true; });
    ExpectPlace(kPasteBeforeCurrent, kPasteAtEnd);
    PasteRowsCommand(context);
    EXPECT_EQ(document.RowCount(), 3);
    EXPECT_FALSE(document.Modified());
}

TEST_F(ClipboardRows, SpreadsheetTextIsMappedWithTheBoxClearAndAppendedWithoutAsking)
{
    // Tab-separated, no marker; a cell's comma must not make it comma-separated.
    clipboard.formats["text/plain"] = "x\ty, z\r\n7\t8\r\n";
    Focus(-1, -1);
    dialogs.Expect<PasteMappingRequest>("PasteMapping", [](PasteMappingRequest& request) {
        EXPECT_FALSE(request.hasNames);
        EXPECT_EQ(request.clipboardColumns, (Strings{"x", "y, z"}));
        request.mapping = {2, 1};
        return true;
    });
    PasteRowsCommand(context);
    EXPECT_EQ(Stored(1), (Strings{"b", "a", "c, d", "y, z", "8"}));
    EXPECT_EQ(Stored(2), (Strings{"2", "1", "3", "x", "7"}));
}

TEST_F(ClipboardRows, UnmappedColumnsStayEmptyAndExtraFieldsAreDropped)
{
    clipboard.formats["text/plain"] = "p\tq\tr\r\n";
    Focus(-1, -1);
    dialogs.Expect<PasteMappingRequest>("PasteMapping", [](PasteMappingRequest& request) {
        EXPECT_EQ(request.mapping, (std::vector<int>{1, 2, 0}));
        request.mapping = {0, 0, 1};
        return true;
    });
    PasteRowsCommand(context);
    EXPECT_EQ(document.CellText8(3, 1), "r");
    EXPECT_EQ(document.CellText8(3, 2), "");
}

TEST_F(ClipboardRows, MappingRefusalsShowTheDialogAgainAndCancelChangesNothing)
{
    clipboard.formats["text/plain"] = "1\t2\r\n";
    dialogs.Expect<PasteMappingRequest>("PasteMapping", [](PasteMappingRequest& request) {
        request.mapping = {2, 2};
        return true;
    });
    ui.Expect("Paste Row(s)", "Two Clipboard Columns cannot map to the same Table Column.");
    dialogs.Expect<PasteMappingRequest>("PasteMapping", [](PasteMappingRequest& request) {
        EXPECT_EQ(request.mapping, (std::vector<int>{2, 2})) << "the user's entries are kept";
        ResetMapping(request);
        return true;
    });
    ui.Expect("Paste Row(s)", "You must choose at least one column to import.");
    dialogs.Expect<PasteMappingRequest>("PasteMapping", [](auto&) { return false; });
    PasteRowsCommand(context);
    EXPECT_EQ(document.RowCount(), 3);
    EXPECT_FALSE(document.Modified());
}

TEST_F(ClipboardRows, WithMappingTheDialogShowsEvenForMatchingNames)
{
    Focus(0);
    CopyRowsCommand(context, false);
    dialogs.Expect<PasteMappingRequest>("PasteMapping", [](PasteMappingRequest& request) {
        EXPECT_TRUE(request.hasNames);
        EXPECT_EQ(request.mapping, (std::vector<int>{1, 2}));
        return false;
    });
    PasteRowsCommand(context, true);
    EXPECT_EQ(document.RowCount(), 3);
}

TEST_F(ClipboardRows, NamesMatchedByNameWhenTheyAreInAnotherOrder)
{
    PasteMappingRequest request;
    request.clipboardColumns = {"amount", "other", "name"};
    request.tableColumns = {"name", "amount"};
    request.hasNames = true;
    InitialMapping(request);
    EXPECT_EQ(request.mapping, (std::vector<int>{2, 0, 1}));
    SameOrderMapping(request);
    EXPECT_EQ(request.mapping, (std::vector<int>{1, 2, 0}));
    request.hasNames = false;
    InitialMapping(request);
    EXPECT_EQ(request.mapping, (std::vector<int>{1, 2, 0}));
}

TEST_F(ClipboardRows, ClipboardWithoutRecordsIsRefused)
{
    ui.Expect("Paste Row(s)", "The clipboard does not contain CSV records.");
    PasteRowsCommand(context);
    clipboard.formats["text/plain"] = "\r\n\r\n";
    ui.Expect("Paste Row(s)", "The clipboard does not contain CSV records.");
    PasteRowsCommand(context);
    EXPECT_EQ(document.RowCount(), 3);
    EXPECT_FALSE(document.Modified());
}

TEST_F(ClipboardRows, EightBitTextIsReadWhenThereIsNoUnicodeText)
{
    // A UTF-8 mark says how the bytes are to be read; the mark itself is not a character.
    clipboard.formats["text/csv"] = "\xEF\xBB\xBFname,amount\r\nGr\xC3\xBC\xC3\x9F"
                                    "e,4\r\n";
    Focus(-1, -1);
    PasteRowsCommand(context);
    EXPECT_EQ(document.CellText8(3, 1), "Gr\xC3\xBC\xC3\x9F"
                                        "e");
    EXPECT_EQ(document.CellText8(3, 2), "4");
}

TEST_F(ClipboardRows, UnicodeTableRoundTripsNonAsciiText)
{
    EditingFixture f;
    f.document.SetTextMode(true);
    f.document.AddColumn({}, u"Stra\u00dfe");
    f.document.AddColumn({}, u"\u540d");
    f.document.SetRowCount(1);
    f.document.SetCellText16(0, 1, u"\u00c4rger, gro\u00df");
    f.document.SetCellText16(0, 2, u"\u65e5\u672c");
    f.document.SetFileOpen(true);
    f.Focus(0);
    CopyRowsCommand(f.context, false);
    EXPECT_EQ(
        f.clipboard.formats.at("text/csv"),
        ost::Utf16ToUtf8(u"Stra\u00dfe,\u540d\r\n\"\u00c4rger, gro\u00df\",\u65e5\u672c\r\n"));
    f.dialogs.Expect<PastePlaceRequest>("PastePlace", [](PastePlaceRequest& request) {
        request.place = kPasteAfterCurrent;
        return true;
    });
    PasteRowsCommand(f.context);
    ASSERT_EQ(f.document.RowCount(), 2);
    EXPECT_EQ(f.document.CellText16(1, 1), u"\u00c4rger, gro\u00df");
    EXPECT_EQ(f.document.CellText16(1, 2), u"\u65e5\u672c");
}

TEST_F(ClipboardRows, CutNeverAsksAndKeepsTheConfirmationSetting)
{
    prefs.noConfirmDeleteRow = false;
    Select({0, 1});
    Focus(0);
    CopyRowsCommand(context, true);
    EXPECT_EQ(clipboard.formats.at("text/csv"), "name,amount\r\nb,2\r\na,1\r\n");
    EXPECT_EQ(Stored(1), (Strings{"c, d"}));
    EXPECT_FALSE(prefs.noConfirmDeleteRow);
    EXPECT_TRUE(document.Modified());
}

TEST_F(ClipboardRows, TitlesFollowTheSelectionCount)
{
    Focus(-1, -1);
    const std::string refusal =
        "Either a cell must have input focus, or one or more rows must be selected.  To give a "
        "cell input focus, simply click on it.  To select rows, hold down the Ctrl key and click "
        "on cells in the first column which is labeled \"#\".";
    ui.Expect("Copy Row", refusal);
    CopyRowsCommand(context, false);
    ui.Expect("Cut Row", refusal);
    CopyRowsCommand(context, true);
    EXPECT_EQ(clipboard.writes, 0);
}

TEST(ParseDelimitedText, UsesTheFileReadersDialect)
{
    // Detection as for a file: semicolons outvote the comma inside quotes; blank lines skipped.
    TextRecords records = ParseDelimitedText("\"a,b\";c;d\r\n\r\n  \"x\"\"y\" ;2;\n", false, false);
    ASSERT_EQ(records.Count(), 2u);
    EXPECT_EQ(records.Field(0, 0), "a,b");
    EXPECT_EQ(records.Field(1, 0), "x\"y");
    EXPECT_EQ(records.Width(1), 3u);
    EXPECT_EQ(records.MaxWidth(), 3u);
    // Tabbed text without a tab in its first record is detected like any other.
    records = ParseDelimitedText("one,two\r\n", true, false);
    EXPECT_EQ(records.Width(0), 2u);
}

} // namespace
} // namespace quirnel::test
