#include "document/backup_file.h"
#include "document/csv_saver.h"
#include "tests/document/case_name.h"
#include "tests/document/document_fixture.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <random>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// Calls to umask anywhere in this process; the umask itself is set through the system call.
std::atomic<int> g_umaskCalls{0};

mode_t SetUmaskUncounted(mode_t mask)
{
    return static_cast<mode_t>(::syscall(SYS_umask, mask));
}

} // namespace

// Takes the place of the C library's umask in this test program, so that a test can tell
// whether saving touched the process-wide mask: a change, however brief, would give files that
// other threads create meanwhile the wrong permissions.
extern "C" mode_t umask(mode_t mask) noexcept
{
    ++g_umaskCalls;
    return SetUmaskUncounted(mask);
}

namespace quirnel {
namespace {

using test::CaseName;
using test::DocumentTest;
using test::FileOp;
using test::ReadFile;
using test::Table;
using test::WriteFile;

struct RoundTripCase
{
    std::string name;
    char separator;
    std::string newline;
    bool utf8Mark;
};

/// A file in the writer's own quoting: quotes exactly where QuoteField puts them.
std::string WellFormed(char separator, const std::string& newline, bool utf8Mark)
{
    const std::string s(1, separator);
    std::string text = utf8Mark ? "\xEF\xBB\xBF" : "";
    text += "id" + s + "name" + s + "note" + newline;
    text += "1" + s + "plain" + s + "\"a,b\"" + newline;
    text += "2" + s + "\" lead\"" + s + "\"say \"\"hi\"\"\"" + newline;
    text += "3" + s + "\"'quoted\"" + s + newline;
    text += "4" + s + "\"two\r\nlines\"" + s + "x y" + newline;
    text +=
        "5" + s + (utf8Mark ? "\xC3\xA9t\xC3\xA9" : "caf\xE9") + s + "\"semi;bar|tab\t\"" + newline;
    return text;
}

class SaveRoundTrip : public DocumentTest, public testing::WithParamInterface<RoundTripCase>
{};

TEST_P(SaveRoundTrip, GivesSameBytes)
{
    const RoundTripCase& c = GetParam();
    const std::string original = WellFormed(c.separator, c.newline, c.utf8Mark);
    ASSERT_TRUE(Load(original));
    EXPECT_EQ(c.separator, m_document.Separator());
    EXPECT_EQ(c.newline, m_document.Format().newline);
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ(original, ReadFile(Path()));
    EXPECT_EQ(original, ReadFile(Path("data.csv.bk1")));
}

std::vector<RoundTripCase> RoundTripCases()
{
    std::vector<RoundTripCase> cases;
    const std::pair<char, const char*> separators[] = {
        {',', "Comma"}, {'\t', "Tab"}, {';', "Semicolon"}, {'|', "Bar"}};
    const std::pair<const char*, const char*> newlines[] = {
        {"\r\n", "CrLf"}, {"\n", "Lf"}, {"\r", "Cr"}, {"\n\r", "LfCr"}};
    for (const auto& [separator, separatorName] : separators)
        for (const auto& [newline, newlineName] : newlines)
            for (bool mark : {false, true})
                cases.push_back({std::string(separatorName) + newlineName + (mark ? "Utf8" : ""),
                                 separator, newline, mark});
    return cases;
}

INSTANTIATE_TEST_SUITE_P(SaveCsvFile, SaveRoundTrip, testing::ValuesIn(RoundTripCases()),
                         CaseName());

class SaveCsvFileTest : public DocumentTest
{
protected:
    /// data.csv with backups 1 and 2, loaded and then edited.
    void PrepareEdited()
    {
        WriteFile(Path("data.csv.bk1"), "backup 1");
        WriteFile(Path("data.csv.bk2"), "backup 2");
        ASSERT_TRUE(Load(kOriginal));
        ASSERT_TRUE(m_document.SetCellText8(0, 2, "changed"));
        m_document.SetModified(true);
    }
    void ExpectUntouched()
    {
        EXPECT_EQ(kOriginal, ReadFile(Path()));
        EXPECT_EQ("backup 1", ReadFile(Path("data.csv.bk1")));
        EXPECT_EQ("backup 2", ReadFile(Path("data.csv.bk2")));
        EXPECT_EQ((std::vector<std::string>{"data.csv", "data.csv.bk1", "data.csv.bk2"}),
                  Entries());
        EXPECT_TRUE(m_document.Modified());
    }
    static constexpr const char* kOriginal = "a,b\r\n1,2\r\n";
};

struct SaveFaultCase
{
    std::string name;
    FileOp op;               ///< the operation refused with `error`
    int error;               ///< 0: nothing refused
    std::size_t writeBudget; ///< bytes written before writes fail
    int rows;                ///< rows of 40 characters replacing the edit, or 0
    std::string message;
};

class SaveFault : public SaveCsvFileTest, public testing::WithParamInterface<SaveFaultCase>
{};

// Whatever fails, the file and its backups are as they were and no temporary file is left.
TEST_P(SaveFault, LeavesFileAndBackupsUntouched)
{
    const SaveFaultCase& c = GetParam();
    PrepareEdited();
    m_document.SetRowCount(c.rows ? c.rows : 1);
    for (int row = 0; row < c.rows; ++row)
        m_document.SetCellText8(row, 1, std::string(40, 'x'));
    m_files.writeBudget = c.writeBudget;
    m_files.FailOn(c.op, c.error);
    m_ui.Expect("Error", c.message);
    EXPECT_FALSE(SaveCsvFile(m_document, Path()));
    ExpectUntouched();
}

constexpr std::size_t kNoLimit = std::numeric_limits<std::size_t>::max();

INSTANTIATE_TEST_SUITE_P(
    SaveCsvFile, SaveFault,
    testing::Values(SaveFaultCase{"FolderNotWritable", FileOp::CreateTemp, EACCES, kNoLimit, 0,
                                  "Failed to create the CSV file.\r\n\r\nPermission denied"},
                    SaveFaultCase{"WriteFailingPartWay", FileOp::Read, 0, 5, 0,
                                  "Failed to write the CSV file."},
                    SaveFaultCase{"WriteFailingAfterFirstMegabyte", FileOp::Read, 0,
                                  (1u << 20) + 100, 40000, "Failed to write the CSV file."},
                    SaveFaultCase{"FlushToDiskFailing", FileOp::Close, EIO, kNoLimit, 0,
                                  "Failed to write the CSV file."}),
    CaseName());

TEST_F(SaveCsvFileTest, TargetReadOnly)
{
    PrepareEdited();
    std::filesystem::permissions(Path(), std::filesystem::perms::owner_read);
    // The backup of the unchanged file is made before the replacement is refused; every
    // earlier version is still there, one place older.
    m_ui.Expect("Error", "Failed to replace the file.\r\n\r\nFailed to replace file \"" + Path() +
                             "\": the read-only attribute is set.\r\n");
    EXPECT_FALSE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ(kOriginal, ReadFile(Path()));
    EXPECT_EQ(kOriginal, ReadFile(Path("data.csv.bk1")));
    EXPECT_EQ("backup 1", ReadFile(Path("data.csv.bk2")));
    EXPECT_EQ("backup 2", ReadFile(Path("data.csv.bk3")));
    EXPECT_EQ(
        (std::vector<std::string>{"data.csv", "data.csv.bk1", "data.csv.bk2", "data.csv.bk3"}),
        Entries());
}

TEST_F(SaveCsvFileTest, ReplaceFailing)
{
    PrepareEdited();
    int movesIn = 0;
    m_files.fault = [&](FileOp op, const std::string&, const std::string& to) {
        return op == FileOp::Rename && to == Path() && ++movesIn == 1 ? EIO : 0;
    };
    m_ui.Expect("Error", "Failed to replace the file.\r\n\r\nFailed to replace file \"" + Path() +
                             "\": Input/output error\r\n");
    EXPECT_FALSE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ(kOriginal, ReadFile(Path()));
    EXPECT_EQ(kOriginal, ReadFile(Path("data.csv.bk1")));
    EXPECT_EQ("backup 2", ReadFile(Path("data.csv.bk3")));
    EXPECT_EQ(4u, Entries().size());
    // A second attempt does not push the backups further: backup 1 already is this file.
    EXPECT_EQ(kBackupSkipped, BackupFile(m_files, Path(), "", 9, 0, nullptr, nullptr, nullptr));
}

TEST_F(SaveCsvFileTest, FailedReplaceWithoutAsideNameKeepsTheFile)
{
    // Without backups the file itself is all there is. Neither a missing name for a file
    // beside it nor a copy that breaks off may cost it.
    ASSERT_TRUE(Load(kOriginal));
    ASSERT_TRUE(m_document.SetCellText8(0, 2, "changed"));
    m_document.SetBackupLevels(0);
    int temporaries = 0;
    m_files.midway = true;
    m_files.fault = [&](FileOp op, const std::string&, const std::string& to) {
        if (op == FileOp::CreateTemp)
            return ++temporaries > 1 ? EACCES : 0;
        return op == FileOp::Copy || (op == FileOp::Rename && to == Path()) ? EIO : 0;
    };
    m_ui.Expect("Error", "Failed to replace the file.\r\n\r\nFailed to replace file \"" + Path() +
                             "\": Input/output error\r\n");
    EXPECT_FALSE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ(kOriginal, ReadFile(Path()));
    EXPECT_EQ(std::vector<std::string>{"data.csv"}, Entries());
}

TEST_F(SaveCsvFileTest, BackupCopyFailingStillSaves)
{
    PrepareEdited();
    m_files.fault = [](FileOp op, const std::string&, const std::string&) {
        return op == FileOp::Copy || op == FileOp::Link ? EIO : 0;
    };
    EXPECT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ("a,b\r\n1,changed\r\n", ReadFile(Path()));
    EXPECT_EQ("backup 1", ReadFile(Path("data.csv.bk1")));
    EXPECT_EQ("backup 2", ReadFile(Path("data.csv.bk2")));
    EXPECT_EQ((std::vector<std::string>{"data.csv", "data.csv.bk1", "data.csv.bk2"}), Entries());
    EXPECT_FALSE(m_document.Modified());
}

TEST_F(SaveCsvFileTest, ZeroLevelsKeepAndThreeLevelsRotate)
{
    WriteFile(Path("data.csv.bk1"), "backup 1");
    WriteFile(Path("data.csv.bk2"), "backup 2");
    WriteFile(Path("data.csv.bk3"), "backup 3");
    ASSERT_TRUE(Load(kOriginal));
    m_document.SetBackupLevels(0);
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ("backup 1", ReadFile(Path("data.csv.bk1")));
    m_document.SetBackupLevels(3);
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ(kOriginal, ReadFile(Path("data.csv.bk1")));
    EXPECT_EQ("backup 1", ReadFile(Path("data.csv.bk2")));
    EXPECT_EQ("backup 2", ReadFile(Path("data.csv.bk3")));
    EXPECT_EQ(4u, Entries().size());
}

TEST_F(SaveCsvFileTest, SavedFileKeepsPermissions)
{
    ASSERT_TRUE(Load(kOriginal));
    namespace fs = std::filesystem;
    fs::permissions(Path(), fs::perms::owner_read | fs::perms::owner_write);
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ(fs::perms::owner_read | fs::perms::owner_write, fs::status(Path()).permissions());
    // Saving elsewhere makes that the document's path.
    ASSERT_TRUE(SaveCsvFile(m_document, Path("other.csv")));
    EXPECT_EQ(kOriginal, ReadFile(Path("other.csv")));
    EXPECT_EQ(Path("other.csv"), m_document.Path());
}

TEST_F(SaveCsvFileTest, TemporaryFileIsAsPrivateAsTheFileWhileWritten)
{
    ASSERT_TRUE(Load(kOriginal));
    namespace fs = std::filesystem;
    fs::permissions(Path(), fs::perms::owner_read | fs::perms::owner_write);
    fs::perms whileWritten = fs::perms::unknown;
    m_files.fault = [&](FileOp op, const std::string&, const std::string&) {
        for (const std::string& name : Entries())
            if (op == FileOp::Write && name.ends_with(".tmp"))
                whileWritten = fs::status(Path(name)).permissions();
        return 0;
    };
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ(fs::perms::owner_read | fs::perms::owner_write, whileWritten);
}

TEST_F(SaveCsvFileTest, NewFileGetsDefaultPermissionsAndTheUmaskIsLeftAlone)
{
    const mode_t previous = SetUmaskUncounted(027);
    ASSERT_TRUE(Load(kOriginal));
    const int callsBefore = g_umaskCalls;
    const bool saved = SaveCsvFile(m_document, Path("new.csv"));
    const int calls = g_umaskCalls - callsBefore;
    SetUmaskUncounted(previous);
    ASSERT_TRUE(saved);
    EXPECT_EQ(0, calls);
    namespace fs = std::filesystem;
    EXPECT_EQ(fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read,
              fs::status(Path("new.csv")).permissions());
}

TEST_F(SaveCsvFileTest, SavingThroughALinkKeepsTheLink)
{
    namespace fs = std::filesystem;
    fs::create_directory(m_dir / "real");
    fs::create_symlink("real/data.csv", Path());
    ASSERT_TRUE(Load(kOriginal));
    ASSERT_TRUE(m_document.SetCellText8(0, 2, "changed"));
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_TRUE(fs::is_symlink(Path()));
    EXPECT_EQ("a,b\r\n1,changed\r\n", ReadFile(m_dir / "real" / "data.csv"));
    // The backups lie beside the file that changed.
    EXPECT_EQ(kOriginal, ReadFile(m_dir / "real" / "data.csv.bk1"));
    EXPECT_EQ((std::vector<std::string>{"data.csv", "real"}), Entries());
    EXPECT_EQ(Path(), m_document.Path());
}

TEST_F(SaveCsvFileTest, LoopOfLinksIsNotSaved)
{
    namespace fs = std::filesystem;
    ASSERT_TRUE(Load(kOriginal));
    fs::remove(Path());
    fs::create_symlink("loop.csv", Path());
    fs::create_symlink("data.csv", Path("loop.csv"));
    m_ui.Expect("Error", "Failed to create the CSV file.\r\n\r\nToo many levels of symbolic links");
    EXPECT_FALSE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ((std::vector<std::string>{"data.csv", "loop.csv"}), Entries());
}

TEST_F(SaveCsvFileTest, FormatSettingsAreObeyed)
{
    ASSERT_TRUE(Load("a,b\nx y,\\z\n"));
    FileFormat format = m_document.Format();
    format.separator = 0;
    format.delimitAllCells = true;
    format.backslashEscape = true;
    format.noColumnNames = true;
    m_document.StoreFormat(format);
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ("\"x y\",\"\\\\z\"\n", ReadFile(Path()));
    EXPECT_EQ(',', m_document.Separator());
}

TEST_F(SaveCsvFileTest, SingleEmptyCellWritesQuotePair)
{
    ASSERT_TRUE(Load("a\n1\n"));
    m_document.SetCellText8(0, 1, "");
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ("a\n\"\"\n", ReadFile(Path()));
    ASSERT_TRUE(Load(ReadFile(Path())));
    EXPECT_EQ(1, m_document.RowCount());
}

TEST_F(SaveCsvFileTest, LoneQuoteAtTheEndSurvivesOpenAndSave)
{
    ASSERT_TRUE(Load("h,i\r\na,\""));
    EXPECT_EQ((Table{{"h", "i"}, {"a", "\""}}), Contents());
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ("h,i\r\na,\"\"\"\"\r\n", ReadFile(Path()));
}

TEST_F(SaveCsvFileTest, CommentsAreNotWrittenBack)
{
    FileFormat format;
    format.ignoreComments = true;
    ASSERT_TRUE(Load("#c\na\n#d\n1\n", format));
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ("a\n1\n", ReadFile(Path()));
}

TEST_F(SaveCsvFileTest, UnconvertibleCharactersBecomeQuestionMarks)
{
    FileFormat format;
    format.codePage = 1252;
    ASSERT_TRUE(Load("name\ncaf\xE9\n", format));
    m_document.SetCellText16(0, 1, u"\u03b1\u00e9");
    m_ui.Expect("Warning",
                "The file was saved successfully.  However, some unicode characters were "
                "outside the file's character set and could not be converted.  Recommend you "
                "choose \"File Properties\" from the File menu, change the Character Set to "
                "\"UTF-8\", and re-save the file.");
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ("name\n?\xE9\n", ReadFile(Path()));
}

TEST_F(SaveCsvFileTest, Utf8CodePageGainsMark)
{
    FileFormat format;
    format.codePage = 65001;
    ASSERT_TRUE(Load("n\n\xCE\xB1\n", format));
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ("\xEF\xBB\xBFn\n\xCE\xB1\n", ReadFile(Path()));
}

TEST_F(SaveCsvFileTest, SortedAndHiddenRowsAreSavedInFileOrder)
{
    ASSERT_TRUE(Load("n\nb\na\nc\n"));
    ASSERT_TRUE(m_document.Table().SetSort(1, false));
    m_document.Table().SetRowHidden(0, true);
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    EXPECT_EQ("n\nb\na\nc\n", ReadFile(Path()));
}

TEST_F(SaveCsvFileTest, RandomTablesSurviveSaveAndLoad)
{
    // Whatever the cells hold, a saved table loads back the same, in 8-bit and UTF-8 files.
    std::mt19937 random(31);
    const std::vector<std::string> pieces = {"a",  "b",  ",",        ";",           "|",
                                             "\t", "\"", "\r",       "\n",          " ",
                                             "'",  "\\", "\xC3\xA9", "\xE4\xB8\xAD"};
    m_files.skipFlush = true;
    m_document.SetBackupLevels(0);
    for (int round = 0; round < 200; ++round) {
        const bool utf8 = round % 2;
        const char separator = ",\t;|"[random() % 4];
        const int columns = 1 + static_cast<int>(random() % 4);
        const int rows = static_cast<int>(random() % 5);
        ASSERT_TRUE(Load(utf8 ? "\xEF\xBB\xBFx\n" : "x\n"));
        FileFormat format = m_document.Format();
        format.separator = separator;
        format.backslashEscape = round % 3 == 0;
        format.delimitAllCells = round % 5 == 0;
        m_document.StoreFormat(format);
        m_document.Clear();
        auto cell = [&] {
            std::string text;
            for (int n = static_cast<int>(random() % 5); n > 0; --n)
                text += pieces[random() % pieces.size()];
            return text;
        };
        Table expected(1);
        for (int c = 0; c < columns; ++c) {
            std::string name = "n" + cell();
            while (name.find("\r\n") != std::string::npos)
                name.erase(name.find("\r\n"), 1);
            expected[0].push_back(name);
            if (utf8)
                m_document.AddColumn({}, ost::Utf8ToUtf16(name));
            else
                m_document.AddColumn(name);
        }
        m_document.SetRowCount(rows);
        for (int r = 0; r < rows; ++r) {
            expected.emplace_back();
            for (int c = 1; c <= columns; ++c) {
                expected.back().push_back(cell());
                if (utf8)
                    m_document.SetCellText16(r, c, ost::Utf8ToUtf16(expected.back().back()));
                else
                    m_document.SetCellText8(r, c, expected.back().back());
            }
        }
        ASSERT_TRUE(SaveCsvFile(m_document, Path()));
        FileFormat again;
        again.path = Path();
        again.separator = separator;
        again.backslashEscape = format.backslashEscape;
        ASSERT_TRUE(LoadCsvFile(m_document, again, "Open"));
        // A row of empty cells is written as a bare separator run, or as "" for one column.
        EXPECT_EQ(expected, Contents()) << ReadFile(Path());
    }
}

struct ReloadCase
{
    std::string name;
    std::string file;
    FileFormat format;
};

class SaveAndReload : public DocumentTest, public testing::WithParamInterface<ReloadCase>
{};

// Files the fuzzer found whose table changed on being saved and loaded again.
TEST_P(SaveAndReload, GivesTheSameTable)
{
    const ReloadCase& c = GetParam();
    ASSERT_TRUE(Load(c.file, c.format));
    const Table loaded = Contents();
    ASSERT_TRUE(SaveCsvFile(m_document, Path()));
    FileFormat back;
    back.separator = m_document.Separator();
    back.backslashEscape = c.format.backslashEscape;
    back.noColumnNames = c.format.noColumnNames;
    ASSERT_TRUE(Load(ReadFile(Path()), back));
    EXPECT_EQ(loaded, Contents()) << ReadFile(Path());
}

FileFormat Escaping(bool noColumnNames = false)
{
    FileFormat format;
    format.backslashEscape = true;
    format.noColumnNames = noColumnNames;
    return format;
}

INSTANTIATE_TEST_SUITE_P(
    SaveCsvFile, SaveAndReload,
    testing::Values(ReloadCase{"BackslashBeforeNul", std::string("a\tb\nx\\\0y\tz\n", 11),
                               Escaping()},
                    ReloadCase{"NameStartingWithUtf16Mark", "\r\n\xFE\xFF\x31,2\n3,4\n", {}},
                    ReloadCase{"RowStartingWithUtf8Mark", "\n\xEF\xBB\xBFx\n", Escaping(true)}),
    CaseName());

class CloseQuestionTest : public DocumentTest
{
protected:
    void OpenModified()
    {
        ASSERT_TRUE(Load("a\n1\n"));
        m_document.SetCellText8(0, 1, "2");
        m_document.SetModified(true);
    }
};

TEST_F(CloseQuestionTest, UnmodifiedReleasesWithoutAsking)
{
    ASSERT_TRUE(Load("a\n1\n"));
    EXPECT_TRUE(m_document.QueryRelease());
    EXPECT_FALSE(m_document.FileOpen());
    EXPECT_EQ(0, m_document.RowCount());
}

struct CloseAnswerCase
{
    std::string name;
    int answer;
    bool released;
    std::string fileAfter;
};

class CloseAnswer : public CloseQuestionTest, public testing::WithParamInterface<CloseAnswerCase>
{};

TEST_P(CloseAnswer, DecidesSaveAndRelease)
{
    const CloseAnswerCase& c = GetParam();
    OpenModified();
    m_ui.Expect("Close", "Save changes to data.csv?", c.answer);
    EXPECT_EQ(c.released, m_document.QueryRelease());
    EXPECT_EQ(c.fileAfter, ReadFile(Path()));
    EXPECT_EQ(!c.released, m_document.FileOpen());
    if (!c.released) {
        EXPECT_EQ("2", m_document.CellText8(0, 1));
    }
}

INSTANTIATE_TEST_SUITE_P(
    QueryRelease, CloseAnswer,
    testing::Values(CloseAnswerCase{"Save", ost::kButtonYes, true, "a\n2\n"},
                    CloseAnswerCase{"DoNotSave", ost::kButtonNo, true, "a\n1\n"},
                    CloseAnswerCase{"Cancel", ost::kButtonCancel, false, "a\n1\n"}),
    CaseName());

TEST_F(CloseQuestionTest, FailedSaveKeepsDocument)
{
    OpenModified();
    m_files.FailOn(FileOp::CreateTemp, EACCES);
    m_ui.Expect("Close", "Save changes to data.csv?", ost::kButtonYes);
    m_ui.Expect("Error", "Failed to create the CSV file.\r\n\r\nPermission denied");
    EXPECT_FALSE(m_document.QueryRelease());
    EXPECT_TRUE(m_document.FileOpen());
    EXPECT_TRUE(m_document.Modified());
}

TEST_F(CloseQuestionTest, DocumentWithoutPathIsTheFile)
{
    OpenModified();
    m_document.SetPath("");
    m_ui.Expect("Close", "Save changes to the file?", ost::kButtonYes);
    EXPECT_FALSE(m_document.QueryRelease());
    EXPECT_TRUE(m_document.FileOpen());
}

TEST_F(CloseQuestionTest, OpeningAnotherFileAsksFirst)
{
    OpenModified();
    m_ui.Expect("Close", "Save changes to data.csv?", ost::kButtonCancel);
    EXPECT_FALSE(Load("b\n3\n"));
    EXPECT_EQ("2", m_document.CellText8(0, 1));
}

} // namespace
} // namespace quirnel
