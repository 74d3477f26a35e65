#include "editing/row_filter.h"
#include "editing/text_matcher.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

#include <map>
#include <random>

namespace quirnel::test {
namespace {

using Texts = std::vector<std::string>;

class RowFilter : public ::testing::Test, public EditingFixture
{
protected:
    TableControl& Table() { return document.Table(); }

    void Apply(const char16_t* text, bool enabled = true, bool caseSensitive = false,
               bool wholeWord = false)
    {
        ApplyRowFilter(context, {enabled, text, caseSensitive, wholeWord});
    }
};

TEST_F(RowFilter, KeepsRowsHoldingTheTextInAnyDataCell)
{
    Open({"name", "note"}, {{"apple", "red"}, {"pear", "xABCx"}, {"plum", ""}, {"fig", "abc"}});
    Apply(u"abc");
    EXPECT_EQ(Shown(), (Texts{"pear", "fig"}));
    Apply(u"abc", true, true);
    EXPECT_EQ(Shown(), (Texts{"fig"}));
    // The filter shows and hides; it never changes the file.
    EXPECT_FALSE(document.Modified());
    EXPECT_EQ(host.modifiedMarks, 0);
}

TEST_F(RowFilter, TheIndexColumnAndEmptyCellsNeverMatch)
{
    Open({"a", "b"}, {{"x", ""}, {"y", ""}, {"z", "2"}});
    // Row 2's number is only in the "#" column.
    Apply(u"2");
    EXPECT_EQ(Shown(), (Texts{"z"}));
}

TEST_F(RowFilter, AnUncheckedBoxOrAnEmptyTextShowsEveryRow)
{
    Open({"a"}, {{"one"}, {"two"}, {"three"}});
    Apply(u"t");
    ASSERT_EQ(Shown(), (Texts{"two", "three"}));
    Apply(u"t", false);
    EXPECT_EQ(Shown(), (Texts{"one", "two", "three"}));
    Apply(u"o");
    Apply(u"", true);
    EXPECT_EQ(Shown(), (Texts{"one", "two", "three"}));
}

TEST_F(RowFilter, WholeWordRejectsMatchesInsideWords)
{
    Open({"a"}, {{"café"}, {"caf"}, {"caf_e"}, {"(caf)"}});
    Apply(u"caf", true, false, true);
    EXPECT_EQ(Shown(), (Texts{"caf", "(caf)"}));
}

TEST_F(RowFilter, TheFocusCellComesBackOrGoesWithItsRow)
{
    Open({"a", "b"}, {{"keep", "1"}, {"drop", "2"}, {"keep", "3"}});
    Focus(2, 2);
    Apply(u"keep");
    EXPECT_EQ(Table().FocusRow(), 2);
    EXPECT_EQ(Table().FocusColumn(), 2);
    EXPECT_EQ(host.commits, 1);
    EXPECT_EQ(host.multilineEnded, 0);

    // The same filter again changes nothing: the focus stays where the user put it since.
    Focus(0, 1);
    const int shown = host.focusShown;
    Apply(u"keep");
    EXPECT_EQ(Table().FocusRow(), 0);
    EXPECT_EQ(Table().FocusColumn(), 1);
    EXPECT_EQ(host.focusShown, shown);

    host.multiline = true;
    Apply(u"drop");
    EXPECT_EQ(Table().FocusRow(), -1);
    EXPECT_EQ(Table().FocusColumn(), -1);
    EXPECT_EQ(host.multilineEnded, 1);
    EXPECT_FALSE(host.multiline);
}

TEST_F(RowFilter, HiddenRowsAreDeselectedAndTheRestKeepTheirOrder)
{
    Open({"a"}, {{"b1"}, {"a1"}, {"c2"}, {"a2"}, {"b2"}});
    Table().SetSort(1, false);
    ASSERT_EQ(Shown(), (Texts{"c2", "b2", "b1", "a2", "a1"}));
    Table().SetSelectionMode(SelectionMode::MultipleRows);
    Select({0, 2});
    Apply(u"2");
    EXPECT_EQ(Shown(), (Texts{"c2", "b2", "a2"}));
    EXPECT_FALSE(Table().IsRowSelected(0));
    EXPECT_TRUE(Table().IsRowSelected(2));
    EXPECT_EQ(Table().SelectedRowCount(), 1);
}

// --- Random tables against a plain reference ---

/// The characters of the random texts, with their lower case and word class written out here
/// rather than taken from the matcher's tables: upper and lower case beyond ASCII, a final
/// sigma, characters outside the basic plane, word and non-word punctuation.
struct Letter
{
    char32_t c;
    char32_t lower;
    bool word;
};
const Letter kLetters[] = {
    {U'a', U'a', true},
    {U'A', U'a', true},
    {U'b', U'b', true},
    {U'B', U'b', true},
    {U'x', U'x', true},
    {U'_', U'_', true},
    {U'1', U'1', true},
    {U'é', U'é', true},
    {U'É', U'é', true},
    {U'σ', U'σ', true},
    {U'Σ', U'σ', true},
    {U'ς', U'σ', true},
    {U'ж', U'ж', true},
    {U'Ж', U'ж', true},
    {U'中', U'中', true},
    {U'\U00010428', U'\U00010428', true},
    {U'\U00010400', U'\U00010428', true},
    {U' ', U' ', false},
    {U'(', U'(', false},
    {U'-', U'-', false},
    {U'😀', U'😀', false},
};

const Letter& Info(char32_t c)
{
    for (const Letter& letter : kLetters)
        if (letter.c == c)
            return letter;
    ADD_FAILURE() << "character outside the alphabet";
    return kLetters[0];
}

/// Does `text` hold `pattern`, looked for one character at a time?
bool NaiveHolds(const std::u32string& text, const std::u32string& pattern, bool caseSensitive,
                bool wholeWord)
{
    for (std::size_t start = 0; start + pattern.size() <= text.size(); ++start) {
        bool same = true;
        for (std::size_t k = 0; k < pattern.size() && same; ++k) {
            const char32_t a = text[start + k];
            const char32_t b = pattern[k];
            same = caseSensitive ? a == b : Info(a).lower == Info(b).lower;
        }
        const std::size_t end = start + pattern.size();
        if (same && wholeWord)
            same = (start == 0 || !Info(text[start - 1]).word) &&
                   (end == text.size() || !Info(text[end]).word);
        if (same)
            return true;
    }
    return false;
}

std::string ToUtf8(const std::u32string& text)
{
    std::string out;
    ByteCharset().Encode(text, out);
    return out;
}

std::u16string ToUtf16(const std::u32string& text)
{
    std::u16string out;
    for (char32_t c : text) {
        if (c < 0x10000) {
            out += static_cast<char16_t>(c);
        } else {
            out += static_cast<char16_t>(0xD800 + ((c - 0x10000) >> 10));
            out += static_cast<char16_t>(0xDC00 + ((c - 0x10000) & 0x3FF));
        }
    }
    return out;
}

class RowFilterProperty : public ::testing::TestWithParam<bool>
{};

TEST_P(RowFilterProperty, KeepsExactlyTheRowsAPlainSearchFinds)
{
    const bool unicode = GetParam();
    std::mt19937 random(unicode ? 16 : 8);
    auto pick = [&](int below) {
        return static_cast<int>(random() % static_cast<unsigned>(below));
    };
    auto text = [&](int longest) {
        std::u32string out;
        for (int n = pick(longest + 1); n > 0; --n)
            out += kLetters[pick(std::size(kLetters))].c;
        return out;
    };
    int kept = 0;
    int hidden = 0;
    for (int round = 0; round < 300; ++round) {
        ScriptedUi ui;
        TableDocument document(ui);
        document.SetTextMode(unicode);
        const int columns = 1 + pick(4);
        const int rows = pick(25);
        for (int c = 0; c < columns; ++c)
            document.AddColumn("c", u"c");
        document.SetRowCount(rows);
        std::vector<std::vector<std::u32string>> cells(rows);
        for (int r = 0; r < rows; ++r) {
            for (int c = 1; c <= columns; ++c) {
                cells[r].push_back(text(6));
                if (unicode)
                    document.Table().SetCellText16(r, c, ToUtf16(cells[r].back()));
                else
                    document.Table().SetCellText8(r, c, ToUtf8(cells[r].back()));
            }
        }
        // Half of the patterns are cut from a cell, so that matches are common.
        std::u32string pattern = text(3);
        if (rows > 0 && pick(2)) {
            const std::u32string& from = cells[pick(rows)][pick(columns)];
            if (!from.empty()) {
                const std::size_t start = pick(static_cast<int>(from.size()));
                pattern = from.substr(start, 1 + pick(3));
            }
        }
        if (pattern.empty())
            pattern = U"a";
        for (int flags = 0; flags < 4; ++flags) {
            const bool caseSensitive = flags & 1;
            const bool wholeWord = flags & 2;
            SCOPED_TRACE(::testing::Message() << "round " << round << " flags " << flags);
            FilterRows(document.Table(), {true, ToUtf16(pattern), caseSensitive, wholeWord},
                       ByteCharset());
            for (int r = 0; r < rows; ++r) {
                bool holds = false;
                for (const std::u32string& cell : cells[r])
                    holds = holds || NaiveHolds(cell, pattern, caseSensitive, wholeWord);
                EXPECT_EQ(!document.Table().IsRowHidden(r), holds)
                    << "row " << r << " pattern " << ToUtf8(pattern);
                ++(holds ? kept : hidden);
            }
        }
    }
    // Both outcomes were tried often.
    EXPECT_GT(kept, 500);
    EXPECT_GT(hidden, 500);
}

INSTANTIATE_TEST_SUITE_P(TextModes, RowFilterProperty, ::testing::Values(false, true),
                         [](const ::testing::TestParamInfo<bool>& mode) {
                             return mode.param ? std::string("Utf16Cells")
                                               : std::string("EightBitCells");
                         });

} // namespace
} // namespace quirnel::test
