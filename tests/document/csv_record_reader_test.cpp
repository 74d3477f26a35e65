#include "document/csv_record_reader.h"
#include "tests/document/case_name.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace quirnel {
namespace {

using test::CaseName;
using Fields = std::vector<std::string>;

/// Every record of `data` split with the given separator.
std::vector<Fields> ReadAll(std::string_view data, std::string_view separators, unsigned flags,
                            std::vector<std::string>* comments = nullptr)
{
    CsvRecordReader reader(data);
    std::vector<Fields> records;
    Fields fields;
    while (reader.ReadFields(fields, flags, separators, comments))
        records.push_back(fields);
    return records;
}

struct SplitCase
{
    const char* name;
    std::string record;
    unsigned flags;
    Fields expected;
};

class SplitRecordTable : public testing::TestWithParam<SplitCase>
{};

TEST_P(SplitRecordTable, GivesFields)
{
    const SplitCase& c = GetParam();
    Fields fields;
    CsvRecordReader::SplitRecord(c.record, fields, ",", c.flags);
    EXPECT_EQ(c.expected, fields);
}

INSTANTIATE_TEST_SUITE_P(
    CsvRecordReader, SplitRecordTable,
    testing::Values(
        SplitCase{"SpacesAroundQuotedFieldVanish", "  \"a\"\"b\"  ,c", 0, {"a\"b", "c"}},
        SplitCase{"TrailingSeparatorAddsEmptyField", "a,b,", 0, {"a", "b", ""}},
        SplitCase{"EmptyRecordHasNoField", "", 0, {}},
        SplitCase{"LoneSeparatorGivesTwoEmptyFields", ",", 0, {"", ""}},
        SplitCase{"InnerSpacesStay", " x y ,\" p q \"", 0, {"x y", " p q "}},
        SplitCase{"TabsTrimmedAfterSplit", "\ta\t,b", 0, {"a", "b"}},
        SplitCase{"QuotedSeparatorStaysInField", "\"a,b\",c", 0, {"a,b", "c"}},
        SplitCase{"QuotedLineBreakKept", "\"x\r\ny\",z", 0, {"x\r\ny", "z"}},
        SplitCase{"DoubledQuoteInUnquotedField", "a\"\"b,c", 0, {"a\"b", "c"}},
        SplitCase{"QuoteInsideUnquotedFieldIsPlain", "a\"b,c", 0, {"a\"b", "c"}},
        SplitCase{"TextAfterClosingQuoteJoinsField", "\"ab\"cd,e", 0, {"\"ab\"cd", "e"}},
        SplitCase{"UnterminatedQuoteTakesRest", "\"ab,cd", 0, {"\"ab,cd"}},
        SplitCase{"LoneQuoteKeepsItsQuote", "a, \" ", 0, {"a", "\""}},
        SplitCase{"QuotePairIsEmpty", "\"\"", 0, {""}},
        SplitCase{"BackslashEscapesSeparator", "a\\,b,c", CSV_BACKSLASH_ESCAPE, {"a,b", "c"}},
        SplitCase{"BackslashNBecomesLineFeed", "x\\ny", CSV_BACKSLASH_ESCAPE, {"x\ny"}},
        SplitCase{"BackslashRBecomesReturn", "x\\ry", CSV_BACKSLASH_ESCAPE, {"x\ry"}},
        SplitCase{"BackslashBeforeOtherKeepsIt", "\\\\a\\q", CSV_BACKSLASH_ESCAPE, {"\\aq"}},
        SplitCase{"TrailingBackslashDropped", "ab\\", CSV_BACKSLASH_ESCAPE, {"ab"}},
        SplitCase{
            "BackslashEscapedQuoteInQuotes", "\"a\\\"b\",c", CSV_BACKSLASH_ESCAPE, {"a\"b", "c"}},
        SplitCase{"BackslashPlainWithoutFlag", "a\\,b", 0, {"a\\", "b"}}),
    CaseName());

struct RecordsCase
{
    const char* name;
    std::string data;
    unsigned flags;
    std::vector<Fields> expected;
};

class ReadRecordsTable : public testing::TestWithParam<RecordsCase>
{};

TEST_P(ReadRecordsTable, GivesRecords)
{
    EXPECT_EQ(GetParam().expected, ReadAll(GetParam().data, ",", GetParam().flags));
}

INSTANTIATE_TEST_SUITE_P(
    CsvRecordReader, ReadRecordsTable,
    testing::Values(
        RecordsCase{"CrLfLfCrLfAndCrEachEndOne",
                    "a\r\nb\nc\rd\n\re",
                    0,
                    {{"a"}, {"b"}, {"c"}, {"d"}, {"e"}}},
        RecordsCase{"BlankLinesAreSkipped", "\r\n\r\na\r\n\r\n\n\rb\r\n\r\n", 0, {{"a"}, {"b"}}},
        RecordsCase{"NulEndsRecordAndReadingGoesOn",
                    std::string("a,b\0c,d", 7),
                    0,
                    {{"a", "b"}, {"c", "d"}}},
        RecordsCase{"NulInsideQuotesEndsRecord",
                    std::string("\"a\0b\"\nc", 7),
                    0,
                    {{"\"a"}, {"b\""}, {"c"}}},
        RecordsCase{"NulEndsRecordEvenAfterBackslash",
                    std::string("a\\\0b\nc", 6),
                    CSV_BACKSLASH_ESCAPE,
                    {{"a"}, {"b"}, {"c"}}},
        RecordsCase{"QuotedLineBreakStaysInRecord",
                    "h\r\n\"x\r\ny\",z\r\nnext",
                    0,
                    {{"h"}, {"x\r\ny", "z"}, {"next"}}},
        RecordsCase{"LineBreakRightAfterClosingQuoteEnds", "\"a\"\n\"b\"\r\n", 0, {{"a"}, {"b"}}},
        RecordsCase{"QuoteNotAtFieldStartDoesNotProtect", "a\"b\nc\"", 0, {{"a\"b"}, {"c\""}}},
        RecordsCase{"QuoteAfterLeadingSpacesStartsQuotedPart",
                    "a,  \"x\ny\",b\nc",
                    0,
                    {{"a", "x\ny", "b"}, {"c"}}},
        RecordsCase{"BackslashProtectsLineBreakOutsideQuotes",
                    "a\\\nb\nc",
                    CSV_BACKSLASH_ESCAPE,
                    {{"a\nb"}, {"c"}}},
        RecordsCase{"UnterminatedQuoteRunsToEndOfData", "a\n\"b,c\nd", 0, {{"a"}, {"\"b,c\nd"}}},
        RecordsCase{"CommentsAreDataWithoutTheFlag", "#one\na", 0, {{"#one"}, {"a"}}}),
    CaseName());

TEST(CsvRecordReader, CommentLinesGoToSink)
{
    std::vector<std::string> comments;
    const auto records =
        ReadAll("#one\r\na\r\n#two\nb\n  #kept", ",", CSV_IGNORE_COMMENTS, &comments);
    EXPECT_EQ((std::vector<Fields>{{"a"}, {"b"}, {"#kept"}}), records);
    EXPECT_EQ((std::vector<std::string>{"#one", "#two"}), comments);
}

TEST(CsvRecordReader, ReadFieldsAppendsWithFlag)
{
    CsvRecordReader reader("a,b\nc");
    Fields fields{"x"};
    ASSERT_TRUE(reader.ReadFields(fields, CSV_APPEND, ",", nullptr));
    ASSERT_TRUE(reader.ReadFields(fields, CSV_APPEND, ",", nullptr));
    EXPECT_EQ((Fields{"x", "a", "b", "c"}), fields);
    EXPECT_FALSE(reader.ReadFields(fields, CSV_APPEND, ",", nullptr));
}

struct DetectCase
{
    const char* name;
    std::string record;
    char expected;
};

class DetectSeparatorTable : public testing::TestWithParam<DetectCase>
{};

TEST_P(DetectSeparatorTable, Picks)
{
    EXPECT_EQ(GetParam().expected, CsvRecordReader::DetectSeparator(GetParam().record, 0));
}

INSTANTIATE_TEST_SUITE_P(CsvRecordReader, DetectSeparatorTable,
                         testing::Values(DetectCase{"NoneGivesComma", "abc", ','},
                                         DetectCase{"CommaWinsTieWithSemicolon", "x;y,z", ','},
                                         DetectCase{"TabWinsTieWithSemicolon", "a\tb;c", '\t'},
                                         DetectCase{"SemicolonWinsTieWithBar", "a;b|c", ';'},
                                         DetectCase{"BarWhenMost", "a|b|c,d", '|'},
                                         DetectCase{"QuotedCommasNotCounted", "\"a,b\";c;d", ';'},
                                         DetectCase{"TabsMost", "a\tb\tc,d", '\t'}),
                         CaseName());

TEST(CsvRecordReader, DetectingReadReportsSeparatorAndSplits)
{
    CsvRecordReader reader("\"a,b\";c;d\r\n1;2;3");
    Fields fields;
    char separator = 0;
    ASSERT_TRUE(reader.ReadFirstRecordDetecting(fields, 0, separator, nullptr));
    EXPECT_EQ(';', separator);
    EXPECT_EQ((Fields{"a,b", "c", "d"}), fields);
    ASSERT_TRUE(reader.ReadFields(fields, 0, ";", nullptr));
    EXPECT_EQ((Fields{"1", "2", "3"}), fields);
}

TEST(CsvRecordReader, DetectingReadFalseWhenAllFieldsEmpty)
{
    CsvRecordReader reader(",,\nx");
    Fields fields;
    char separator = 0;
    EXPECT_FALSE(reader.ReadFirstRecordDetecting(fields, 0, separator, nullptr));
    EXPECT_EQ(3u, fields.size());
}

TEST(CsvRecordReader, DetectionModeTogglesQuotesOnly)
{
    // A stray quote after a closing quote leaves the scan inside quotes, so the line break is
    // part of the first record in detection mode but not in separator mode.
    const std::string data = "\"a\"b\"c\nd\"\ne";
    CsvRecordReader detecting(data);
    std::string_view record;
    ASSERT_TRUE(detecting.ReadRecord(record, 0, {}, nullptr));
    EXPECT_EQ("\"a\"b\"c\nd\"", record);
    CsvRecordReader separated(data);
    ASSERT_TRUE(separated.ReadRecord(record, 0, ",", nullptr));
    EXPECT_EQ("\"a\"b\"c", record);
}

TEST(CsvRecordReader, SeekReadsRecordAgain)
{
    CsvRecordReader reader("\n\na,b\nc");
    const std::size_t start = reader.Position();
    Fields fields;
    ASSERT_TRUE(reader.ReadFields(fields, 0, ",", nullptr));
    reader.Seek(start);
    Fields again;
    ASSERT_TRUE(reader.ReadFields(again, 0, ",", nullptr));
    EXPECT_EQ(fields, again);
}

TEST(CsvRecordReader, WideFormMatchesNarrowForm)
{
    const std::u16string data = u"  \"\u00e9\"\"b\"  ,c\r\n\"x\ny\";\u4e2d,\r\n";
    CsvRecordReader16 reader(data);
    std::vector<std::u16string> fields;
    ASSERT_TRUE(reader.ReadFields(fields, 0, u",", nullptr));
    EXPECT_EQ((std::vector<std::u16string>{u"\u00e9\"b", u"c"}), fields);
    ASSERT_TRUE(reader.ReadFields(fields, 0, u",", nullptr));
    EXPECT_EQ((std::vector<std::u16string>{u"\"x\ny\";\u4e2d", u""}), fields);
    EXPECT_FALSE(reader.ReadFields(fields, 0, u",", nullptr));
}

TEST(CsvRecordReader, SplitFromUtf8GivesUtf16)
{
    std::vector<std::u16string> fields;
    SplitRecordFromUtf8("\"\xc3\xa9t\xc3\xa9\",\xe4\xb8\xad", fields, ",", CSV_FROM_UTF8);
    EXPECT_EQ((std::vector<std::u16string>{u"\u00e9t\u00e9", u"\u4e2d"}), fields);
}

TEST(CsvRecordReader, RandomInputNeverBreaksInvariants)
{
    // Every record must lie inside the data and reading must always move forward.
    std::mt19937 random(12345);
    const char alphabet[] = {'a', ',', ';', '"', '\r', '\n', ' ', '\\', '#', '\0', '\t', '|'};
    for (int round = 0; round < 3000; ++round) {
        std::string data(random() % 64, '\0');
        for (char& c : data)
            c = (random() % 8 == 0) ? static_cast<char>(random())
                                    : alphabet[random() % sizeof alphabet];
        const unsigned flags = random() % 16 & (CSV_IGNORE_COMMENTS | CSV_BACKSLASH_ESCAPE);
        const std::string_view separators = (round % 3 == 0) ? std::string_view() : ",";
        CsvRecordReader reader(data);
        std::vector<std::string> comments;
        std::string_view record;
        std::size_t last = reader.Position();
        int records = 0;
        while (reader.ReadRecord(record, flags, separators, &comments)) {
            ASSERT_GE(record.data(), data.data());
            ASSERT_LE(record.data() + record.size(), data.data() + data.size());
            ASSERT_GT(reader.Position(), last);
            last = reader.Position();
            Fields fields;
            CsvRecordReader::SplitRecord(record, fields, ",", flags);
            for (const std::string& field : fields)
                ASSERT_LE(field.size(), record.size());
            ASSERT_LE(++records, 64);
        }
        ASSERT_EQ(data.size(), reader.Position());
    }
}

TEST(CsvRecordReader, RawFieldsFromScanMatchSplitter)
{
    // The loader takes field bounds from the record scan; they must be the splitter's.
    std::mt19937 random(99);
    const char alphabet[] = {'a', ',', '"', '\r', '\n', ' ', '\0', '\t', ';'};
    for (int round = 0; round < 6000; ++round) {
        // Every other round has long records of mostly plain text, where the scan takes many
        // fields from one block.
        const bool plainText = round % 2 == 1;
        std::string data(random() % (plainText ? 160 : 48), '\0');
        for (char& c : data)
            c = plainText && random() % 3 != 0 ? 'a' : alphabet[random() % sizeof alphabet];
        const unsigned flags = round % 4 == 0 ? CSV_BACKSLASH_ESCAPE : 0;
        CsvRecordReader scanning(data);
        CsvRecordReader plain(data);
        std::string_view record;
        std::string_view again;
        std::vector<std::string_view> scanned;
        std::vector<std::string_view> split;
        while (scanning.ReadRecordRaw(record, scanned, flags, ",", nullptr)) {
            ASSERT_TRUE(plain.ReadRecord(again, flags, ",", nullptr));
            ASSERT_EQ(again, record);
            CsvRecordReader::SplitRecordRaw(record, split, ",", flags);
            auto bounds = [&](const std::vector<std::string_view>& fields) {
                std::vector<std::pair<long, std::size_t>> out;
                for (std::string_view field : fields)
                    out.emplace_back(field.data() - data.data(), field.size());
                return out;
            };
            ASSERT_EQ(bounds(split), bounds(scanned)) << testing::PrintToString(data);
        }
        EXPECT_FALSE(plain.ReadRecord(again, flags, ",", nullptr));
    }
}

TEST(UnquoteField, NarrowAgreesWithWideForEveryPlaceOfAMark)
{
    // 8-bit fields skip the rewrite when a quick look finds nothing to clean; 16-bit fields
    // always take the full path. Any quote mark, space or line end the quick look misses
    // shows up as a difference.
    for (unsigned flags : {0u, unsigned{CSV_BACKSLASH_ESCAPE}}) {
        for (char mark : std::string_view("\" \r\n\t\\")) {
            for (std::size_t length = 1; length <= 24; ++length) {
                for (std::size_t at = 0; at < length; ++at) {
                    for (std::size_t second : {at, length - 1 - at}) {
                        std::string text(length, 'a');
                        text[at] = mark;
                        text[second] = mark;
                        const std::u16string wide(text.begin(), text.end());
                        const std::string narrow = CsvRecordReader::UnquoteField(text, flags);
                        const std::u16string expected =
                            CsvRecordReader16::UnquoteField(wide, flags);
                        EXPECT_EQ(expected, std::u16string(narrow.begin(), narrow.end()))
                            << "\"" << text << "\" flags " << flags;
                    }
                }
            }
        }
    }
}

} // namespace
} // namespace quirnel
