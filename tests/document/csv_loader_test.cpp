#include "document/csv_loader.h"
#include "tests/document/case_name.h"
#include "tests/document/document_fixture.h"

#include <gtest/gtest.h>

#include <random>

namespace quirnel {
namespace {

using test::CaseName;
using test::DocumentTest;
using test::Table;
using test::WriteFile;

class LoadCsvFileTest : public DocumentTest
{};

TEST_F(LoadCsvFileTest, TwoColumnsOneRowWithoutFinalNewline)
{
    ASSERT_TRUE(Load("a,b\r\n1,2"));
    EXPECT_EQ((Table{{"a", "b"}, {"1", "2"}}), Contents());
    EXPECT_EQ("\r\n", m_document.Format().newline);
    EXPECT_EQ(',', m_document.Separator());
    EXPECT_TRUE(m_document.FileOpen());
    EXPECT_FALSE(m_document.Modified());
    EXPECT_FALSE(m_document.IsUnicode());
    EXPECT_EQ(std::vector<std::string>{"Opening data.csv"}, m_ui.ProgressTexts());
    EXPECT_FALSE(m_ui.ProgressOpen());
}

TEST_F(LoadCsvFileTest, SemicolonDetectedPastQuotedComma)
{
    ASSERT_TRUE(Load("\"a,b\";c;d\n1;2;3\n"));
    EXPECT_EQ(';', m_document.Separator());
    EXPECT_EQ((Table{{"a,b", "c", "d"}, {"1", "2", "3"}}), Contents());
    EXPECT_EQ("\n", m_document.Format().newline);
    FileFormat given;
    given.separator = '|';
    ASSERT_TRUE(Load("a,b|c\n1|2", given));
    EXPECT_EQ((Table{{"a,b", "c"}, {"1", "2"}}), Contents());
}

TEST_F(LoadCsvFileTest, QuotedLineBreakInDataRowIsOneCell)
{
    ASSERT_TRUE(Load("h,i\r\n\"x\r\ny\",z\r\n"));
    EXPECT_EQ((Table{{"h", "i"}, {"x\r\ny", "z"}}), Contents());
}

TEST_F(LoadCsvFileTest, BlankLinesAreNotRows)
{
    ASSERT_TRUE(Load("\r\na\r\n\r\n1\r\n\r\n\r\n2\r\n"));
    EXPECT_EQ((Table{{"a"}, {"1"}, {"2"}}), Contents());
}

TEST_F(LoadCsvFileTest, TwentySevenColumnsWithoutNames)
{
    FileFormat format;
    format.noColumnNames = true;
    std::string line;
    for (int i = 0; i < 27; ++i)
        line += (i ? "," : "") + std::to_string(i);
    ASSERT_TRUE(Load(line + "\n" + line + "\n", format));
    const Table table = Contents();
    ASSERT_EQ(3u, table.size());
    EXPECT_EQ("A", table[0][0]);
    EXPECT_EQ("Z", table[0][25]);
    EXPECT_EQ("AA", table[0][26]);
    EXPECT_EQ("26", table[1][26]);
    EXPECT_TRUE(m_document.Warnings().empty());
}

TEST(GeneratedColumnName, FollowsSpreadsheetLetters)
{
    EXPECT_EQ("A", GeneratedColumnName(0));
    EXPECT_EQ("Z", GeneratedColumnName(25));
    EXPECT_EQ("AA", GeneratedColumnName(26));
    EXPECT_EQ("AZ", GeneratedColumnName(51));
    EXPECT_EQ("BA", GeneratedColumnName(52));
    EXPECT_EQ("ZZ", GeneratedColumnName(701));
    EXPECT_EQ("AAA", GeneratedColumnName(702));
}

struct NewlineCase
{
    const char* name;
    std::string data;
    std::string expected;
};

class NewlineDetection : public testing::TestWithParam<NewlineCase>
{};

TEST_P(NewlineDetection, FromLastTwoBytes)
{
    EXPECT_EQ(GetParam().expected, DetectNewline(GetParam().data));
}

INSTANTIATE_TEST_SUITE_P(
    DetectNewline, NewlineDetection,
    testing::Values(NewlineCase{"CrLf", "a\nb\r\n", "\r\n"}, NewlineCase{"Lf", "a\r\nb\n", "\n"},
                    NewlineCase{"LfCr", "a\n\r", "\n\r"}, NewlineCase{"Cr", "a\r", "\r"},
                    NewlineCase{"NoneAtEnd", "a\nb", "\r\n"}, NewlineCase{"SingleLf", "\n", "\r\n"},
                    NewlineCase{"Empty", "", "\r\n"}),
    CaseName());

const char kIgnoreComments[] =
    "The file appears to contain comments that begin with the '#' character.  Do you want to "
    "ignore these comments (recommended)?  Please note that if you save the file, the comments "
    "will be lost.";

TEST_F(LoadCsvFileTest, CommentQuestionAnsweredNoLoadsCommentAsHeader)
{
    m_ui.Expect("Ignore Comments?", kIgnoreComments, ost::kButtonNo);
    ASSERT_TRUE(Load("#note\na\n1\n"));
    EXPECT_EQ((Table{{"#note"}, {"a"}, {"1"}}), Contents());
    EXPECT_FALSE(m_document.Format().ignoreComments);
}

TEST_F(LoadCsvFileTest, CommentQuestionAskedEvenWhenQuiet)
{
    FileFormat format;
    format.quiet = true;
    m_ui.Expect("Ignore Comments?", kIgnoreComments, ost::kButtonYes);
    ASSERT_TRUE(Load("#note\na\n#mid\n1\n2\n#end\n", format));
    EXPECT_EQ((Table{{"a"}, {"1"}, {"2"}}), Contents());
    EXPECT_TRUE(m_document.Format().ignoreComments);
    // One warning per run of comments before a data record; trailing comments precede none.
    ASSERT_EQ(1u, m_document.Warnings().size());
    EXPECT_EQ("Comments were detected.  They will be lost if you save the file.",
              m_document.Warnings()[0].message);
    EXPECT_EQ(-1, m_document.Warnings()[0].row);
}

TEST_F(LoadCsvFileTest, CommentsBeforeTheFirstLineAreWarnedOnce)
{
    // Ignored without the question (a remembered format or Open Nonstandard File), comments
    // above the column names are lost on saving like those between rows.
    const std::string warning = "Comments were detected.  They will be lost if you save the file.";
    for (const bool noColumnNames : {false, true}) {
        FileFormat format;
        format.ignoreComments = true;
        format.noColumnNames = noColumnNames;
        ASSERT_TRUE(Load("#one\r\n#two\r\na,b\r\n1,2\r\n", format));
        ASSERT_EQ(1u, m_document.Warnings().size()) << noColumnNames;
        EXPECT_EQ(warning, m_document.Warnings()[0].message);
        EXPECT_EQ(-1, m_document.Warnings()[0].row);
        // One warning per run of comments before a data record; without column names the
        // first line is one.
        format.separator = ',';
        ASSERT_TRUE(Load("#one\r\na,b\r\n#two\r\n1,2\r\n", format));
        EXPECT_EQ(noColumnNames ? 2u : 1u, m_document.Warnings().size());
    }
    // Without a data record there is nothing to report it with.
    FileFormat format;
    format.ignoreComments = true;
    ASSERT_TRUE(Load("#one\na\n", format));
    EXPECT_TRUE(m_document.Warnings().empty());
}

TEST_F(LoadCsvFileTest, IrregularRowsBecomeWarnings)
{
    ASSERT_TRUE(Load("a,b,c\n1\n1,2\n1,2,3,4,\" 5 \"\n1,2,3,4\n"));
    EXPECT_EQ(
        (Table{{"a", "b", "c"}, {"1", "", ""}, {"1", "2", ""}, {"1", "2", "3"}, {"1", "2", "3"}}),
        Contents());
    const auto& warnings = m_document.Warnings();
    ASSERT_EQ(4u, warnings.size());
    EXPECT_EQ("Row 1 only contains 1 column.", warnings[0].message);
    EXPECT_EQ(0, warnings[0].row);
    EXPECT_EQ("Row 2 only contains 2 columns.", warnings[1].message);
    EXPECT_EQ(1, warnings[1].row);
    EXPECT_EQ("Row 3 has 2 extra columns: ", warnings[2].message);
    EXPECT_EQ("4,  5 ", warnings[2].extraData);
    EXPECT_EQ("Row 4 has 1 extra column: ", warnings[3].message);
    EXPECT_EQ("4", warnings[3].extraData);
    EXPECT_EQ(3, warnings[3].row);
    // Short rows go unreported when the preference is off.
    m_document.SetWarnTooFew(false);
    ASSERT_TRUE(Load("a,b\n1\n"));
    EXPECT_TRUE(m_document.Warnings().empty());
}

TEST_F(LoadCsvFileTest, DuplicateNamesWarnedOncePerName)
{
    ASSERT_TRUE(Load("x,y,x,z,x,y\n"));
    const auto& warnings = m_document.Warnings();
    ASSERT_EQ(2u, warnings.size());
    EXPECT_EQ("3 columns have the same name: x", warnings[0].message);
    EXPECT_EQ("2 columns have the same name: y", warnings[1].message);
    EXPECT_EQ(-1, warnings[1].row);
}

TEST_F(LoadCsvFileTest, Utf8MarkOrCodePageGivesUnicodeCells)
{
    ASSERT_TRUE(Load("\xEF\xBB\xBFn\xC3\xA4me,b\r\n\xE4\xB8\xAD,\" x \"\r\n"));
    EXPECT_TRUE(m_document.IsUnicode());
    EXPECT_EQ(65001u, m_document.Format().codePage);
    EXPECT_EQ(u"n\u00e4me", m_document.ColumnNameWide(1));
    EXPECT_EQ(u"\u4e2d", m_document.CellText16(0, 1));
    EXPECT_EQ(u" x ", m_document.CellText16(0, 2));
    EXPECT_TRUE(m_document.Table().CellIsWide(0, 2));
    // A given code page makes the cells wide too.
    FileFormat format;
    format.codePage = 1252;
    ASSERT_TRUE(Load("caf\xE9\n\x80\n", format));
    EXPECT_TRUE(m_document.IsUnicode());
    EXPECT_EQ(u"caf\u00e9", m_document.ColumnNameWide(1));
    EXPECT_EQ(u"\u20ac", m_document.CellText16(0, 1));
}

TEST_F(LoadCsvFileTest, AnyNonAsciiByteSendsACellToTheConverter)
{
    // ASCII cells are widened as they are; one byte above 127 anywhere, in a cell of any
    // length, must still reach the converter.
    std::string data = "\xEF\xBB\xBFh\r\n";
    std::vector<std::u16string> expected;
    for (std::size_t length = 1; length <= 20; ++length) {
        for (std::size_t at = 0; at < length; ++at) {
            std::string cell(length, 'a');
            cell.replace(at, 1, "\xC3\xA9");
            data += cell + "\r\n";
            std::u16string wide(length, u'a');
            wide[at] = u'\u00e9';
            expected.push_back(wide);
        }
    }
    ASSERT_TRUE(Load(data));
    ASSERT_EQ(static_cast<int>(expected.size()), m_document.RowCount());
    for (int row = 0; row < m_document.RowCount(); ++row)
        EXPECT_EQ(expected[static_cast<std::size_t>(row)], m_document.CellText16(row, 1)) << row;
}

struct RefusalCase
{
    const char* name;
    std::string data;
    std::uint32_t codePage;
    std::string message;
};

class LoadRefusal : public DocumentTest, public testing::WithParamInterface<RefusalCase>
{};

TEST_P(LoadRefusal, ShowsMessageAndLeavesNoFileOpen)
{
    const RefusalCase& c = GetParam();
    m_ui.Expect("Open", c.message);
    FileFormat format;
    format.codePage = c.codePage;
    EXPECT_FALSE(Load(c.data, format));
    EXPECT_FALSE(m_document.FileOpen());
    EXPECT_EQ(0, m_document.RowCount());
}

TEST_P(LoadRefusal, QuietRefusesSilently)
{
    FileFormat format;
    format.codePage = GetParam().codePage;
    format.quiet = true;
    EXPECT_FALSE(Load(GetParam().data, format));
    EXPECT_TRUE(m_ui.Shown().empty());
}

const char kUnicodeRefusal[] = "The file is in unicode.  Sorry, unicode is not yet supported.";
const char kNoNames[] = "No column names were detected on the first line of the file.";
const char kNotCsv[] = "The file does not appear to be in valid CSV format.";

INSTANTIATE_TEST_SUITE_P(
    LoadCsvFile, LoadRefusal,
    testing::Values(RefusalCase{"Utf16LittleEndianMark",
                                "\xFF\xFE"
                                "a\0,\0b\0",
                                0, kUnicodeRefusal},
                    RefusalCase{"Utf16BigEndianMark", "\xFE\xFF\0a", 0, kUnicodeRefusal},
                    RefusalCase{"Utf16CodePage", "a,b\n", 1200, kUnicodeRefusal},
                    RefusalCase{"Utf32CodePage", "a,b\n", 12001, kUnicodeRefusal},
                    RefusalCase{"EmptyFile", "", 0, kNoNames},
                    RefusalCase{"OnlyBlankLines", "\r\n\n\r\n", 0, kNoNames},
                    RefusalCase{"EmptyFirstFields", ",,\n1,2,3\n", 0, kNoNames},
                    RefusalCase{"NulBytes", std::string(64, '\0'), 0, kNoNames},
                    RefusalCase{"LineBreakInName", "\"a\r\nb\",c\n1,2\n", 0, kNotCsv}),
    CaseName());

TEST_F(LoadCsvFileTest, UnreadableFileReportsSystemError)
{
    m_ui.Expect("Open", "Failed to load the CSV file.\r\n\r\nNo such file or directory");
    m_format.path = Path("missing.csv");
    EXPECT_FALSE(LoadCsvFile(m_document, m_format, "Open"));
}

TEST_F(LoadCsvFileTest, FileLargerThanMemoryFailsTheLoad)
{
    // Refused before reading: running out of memory while reading would end the program.
    m_files.memory = 10;
    m_ui.Expect("Open", "Failed to load the CSV file.\r\n\r\nCannot allocate memory");
    EXPECT_FALSE(Load("a,b\r\n1,2\r\n3,4\r\n"));
    EXPECT_FALSE(m_document.FileOpen());
    m_files.memory = 64;
    EXPECT_TRUE(Load("a,b\r\n1,2\r\n3,4\r\n"));
    // A device has no size to check first; it is stopped when it outgrows the memory.
    m_files.memory = 1 << 20;
    m_ui.Expect("Open", "Failed to load the CSV file.\r\n\r\nCannot allocate memory");
    m_format.path = "/dev/zero";
    EXPECT_FALSE(LoadCsvFile(m_document, m_format, "Open"));
}

TEST_F(LoadCsvFileTest, RecordsOrFieldsPastTheLimitRefuseTheLoad)
{
    // The limits are an int's; lowered here, they are reached with small files.
    LoadLimits limits;
    limits.maxRecords = 3;
    limits.maxColumns = 2;
    auto load = [&](std::string_view bytes) {
        WriteFile(Path(), bytes);
        m_format = FileFormat();
        m_format.path = Path();
        return LoadCsvFile(m_document, m_format, "Open", limits);
    };
    ASSERT_TRUE(load("a,b\n1\n2\n3\n"));
    EXPECT_EQ(3, m_document.RowCount());
    m_ui.Expect("Open", "Failed to load the CSV file.\r\n\r\nThe file has more than 3 rows, the "
                        "most that a table can hold.");
    EXPECT_FALSE(load("a,b\n1\n2\n3\n4\n"));
    EXPECT_FALSE(m_document.FileOpen());
    EXPECT_EQ(0, m_document.RowCount());
    EXPECT_FALSE(m_ui.ProgressOpen());
    m_ui.Expect("Open", "Failed to load the CSV file.\r\n\r\nThe first line has more than 2 "
                        "fields, the most that a table can hold as columns.");
    EXPECT_FALSE(load("a,b,c\n1\n"));
    EXPECT_FALSE(m_document.FileOpen());
}

TEST_F(LoadCsvFileTest, NulBytesInDataEndRecords)
{
    ASSERT_TRUE(Load(std::string("a\n1\0"
                                 "2\0\0",
                                 7)));
    EXPECT_EQ((Table{{"a"}, {"1"}, {"2"}, {""}}), Contents());
    ASSERT_EQ(1u, m_document.Warnings().size());
    EXPECT_EQ("Row 3 only contains 0 columns.", m_document.Warnings()[0].message);
}

TEST_F(LoadCsvFileTest, UnterminatedQuoteTakesRestOfFile)
{
    ASSERT_TRUE(Load("a,b\n1,\"x\ny,z\n"));
    EXPECT_EQ((Table{{"a", "b"}, {"1", "\"x\ny,z"}}), Contents());
}

TEST_F(LoadCsvFileTest, HugeSingleFieldLoads)
{
    std::string data = "h\n\"";
    data.append(50u << 20, 'x');
    data += "\"\n";
    ASSERT_TRUE(Load(data));
    ASSERT_EQ(1, m_document.RowCount());
    EXPECT_EQ(50u << 20, m_document.CellText8(0, 1).size());
}

TEST_F(LoadCsvFileTest, ManyRowsGrowToExactCount)
{
    std::string data = "n,t\n";
    for (int i = 0; i < 5000; ++i)
        data += std::to_string(i) + (i % 7 ? ",short\n" : ",\"a much longer, quoted text\"\n");
    ASSERT_TRUE(Load(data));
    ASSERT_EQ(5000, m_document.RowCount());
    EXPECT_EQ("4999", m_document.CellText8(4999, 1));
    EXPECT_EQ("a much longer, quoted text", m_document.CellText8(0, 2));
    // Progress at records 0, 1024, 2048, 3072 and 4096.
    EXPECT_EQ(5, m_ui.ProgressUpdates());
}

TEST_F(LoadCsvFileTest, CancelledLoadLeavesDocumentCleared)
{
    ASSERT_TRUE(Load("x\n1\n"));
    std::string data = "a,b\n";
    for (int i = 0; i < 3000; ++i)
        data += "1,2\n";
    m_ui.CancelProgressAt(2);
    EXPECT_FALSE(Load(data));
    EXPECT_FALSE(m_document.FileOpen());
    EXPECT_EQ(0, m_document.RowCount());
    EXPECT_LE(m_document.ColumnCount(), 1);
    EXPECT_TRUE(m_document.Warnings().empty());
    EXPECT_FALSE(m_ui.ProgressOpen());
}

TEST_F(LoadCsvFileTest, BackslashEscapesAreResolved)
{
    FileFormat format;
    format.backslashEscape = true;
    ASSERT_TRUE(Load("h,i\na\\,b,x\\ny\n", format));
    EXPECT_EQ((Table{{"h", "i"}, {"a,b", "x\ny"}}), Contents());
}

TEST_F(LoadCsvFileTest, ColumnWidthsFollowLongestText)
{
    ASSERT_TRUE(Load("a,b\n" + std::string(30, 'x') + ",y\n"));
    // 30 characters x 10 pixels x 1.12, and the 20-pixel minimum.
    EXPECT_EQ(336, m_document.Table().Column(1).width);
    EXPECT_EQ(20, m_document.Table().Column(2).width);
}

TEST_F(LoadCsvFileTest, RestoreHookSeesLoadedTable)
{
    struct Hooks : DocumentHooks
    {
        void RestoreFileProperties(TableDocument& document, FileFormat& format) override
        {
            rows = document.RowCount();
            format.delimitAllCells = true;
        }
        int rows = -1;
    } hooks;
    m_document.SetHooks(&hooks);
    ASSERT_TRUE(Load("a\n1\n2\n"));
    EXPECT_EQ(2, hooks.rows);
    EXPECT_TRUE(m_document.Format().delimitAllCells);
    m_document.SetHooks(nullptr);
}

TEST_F(LoadCsvFileTest, RandomBytesNeverCrash)
{
    std::mt19937 random(2024);
    const char alphabet[] = {'a', '1', ',', ';', '\t', '|', '"', '\r', '\n', ' ', '\\', '\0'};
    for (int round = 0; round < 4000; ++round) {
        std::string data(random() % 80, '\0');
        for (char& c : data)
            c = (random() % 6 == 0) ? static_cast<char>(random())
                                    : alphabet[random() % sizeof alphabet];
        if (round % 5 == 0)
            data.insert(0, "\xEF\xBB\xBF");
        FileFormat format;
        format.quiet = true;
        format.ignoreComments = true;
        format.backslashEscape = round % 2;
        format.noColumnNames = round % 3 == 0;
        format.separator = "\0,\t;|"[random() % 5];
        format.path = Path();
        m_files.readContent = data;
        if (LoadCsvFile(m_document, format, "Open")) {
            EXPECT_GE(m_document.ColumnCount(), 2);
            const Table table = Contents();
            EXPECT_EQ(static_cast<std::size_t>(m_document.RowCount()) + 1, table.size());
        }
    }
}

} // namespace
} // namespace quirnel
