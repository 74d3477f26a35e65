#include "document/csv_record_reader.h"
#include "document/csv_writer.h"
#include "tests/document/case_name.h"

#include <gtest/gtest.h>

#include <random>

namespace quirnel {
namespace {

using test::CaseName;

struct QuoteCase
{
    const char* name;
    std::string text;
    unsigned flags;
    std::string expected;
};

class QuoteFieldTable : public testing::TestWithParam<QuoteCase>
{};

TEST_P(QuoteFieldTable, Writes)
{
    const QuoteCase& c = GetParam();
    EXPECT_EQ(c.expected, QuoteField(c.text, c.flags));
    std::u16string wide(c.text.begin(), c.text.end());
    std::u16string expectedWide(c.expected.begin(), c.expected.end());
    EXPECT_EQ(expectedWide, QuoteField(std::u16string_view(wide), c.flags));
}

INSTANTIATE_TEST_SUITE_P(
    QuoteField, QuoteFieldTable,
    testing::Values(
        QuoteCase{"PlainStaysBare", "abc", 0, "abc"},
        QuoteCase{"InnerSpaceStaysBare", "x y", 0, "x y"}, QuoteCase{"EmptyStaysBare", "", 0, ""},
        QuoteCase{"EmptyQuotedWhenAll", "", CSV_QUOTE_ALL, "\"\""},
        QuoteCase{"LeadingSpaceQuoted", " a", 0, "\" a\""},
        QuoteCase{"TrailingSpaceQuoted", "a ", 0, "\"a \""},
        QuoteCase{"LeadingApostropheQuoted", "'01", 0, "\"'01\""},
        QuoteCase{"InnerApostropheBare", "it's", 0, "it's"},
        QuoteCase{"CommaQuoted", "a,b", 0, "\"a,b\""},
        QuoteCase{"SemicolonQuoted", "a;b", 0, "\"a;b\""},
        QuoteCase{"BarQuoted", "a|b", 0, "\"a|b\""}, QuoteCase{"TabQuoted", "a\tb", 0, "\"a\tb\""},
        QuoteCase{"LineBreakQuotedAsIs", "a\r\nb", CSV_BACKSLASH_ESCAPE, "\"a\r\nb\""},
        QuoteCase{"QuoteDoubled", "say \"hi\"", 0, "\"say \"\"hi\"\"\""},
        QuoteCase{"BackslashDoubledWithEscapes", "a\\b", CSV_BACKSLASH_ESCAPE, "a\\\\b"},
        QuoteCase{"BackslashKeptWithoutEscapes", "a\\b", 0, "a\\b"},
        QuoteCase{"AllQuotedWhenAsked", "abc", CSV_QUOTE_ALL, "\"abc\""},
        QuoteCase{"HighBytesBare", "\xc3\xa9", 0, "\xc3\xa9"}),
    CaseName());

std::string Write(const std::vector<std::string_view>& fields, unsigned flags = 0,
                  char separator = ',', std::string_view newline = "\r\n")
{
    std::string out;
    StringRecordSink<char> sink(out);
    EXPECT_TRUE(WriteRecord(sink, flags, fields, separator, newline));
    return out;
}

TEST(WriteRecord, EmptyFieldsAndForeignSeparators)
{
    EXPECT_EQ("", Write({}));
    // One empty field would read back as a blank line, which is no record.
    EXPECT_EQ("\"\"\n", Write({""}, 0, ',', "\n"));
    EXPECT_EQ(",\r\n", Write({"", ""}));
    EXPECT_EQ("\"a,b\"\tc\n\r", Write({"a,b", "c"}, 0, '\t', "\n\r"));
}

TEST(WriteRecord, WideFormWritesUnits)
{
    std::u16string out;
    StringRecordSink<char16_t> sink(out);
    ASSERT_TRUE(WriteRecord(sink, 0, {u"\u00e9", u"x;y"}, u';', u"\r\n"));
    ASSERT_TRUE(WriteRecord(sink, 0, {u""}, u';', u"\r\n"));
    EXPECT_EQ(u"\u00e9;\"x;y\"\r\n\"\"\r\n", out);
}

TEST(WriteRecord, ReadsBackWhatItWrote)
{
    // Any cell text the reader can produce survives a write and a read, with and without
    // backslash escapes. Cells are trimmed of the characters the reader trims.
    std::mt19937 random(7);
    const char alphabet[] = {'a', 'b', ',', ';', '|', '"', '\r', '\n', ' ', '\t', '\\', '\''};
    for (int round = 0; round < 2000; ++round) {
        const unsigned flags =
            (round % 2 ? CSV_BACKSLASH_ESCAPE : 0) | (round % 5 == 0 ? CSV_QUOTE_ALL : 0);
        std::vector<std::string> cells(1 + random() % 4);
        for (std::string& cell : cells) {
            cell.resize(random() % 6);
            for (char& c : cell)
                c = alphabet[random() % sizeof alphabet];
            while (!cell.empty() &&
                   std::string_view(" \r\n\t").find(cell.front()) != std::string_view::npos)
                cell.erase(0, 1);
            while (!cell.empty() &&
                   std::string_view(" \r\n\t").find(cell.back()) != std::string_view::npos)
                cell.pop_back();
            if (flags & CSV_BACKSLASH_ESCAPE)
                for (char& c : cell)
                    if (c == '\r' || c == '\n')
                        c = 'x';
        }
        std::vector<std::string_view> views(cells.begin(), cells.end());
        const std::string text = Write(views, flags);
        CsvRecordReader reader(text);
        std::vector<std::string> back;
        ASSERT_TRUE(reader.ReadFields(back, flags & CSV_BACKSLASH_ESCAPE, ",", nullptr));
        if (cells.size() == 1 && cells[0].empty())
            EXPECT_EQ(std::vector<std::string>{""}, back);
        else
            EXPECT_EQ(cells, back) << text;
    }
}

TEST(WriteRecord, EveryClassedCharacterFoundAtEveryPlace)
{
    // The 8-bit record writer tests whole blocks of a text at once; the 16-bit QuoteField goes
    // character by character, so they must agree for any length and any place of the one
    // character that matters.
    for (unsigned flags : {0u, unsigned{CSV_BACKSLASH_ESCAPE}}) {
        for (char special : std::string_view(",\"\t\r\n;|\\' x")) {
            for (std::size_t length = 1; length <= 40; ++length) {
                for (std::size_t at = 0; at < length; ++at) {
                    std::string text(length, 'a');
                    text[at] = special;
                    const std::u16string wide(text.begin(), text.end());
                    const std::u16string quoted = QuoteField(std::u16string_view(wide), flags);
                    const std::string expected = std::string(quoted.begin(), quoted.end()) + ",b\n";
                    EXPECT_EQ(expected, Write({text, "b"}, flags, ',', "\n"))
                        << "length " << length << " at " << at << " flags " << flags;
                }
            }
        }
    }
}

TEST(PutRecord, StaysWithinItsBoundAndMatchesWriteRecord)
{
    const std::vector<std::string_view> fields = {"\"\"\"\"", "", " lead", "a,b\\c", "plain"};
    for (unsigned flags : {0u, unsigned{CSV_BACKSLASH_ESCAPE}, unsigned{CSV_QUOTE_ALL}}) {
        const std::size_t bound = RecordBound(fields.data(), fields.size(), "\r\n");
        std::string buffer(bound, '\x7f');
        const char* end =
            PutRecord(buffer.data(), flags, fields.data(), fields.size(), ';', "\r\n");
        ASSERT_LE(end - buffer.data(), static_cast<std::ptrdiff_t>(bound));
        EXPECT_EQ(Write(fields, flags, ';'), std::string(buffer.c_str(), end));
    }
}

} // namespace
} // namespace quirnel
