#include "document/backup_file.h"
#include "tests/document/case_name.h"
#include "tests/document/faulty_file_system.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace quirnel {
namespace {

using test::CaseName;
using test::FaultyFileSystem;
using test::FileOp;
using test::ReadFile;
using test::WriteFile;

struct ProgressLog
{
    std::vector<std::string> steps;
    std::size_t cancelAt = 0; ///< 1-based step that answers "cancel"; 0 never
};

bool RecordStep(const std::string& text, void* data)
{
    auto* log = static_cast<ProgressLog*>(data);
    log->steps.push_back(text);
    return log->steps.size() == log->cancelAt;
}

class BackupFileTest : public testing::Test
{
protected:
    std::string Path(const std::string& name) const { return (m_dir / name).string(); }
    std::string Backup(int number) const { return Path("data.csv.bk" + std::to_string(number)); }
    /// The file and backups 1 .. count, each holding its own name.
    void MakeFiles(int backups)
    {
        WriteFile(Path("data.csv"), "current");
        for (int i = 1; i <= backups; ++i)
            WriteFile(Backup(i), "backup " + std::to_string(i));
    }
    std::vector<std::string> Entries() const { return m_dir.Entries(); }
    /// Backs up data.csv, collecting errors in `m_errors`.
    int Run(int levels, int flags = 0, const std::string& folder = "", ProgressLog* log = nullptr)
    {
        return BackupFile(m_files, Path("data.csv"), folder, levels, flags, &m_errors,
                          log ? RecordStep : nullptr, log);
    }

