// A save whose records are built on several threads writes the bytes of one thread: rows in
// file order, the first record's protection against reading as a byte-order mark, every
// quoting flag.

#include "document/csv_saver.h"
#include "tests/document/document_fixture.h"

#include <gtest/gtest.h>

#include <random>

namespace quirnel {
namespace {

using test::DocumentTest;
using test::ReadFile;
using test::WriteFile;

class ParallelSaveTest : public DocumentTest
{
protected:
    /// The file saved with `threads` threads building `blockRows` rows at a time.
    std::string SaveWith(int threads, int blockRows)
    {
        SaveThreads split;
        split.threads = threads;
        split.blockRows = blockRows;
        const std::string path =
            Path("out-" + std::to_string(threads) + "-" + std::to_string(blockRows) + ".csv");
        if (!SaveCsvFile(m_document, path, "Error", split))
            return "failed";
        return ReadFile(path);
    }

    void ExpectSameWhateverTheBlocks()
    {
        const std::string single = SaveWith(1, 0);
        ASSERT_NE("failed", single);
        for (int blockRows : {1, 2, 7, 1000})
            for (int threads : {2, 3})
                EXPECT_EQ(single, SaveWith(threads, blockRows))
                    << threads << " threads, blocks of " << blockRows << " rows";
    }
};

TEST_F(ParallelSaveTest, BlocksJoinIntoTheSingleThreadedFile)
{
    std::mt19937 random(5);
    const char* const cells[] = {"plain",          "a,b",
                                 "say \"\"hi\"\"", "",
                                 " lead",          "tail ",
                                 "'apos",          "x;y",
                                 "tab\there",      "\"line\r\nbreak\"",
                                 "back\\\\slash"};
    std::string text = "\xEF\xBB\xBF"
                       "one,two,three\n";
    for (int row = 0; row < 50; ++row) {
        for (int c = 0; c < 3; ++c)
            text += std::string(c ? "," : "") + cells[random() % std::size(cells)];
        text += "\n";
    }
    // 8-bit cells with every writer flag; a first row that would read back as a mark.
    FileFormat format;
    format.codePage = 0;
    WriteFile(Path(), text.substr(3));
    format.path = Path();
    ASSERT_TRUE(LoadCsvFile(m_document, format, "Open"));
    m_document.SetBackupLevels(0);
    ExpectSameWhateverTheBlocks();
    FileFormat changed = m_document.Format();
    changed.delimitAllCells = true;
    changed.backslashEscape = true;
    changed.separator = '\t';
    m_document.StoreFormat(changed);
    ExpectSameWhateverTheBlocks();
    changed = m_document.Format();
    changed.delimitAllCells = false;
    changed.noColumnNames = true;
    m_document.StoreFormat(changed);
    m_document.Table().SetCellText8(0, 1,
                                    "\xFF\xFE"
                                    "looks unicode");
    ExpectSameWhateverTheBlocks();
    EXPECT_EQ('"', SaveWith(2, 1)[0]);
}

} // namespace
} // namespace quirnel
