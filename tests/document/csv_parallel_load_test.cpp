// Loads read on several threads must give the document that one thread gives: every cell,
// warning, row number and width. Tiny pieces put a piece boundary at every few bytes, so each
// kind of record boundary (quoted line breaks, blank lines, comments, escapes, NULs, quotes in
// the middle of fields) falls on one.

#include "document/csv_loader.h"
#include "tests/document/document_fixture.h"

#include <gtest/gtest.h>

#include <random>

namespace quirnel {
namespace {

using test::DocumentTest;
using test::WriteFile;

/// Everything a load decides, as text: format, columns with widths, cells, warnings.
std::string Describe(const TableDocument& document)
{
    std::string out;
    const FileFormat& format = document.Format();
    out += "separator " + std::to_string(format.separator) + " newline " +
           std::to_string(format.newline.size()) + " comments " +
           std::to_string(format.ignoreComments) + "\n";
    const TableControl& table = document.Table();
    for (int c = 1; c < document.ColumnCount(); ++c)
        out += "[" + document.ColumnName(c) + "] " + std::to_string(table.Column(c).width) + "\n";
    for (int r = 0; r < document.RowCount(); ++r) {
        out += std::to_string(r) + ":";
        for (int c = 1; c < document.ColumnCount(); ++c)
            out += " <" + std::string(document.CellText8(r, c)) + ">";
        out += "\n";
    }
    for (const CSV_Warning& warning : document.Warnings())
        out += "warning " + std::to_string(warning.row) + " " + warning.message + "|" +
               warning.extraData + "\n";
    return out;
}

/// Records built from pieces that each end or straddle records in their own way.
std::string MakeCsv(std::uint32_t seed, bool withComments)
{
    std::mt19937 random(seed);
    const char* const pieces[] = {"plain",
                                  "\"a,b\"",
                                  "\"line\r\nbreak\"",
                                  "\"lf\nonly\"",
                                  "\"cr\ronly\"",
                                  "\"say \"\"hi\"\"\"",
                                  "  spaced ",
                                  "",
                                  "x\"y",
                                  "\"open",
                                  "a\\,b",
                                  "tail\\",
                                  "\"\"",
                                  "\"x\"y",
                                  "q\"\"",
                                  "\"\r\n\"",
                                  "semi;colon",
                                  "\"#\"",
                                  " \"pad\" "};
    const char* const ends[] = {"\r\n", "\n", "\r", "\n\r", "\r\n\r\n"};
    std::string text = "h1,h2,h3\r\n";
    for (int record = 0; record < 120; ++record) {
        const int fields = 1 + static_cast<int>(random() % 5);
        for (int f = 0; f < fields; ++f) {
            if (f)
                text += ',';
            text += pieces[random() % std::size(pieces)];
        }
        text += ends[random() % std::size(ends)];
        if (random() % 17 == 0)
            text += '\0';
        if (withComments && random() % 9 == 0)
            text += "#note, \"with\r\n";
    }
    return text;
}

class ParallelLoadTest : public DocumentTest
{
protected:
    /// The document as `threads` threads in pieces of `pieceBytes` load it.
    std::string LoadWith(const std::string& bytes, FileFormat format, int threads,
                         std::size_t pieceBytes, bool warnTooFew = true)
    {
        WriteFile(Path(), bytes);
        format.path = Path();
        m_document.SetWarnTooFew(warnTooFew);
        LoadThreads split;
        split.threads = threads;
        split.pieceBytes = pieceBytes;
        if (!LoadCsvFile(m_document, format, "Open", {}, split))
            return "failed";
        return Describe(m_document);
    }