    test::TempDir m_dir;
    FaultyFileSystem m_files;
    std::string m_errors;
};

TEST_F(BackupFileTest, RotatesThreeLevels)
{
    MakeFiles(3);
    EXPECT_EQ(kBackupDone, Run(3));
    EXPECT_EQ("current", ReadFile(Backup(1)));
    EXPECT_EQ("backup 1", ReadFile(Backup(2)));
    EXPECT_EQ("backup 2", ReadFile(Backup(3)));
    EXPECT_EQ("current", ReadFile(Path("data.csv")));
    EXPECT_FALSE(std::filesystem::exists(Backup(4)));
    EXPECT_EQ("", m_errors);
}

TEST_F(BackupFileTest, FillsGapsWithoutComplaint)
{
    MakeFiles(1);
    EXPECT_EQ(kBackupDone, Run(9));
    EXPECT_EQ((std::vector<std::string>{"data.csv", "data.csv.bk1", "data.csv.bk2"}), Entries());
    EXPECT_EQ("", m_errors);
}

TEST_F(BackupFileTest, SingleLevelReplacesNewest)
{
    MakeFiles(1);
    EXPECT_EQ(kBackupDone, Run(1));
    EXPECT_EQ("current", ReadFile(Backup(1)));
    EXPECT_EQ((std::vector<std::string>{"data.csv", "data.csv.bk1"}), Entries());
}

TEST_F(BackupFileTest, UnchangedFileIsNotBackedUpTwice)
{
    MakeFiles(0);
    ASSERT_EQ(kBackupDone, Run(3));
    EXPECT_EQ(kBackupSkipped, Run(3));
    EXPECT_FALSE(std::filesystem::exists(Backup(2)));
    EXPECT_EQ(kBackupDone, Run(3, BACKUP_ALWAYS));
    EXPECT_TRUE(std::filesystem::exists(Backup(2)));
}

TEST_F(BackupFileTest, FailedCopyPutsBackupsBack)
{
    MakeFiles(2);
    m_files.fault = [](FileOp op, const std::string&, const std::string&) {
        return op == FileOp::Copy || op == FileOp::Link ? EIO : 0;
    };
    EXPECT_EQ(kBackupFailed, Run(3));
    EXPECT_EQ("Failed to backup the original file.\r\nInput/output error\r\n", m_errors);
    EXPECT_EQ((std::vector<std::string>{"data.csv", "data.csv.bk1", "data.csv.bk2"}), Entries());
    EXPECT_EQ("backup 1", ReadFile(Backup(1)));
    EXPECT_EQ("backup 2", ReadFile(Backup(2)));
}

struct ValidationCase
{
    const char* name;
    std::string path; ///< relative to the test folder; "" for none
    int levels;
    std::string expected; ///< "%s" stands for the full path
};

class BackupValidation : public BackupFileTest, public testing::WithParamInterface<ValidationCase>
{};

TEST_P(BackupValidation, FailsWithMessage)
{
    MakeFiles(0);
    const ValidationCase& c = GetParam();
    const std::string path = c.path.empty() ? "" : Path(c.path);
    EXPECT_EQ(kBackupFailed,
              BackupFile(m_files, path, "", c.levels, 0, &m_errors, nullptr, nullptr));
    std::string expected = c.expected;
    if (const auto at = expected.find("%s"); at != std::string::npos)
        expected.replace(at, 2, path);
    EXPECT_EQ(expected, m_errors);
    EXPECT_EQ(std::vector<std::string>{"data.csv"}, Entries());
}

INSTANTIATE_TEST_SUITE_P(
    BackupFile, BackupValidation,
    testing::Values(ValidationCase{"EmptyPath", "", 3,
                                   "You must specify the name of the file to be backed-up."},
                    ValidationCase{"ZeroLevels", "data.csv", 0,
                                   "The number of backup levels must be between 1 and 999."},
                    ValidationCase{"TooManyLevels", "data.csv", 1000,
                                   "The number of backup levels must be between 1 and 999."},
                    ValidationCase{"FolderPath", "sub/", 3, "The filepath \"%s\" is not legal."},
                    ValidationCase{"MissingFile", "none.csv", 3,
                                   "The file \"%s\" does not exist."}),
    CaseName());

TEST_F(BackupFileTest, BackupFolderIsCreatedAndExtensionStripped)
{
    MakeFiles(0);
    const std::string folder = Path("old");
    EXPECT_EQ(kBackupDone, Run(2, BACKUP_STRIP_EXTENSION, folder));
    EXPECT_EQ("current", ReadFile(folder + "/data.bk1"));
}

TEST_F(BackupFileTest, UncreatableFolderReported)
{
    MakeFiles(0);
    m_files.FailOn(FileOp::CreateDirectory, EACCES);
    const std::string folder = Path("old");
    EXPECT_EQ(kBackupFailed, Run(2, 0, folder));
    EXPECT_EQ("The target directory '" + folder +
                  "' could not be created.\r\nPermission denied\r\n",
              m_errors);
}

TEST_F(BackupFileTest, FailedDeleteOfOldestIsReportedAndTheRotationGoesOn)
{
    MakeFiles(2);
    m_files.FailOn(FileOp::Remove, EACCES);
    EXPECT_EQ(kBackupFailed, Run(2));
    EXPECT_EQ("Failed to delete oldest backup \"" + Backup(2) + "\"\r\n", m_errors);
    EXPECT_EQ("backup 1", ReadFile(Backup(2)));
    EXPECT_EQ("current", ReadFile(Backup(1)));
}

TEST_F(BackupFileTest, FailedCopyFallsBackToASecondName)
{
    // A full disk or a read error stops the copy; a second name for the file takes no room.
    MakeFiles(1);
    m_files.midway = true;
    m_files.FailOn(FileOp::Copy, ENOSPC);
    EXPECT_EQ(kBackupDone, Run(3));
    EXPECT_EQ("current", ReadFile(Backup(1)));
    EXPECT_EQ("backup 1", ReadFile(Backup(2)));
    EXPECT_EQ("", m_errors);
}

TEST_F(BackupFileTest, FailedMoveReported)
{
    MakeFiles(2);
    m_files.FailOn(FileOp::Rename, EACCES);
    EXPECT_EQ(kBackupFailed, Run(3));
    EXPECT_EQ("Failed to move \"" + Backup(2) + "\" to \"" + Backup(3) + "\"\r\n", m_errors);
}

TEST_F(BackupFileTest, ReportsEachStep)
{
    MakeFiles(2);
    ProgressLog log;
    EXPECT_EQ(kBackupDone, Run(2, BACKUP_REPORT_STEPS, "", &log));
    EXPECT_EQ((std::vector<std::string>{"Deleting " + Backup(2) + "\r\n",
                                        "Moving " + Backup(1) + " >>> " + Backup(2) + "\r\n",
                                        "Copying " + Path("data.csv") + "\r\n"}),
              log.steps);
    ProgressLog quiet;
    EXPECT_EQ(kBackupDone, Run(2, BACKUP_ALWAYS, "", &quiet));
    EXPECT_TRUE(quiet.steps.empty());
}

TEST_F(BackupFileTest, CancelStopsBeforeTheStep)
{
    MakeFiles(2);
    ProgressLog log;
    log.cancelAt = 2;
    EXPECT_EQ(kBackupCancelled, Run(2, BACKUP_REPORT_STEPS, "", &log));
    EXPECT_EQ("backup 1", ReadFile(Backup(1)));
    EXPECT_FALSE(std::filesystem::exists(Backup(2)));
}

TEST_F(BackupFileTest, FailedCopyReportsFailedStep)
{
    MakeFiles(0);
    m_files.fault = [](FileOp op, const std::string&, const std::string&) {
        return op == FileOp::Copy || op == FileOp::Link ? EIO : 0;
    };
    ProgressLog log;
    EXPECT_EQ(kBackupFailed, Run(2, BACKUP_REPORT_STEPS, "", &log));
    EXPECT_EQ((std::vector<std::string>{"Copying " + Path("data.csv") + "\r\n", "FAILED\r\n"}),
              log.steps);
}

class ReplaceFileTest : public BackupFileTest
{
protected:
    void SetUp() override
    {
        WriteFile(Path("data.csv"), "old");
        WriteFile(Path("new.tmp"), "new");
    }
    bool Replace() { return ReplaceFile(m_files, Path("data.csv"), Path("new.tmp"), m_error, 0); }
    std::string m_error;
};

TEST_F(ReplaceFileTest, PutsNewFileInPlace)
{
    EXPECT_TRUE(Replace());
    EXPECT_EQ("new", ReadFile(Path("data.csv")));
    EXPECT_EQ(std::vector<std::string>{"data.csv"}, Entries());
}

TEST_F(ReplaceFileTest, MissingTargetIsCreated)
{
    std::filesystem::remove(Path("data.csv"));
    EXPECT_TRUE(Replace());
    EXPECT_EQ("new", ReadFile(Path("data.csv")));
}

TEST_F(ReplaceFileTest, EmptyNamesRefused)
{
    EXPECT_FALSE(ReplaceFile(m_files, "", Path("new.tmp"), m_error, 0));
    EXPECT_EQ("No old file was specified.", m_error);
    EXPECT_FALSE(ReplaceFile(m_files, Path("data.csv"), "", m_error, 0));
    EXPECT_EQ("No new file was specified.", m_error);
}

TEST_F(ReplaceFileTest, FailedMoveLeavesBothFiles)
{
    m_files.midway = true;
    m_files.fault = [this](FileOp op, const std::string& from, const std::string&) {
        return (op == FileOp::Rename && from == Path("new.tmp")) || op == FileOp::Copy ? EIO : 0;
    };
    EXPECT_FALSE(Replace());
    EXPECT_EQ("Failed to replace file \"" + Path("data.csv") + "\": Input/output error\r\n",
              m_error);
    EXPECT_EQ("old", ReadFile(Path("data.csv")));
    EXPECT_EQ("new", ReadFile(Path("new.tmp")));
    EXPECT_EQ((std::vector<std::string>{"data.csv", "new.tmp"}), Entries());
}

TEST_F(ReplaceFileTest, ReadOnlyTargetRefused)
{
    std::filesystem::permissions(Path("data.csv"), std::filesystem::perms::owner_read);
    EXPECT_FALSE(Replace());
    EXPECT_EQ("Failed to replace file \"" + Path("data.csv") +
                  "\": the read-only attribute is set.\r\n",
              m_error);
    EXPECT_EQ("old", ReadFile(Path("data.csv")));
}

} // namespace
} // namespace quirnel
