#include "document/file_history.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdio>

namespace quirnel {
namespace {

using test::ReadFile;
using test::TempDir;
using test::WriteFile;

class FileHistoryOnDisk : public testing::Test
{
protected:
    void TearDown() override { ost::SettingsFile::FailCallForTest(0); }

    /// A history of two paths, as saved.
    static std::string TwoPaths()
    {
        TempDir scratch;
        FileHistory history;
        FileRecord record;
        record.Set("Widths", "10,20");
        history.Put("/data/b.csv", record);
        history.Put("/data/a.csv", {});
        EXPECT_TRUE(history.Save(scratch / "h.dat"));
        return ReadFile(scratch / "h.dat");
    }

    TempDir m_dir;
    std::filesystem::path m_file = m_dir / "filehistory.dat";
};

TEST_F(FileHistoryOnDisk, UnreadableHistoryIsLeftAlone)
{
    const std::string kept = TwoPaths();
    WriteFile(m_file, kept);
    FileHistory history;
    ost::SettingsFile::FailCallForTest(1, EACCES); // the open
    EXPECT_EQ(ost::SettingsLoadStatus::Unreadable, history.Load(m_file));
    ost::SettingsFile::FailCallForTest(0);
    EXPECT_EQ(ost::SettingsLoadStatus::Unreadable, history.LoadStatus());
    EXPECT_EQ(EACCES, history.LoadError());
    EXPECT_EQ(0, history.Count());
    history.Touch("/data/c.csv");
    EXPECT_FALSE(history.Save(m_file));
    EXPECT_EQ(kept, ReadFile(m_file));
    EXPECT_EQ(ost::SettingsLoadStatus::Loaded, history.Load(m_file));
    EXPECT_EQ((std::vector<std::string>{"/data/a.csv", "/data/b.csv"}), history.Paths());
    EXPECT_TRUE(history.Save(m_file));
}

// Each file call of the rewrite fails in turn, a write also after half of its bytes: the
// history file is then always the old one or the new one, whole, and no temporary is left.
TEST_F(FileHistoryOnDisk, EveryFailingCallLeavesTheOldOrTheNewHistory)
{
    const std::string old = TwoPaths();
    WriteFile(m_file, old);
    FileHistory history;
    ASSERT_EQ(ost::SettingsLoadStatus::Loaded, history.Load(m_file));
    history.Touch("/data/b.csv");
    ost::SettingsFile::FailCallForTest(0);
    ASSERT_TRUE(history.Save(m_file));
    const std::string updated = ReadFile(m_file);
    ASSERT_NE(old, updated);
    const int calls = ost::SettingsFile::CallsForTest();
    int faults = 0;
    for (int call = 1; call <= calls; ++call) {
        for (bool midway : {false, true}) {
            WriteFile(m_file, old);
            ost::SettingsFile::FailCallForTest(call, EIO, midway);
            const bool saved = history.Save(m_file);
            ++faults;
            EXPECT_EQ(saved ? updated : old, ReadFile(m_file)) << "call " << call;
            EXPECT_EQ(std::vector<std::string>{"filehistory.dat"}, m_dir.Entries())
                << "call " << call;
        }
    }
    RecordProperty("InjectedFaults", faults);
    std::printf("file history: %d faults injected over %d calls\n", faults, calls);
}

} // namespace
} // namespace quirnel
