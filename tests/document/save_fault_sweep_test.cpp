// Every file call that a save makes is failed in turn, a write or a copy also after half of its
// bytes. Whatever fails, the file is its old self or the complete new one, the old version is
// still there (in the file or in its newest backup), and no temporary file is left.

#include "document/csv_loader.h"
#include "document/csv_saver.h"
#include "document/table_document.h"
#include "ostrand/core/user_interface.h"
#include "tests/document/case_name.h"
#include "tests/document/faulty_file_system.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

namespace quirnel {
namespace {

using test::FaultyFileSystem;
using test::FileCall;
using test::FileOp;
using test::ReadFile;
using test::WriteFile;
namespace fs = std::filesystem;

/// Records the boxes a save shows; no one answers questions here.
class RecordingUi : public ost::UserInterface
{
public:
    int MessageBox(const ost::MessageBoxRequest& request) override
    {
        texts.push_back(request.text);
        return ost::kButtonOk;
    }
    void Beep() override {}
    void BeginProgress(const std::string&) override {}
    bool UpdateProgress(double) override { return true; }
    void EndProgress() override {}

    std::vector<std::string> texts;
};

struct SweepCase
{
    const char* name;
    int levels;
    int backups;      ///< existing backups 1 .. backups before the save
    bool throughLink; ///< data.csv is a link to real/data.csv
};

const char kOld[] = "id,name\r\n1,old\r\n2,\"a, b\"\r\n";
const char kNew[] = "id,name\r\n1,new\r\n2,\"a, b\"\r\n";

class SaveFaultSweep : public testing::TestWithParam<SweepCase>
{
protected:
    /// Where the saved bytes end up: the link's target when there is a link.
    fs::path Folder() const { return GetParam().throughLink ? m_dir / "real" : m_dir.Path(); }
    fs::path File() const { return Folder() / "data.csv"; }
    fs::path Backup(int number) const
    {
        return Folder() / ("data.csv.bk" + std::to_string(number));
    }

    /// The files as they were before any save, and a document loaded from them and edited.
    void Prepare(TableDocument& document)
    {
        for (const auto& entry : fs::directory_iterator(m_dir.Path()))
            fs::remove_all(entry.path());
        if (GetParam().throughLink) {
            fs::create_directory(m_dir / "real");
            fs::create_symlink("real/data.csv", m_dir / "data.csv");
        }
        WriteFile(File(), kOld);
        for (int i = 1; i <= GetParam().backups; ++i)
            WriteFile(Backup(i), "backup " + std::to_string(i));
        m_files.fault = nullptr;
        m_files.midway = false;
        FileFormat format;
        format.path = (m_dir / "data.csv").string();
        ASSERT_TRUE(LoadCsvFile(document, format, "Open"));
        ASSERT_TRUE(document.SetCellText8(0, 2, "new"));
        document.SetModified(true);
        document.SetBackupLevels(GetParam().levels);
    }

    std::vector<std::string> Temporaries() const
    {
        std::vector<std::string> found;
        for (const auto& entry : fs::recursive_directory_iterator(m_dir.Path()))
            if (entry.path().filename().string().starts_with("~qrn-"))
                found.push_back(entry.path().filename().string());
        return found;
    }

    test::TempDir m_dir;
    FaultyFileSystem m_files;
};

/// A backup that cannot be moved up stops the rotation before the file is copied, and a failed
/// backup lets the save go on: after such a fault the newest backup is not the old version.
bool BackupMove(const FileCall& call)
{
    return call.op == FileOp::Rename && call.from.find(".bk") != std::string::npos;
}

TEST_P(SaveFaultSweep, FileIsOldOrNewAndOldVersionSurvives)
{
    RecordingUi ui;
    TableDocument document(ui);
    document.SetFileSystem(m_files);
    Prepare(document);
    m_files.calls.clear();
    ASSERT_TRUE(SaveCsvFile(document, (m_dir / "data.csv").string()));
    ASSERT_EQ(kNew, ReadFile(File()));
    const std::vector<FileCall> path = m_files.calls;

    int faults = 0;
    int movesFailed = 0;
    for (std::size_t number = 1; number <= path.size(); ++number) {
        const FileCall& call = path[number - 1];
        const bool transfers = call.op == FileOp::Write || call.op == FileOp::Copy;
        for (const bool midway : {false, true}) {
            if (midway && !transfers)
                continue;
            SCOPED_TRACE("call " + std::to_string(number) + (midway ? " midway" : ""));
            Prepare(document);
            ui.texts.clear();
            m_files.FailCall(number, EIO);
            m_files.midway = midway;
            const bool saved = SaveCsvFile(document, (m_dir / "data.csv").string());
            m_files.fault = nullptr;
            ++faults;

            const std::string now = ReadFile(File());
            EXPECT_EQ(saved ? kNew : kOld, now);
            EXPECT_TRUE(Temporaries().empty());
            if (GetParam().throughLink) {
                EXPECT_TRUE(fs::is_symlink(m_dir / "data.csv"));
            }
            if (!saved) {
                EXPECT_EQ(1u, ui.texts.size());
                EXPECT_TRUE(document.Modified());
            } else if (GetParam().levels > 0 && !BackupMove(call)) {
                EXPECT_EQ(kOld, ReadFile(Backup(1)));
            } else if (BackupMove(call)) {
                ++movesFailed;
            }
        }
    }
    RecordProperty("InjectedFaults", faults);
    std::printf("save %s: %d faults injected over %zu calls, %d of them in moving backups up\n",
                GetParam().name, faults, path.size(), movesFailed);
}

INSTANTIATE_TEST_SUITE_P(SaveCsvFile, SaveFaultSweep,
                         testing::Values(SweepCase{"NoBackupsYet", 9, 0, false},
                                         SweepCase{"TwoBackups", 9, 2, false},
                                         SweepCase{"FullRotation", 3, 3, false},
                                         SweepCase{"WithoutBackups", 0, 1, false},
                                         SweepCase{"ThroughLink", 2, 1, true}),
                         test::CaseName());

} // namespace
} // namespace quirnel