    void ExpectSameWhateverThePieces(const std::string& bytes, const FileFormat& format,
                                     bool warnTooFew = true)
    {
        const std::string single = LoadWith(bytes, format, 1, 0, warnTooFew);
        ASSERT_NE("failed", single);
        for (std::size_t pieceBytes : {1, 2, 3, 5, 8, 13, 64, 500}) {
            for (int threads : {2, 3}) {
                SCOPED_TRACE("pieces of " + std::to_string(pieceBytes) + " bytes, " +
                             std::to_string(threads) + " threads");
                EXPECT_EQ(single, LoadWith(bytes, format, threads, pieceBytes, warnTooFew));
            }
        }
    }
};

TEST_F(ParallelLoadTest, EveryBoundaryGivesTheSingleThreadedDocument)
{
    for (std::uint32_t seed = 1; seed <= 6; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        const std::string bytes = MakeCsv(seed, false);
        ExpectSameWhateverThePieces(bytes, FileFormat());
        FileFormat escapes;
        escapes.backslashEscape = true;
        ExpectSameWhateverThePieces(bytes, escapes);
        FileFormat noNames;
        noNames.noColumnNames = true;
        noNames.separator = ';';
        ExpectSameWhateverThePieces(bytes, noNames, false);
    }
}

TEST_F(ParallelLoadTest, CommentLinesAreWarnedAsOnOneThread)
{
    FileFormat comments;
    comments.ignoreComments = true;
    for (std::uint32_t seed = 7; seed <= 10; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        ExpectSameWhateverThePieces("#above the names\r\n" + MakeCsv(seed, true), comments);
        ExpectSameWhateverThePieces(MakeCsv(seed, true) + "#trailing\r\n", comments);
    }
}

TEST_F(ParallelLoadTest, TruncatedAndDamagedFiles)
{
    FileFormat format;
    // An unterminated quote swallows the rest of the file; quotes alone; line ends alone; a
    // record longer than many pieces; random bytes.
    ExpectSameWhateverThePieces("a,b\r\n1,\"2\r\n3,4\r\n5,6", format);
    ExpectSameWhateverThePieces("a,b\r\n\"\"\"\"\"\"\"\"\"\"\"\r\n\"", format);
    ExpectSameWhateverThePieces("a\r\n\r\n\n\r\r\n\n\n1\r\n\r\n", format);
    ExpectSameWhateverThePieces(
        "a,b\n" + std::string(3000, 'x') + ",\"" + std::string(2000, '\n') + "\"\n1,2\n", format);
    std::mt19937 random(42);
    std::string noise = "a,b,c\n";
    for (int i = 0; i < 3000; ++i)
        noise += "\",\r\n\\# a\0"[random() % 10];
    ExpectSameWhateverThePieces(noise, format);
    format.backslashEscape = true;
    ExpectSameWhateverThePieces(noise, format);
}

TEST_F(ParallelLoadTest, CellsTooLongToPointIntoTheFileAreCopied)
{
    // Cells longer than a packed cell can address are held as copies, whole.
    const std::string longText(300000, 'w');
    const std::string bytes = "a,b\n1," + longText + "\n\"" + longText + "\"\"x\",2\n3,4\n";
    const std::string single = LoadWith(bytes, FileFormat(), 1, 0);
    EXPECT_EQ(single, LoadWith(bytes, FileFormat(), 2, 4096));
    EXPECT_EQ(longText, m_document.CellText8(0, 2));
    EXPECT_EQ(longText + "\"x", m_document.CellText8(1, 1));
}

TEST_F(ParallelLoadTest, RowLimitAndCancelStopTheWorkers)
{
    std::string bytes = "a,b\n";
    for (int i = 0; i < 5000; ++i)
        bytes += std::to_string(i) + ",\"x\r\ny\"\n";
    WriteFile(Path(), bytes);
    LoadThreads split;
    split.threads = 2;
    split.pieceBytes = 100;

    LoadLimits limits;
    limits.maxRecords = 4999;
    m_format.path = Path();
    m_ui.Expect("Open", "Failed to load the CSV file.\r\n\r\nThe file has more than 4999 rows, "
                        "the most that a table can hold.");
    EXPECT_FALSE(LoadCsvFile(m_document, m_format, "Open", limits, split));
    EXPECT_EQ(0, m_document.RowCount());
    EXPECT_FALSE(m_ui.ProgressOpen());

    limits.maxRecords = 5000;
    ASSERT_TRUE(LoadCsvFile(m_document, m_format, "Open", limits, split));
    EXPECT_EQ(5000, m_document.RowCount());
    EXPECT_EQ("4999", m_document.CellText8(4999, 1));
    EXPECT_EQ("x\r\ny", m_document.CellText8(4999, 2));

    m_ui.CancelProgressAt(3);
    EXPECT_FALSE(LoadCsvFile(m_document, m_format, "Open", {}, split));
    EXPECT_FALSE(m_document.FileOpen());
    EXPECT_EQ(0, m_document.RowCount());
    EXPECT_TRUE(m_document.Warnings().empty());
    EXPECT_FALSE(m_ui.ProgressOpen());
}

} // namespace
} // namespace quirnel
