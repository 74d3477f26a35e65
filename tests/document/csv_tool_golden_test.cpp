#include "ostrand/settings/settings_file.h"
#include "tests/support/temp_dir.h"
#include "tools/quirnel-csv/csv_tool.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <optional>
#include <sstream>

namespace quirnel {
namespace {

using test::ReadFile;
using test::WriteFile;

/// Each folder under tests/data/document holds input.csv, expected.json and optionally the
/// options, space-separated, in a file named "options".
std::vector<std::string> GoldenCases()
{
    std::vector<std::string> names;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::string(QUIRNEL_TEST_DATA) + "/document"))
        if (entry.is_directory())
            names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

class GoldenDump : public testing::TestWithParam<std::string>
{};

TEST_P(GoldenDump, MatchesExpectedJson)
{
    const std::string folder = std::string(QUIRNEL_TEST_DATA) + "/document/" + GetParam();
    std::vector<std::string> args{"dump-json", folder + "/input.csv"};
    std::istringstream options(ReadFile(folder + "/options"));
    for (std::string option; options >> option;)
        args.push_back(option);
    std::string out;
    std::string err;
    const int code = RunCsvTool(args, out, err);
    EXPECT_EQ(ReadFile(folder + "/expected.json"), out);
    EXPECT_EQ(out.find("\"ok\": false") == std::string::npos ? 0 : 2, code);
}

INSTANTIATE_TEST_SUITE_P(QuirnelCsv, GoldenDump, testing::ValuesIn(GoldenCases()),
                         [](const testing::TestParamInfo<std::string>& p) {
                             std::string name;
                             for (char c : p.param)
                                 if (c != '_')
                                     name += c;
                             return name;
                         });

TEST(QuirnelCsv, CheckListsWarningsAndExitsOne)
{
    test::TempDir dir;
    WriteFile(dir / "a.csv", "a,b\n1\n1,2,3\n");
    std::string out;
    std::string err;
    EXPECT_EQ(1, RunCsvTool({"check", (dir / "a.csv").string()}, out, err));
    EXPECT_EQ("row 1: Row 1 only contains 1 column.\nrow 2: Row 2 has 1 extra column: 3\n", out);
    out.clear();
    EXPECT_EQ(0, RunCsvTool(
                     {"check", (dir / "a.csv").string(), "--no-warn-too-few", "--sep", "semicolon"},
                     out, err));
    EXPECT_EQ("", out);
}

TEST(QuirnelCsv, NormalizeRewritesInWriterQuoting)
{
    test::TempDir dir;
    WriteFile(dir / "in.csv", "\"a\",b\n\"1\", x \n");
    std::string out;
    std::string err;
    EXPECT_EQ(0, RunCsvTool({"normalize", (dir / "in.csv").string(), (dir / "out.csv").string()},
                            out, err));
    EXPECT_EQ("a,b\n1,x\n", ReadFile(dir / "out.csv"));
    EXPECT_FALSE(std::filesystem::exists(dir / "out.csv.bk1"));
}

/// A run of the tool with the user's settings folder in a fresh place.
class QuirnelCsvNormalize : public testing::Test
{
protected:
    QuirnelCsvNormalize()
    {
        if (const char* old = std::getenv("XDG_CONFIG_HOME"))
            m_oldConfigHome = old;
        ::setenv("XDG_CONFIG_HOME", (m_dir / "config").c_str(), 1);
        std::filesystem::create_directories(m_dir / "config" / "Quirnel");
        WriteFile(Path(), kOriginal);
    }
    ~QuirnelCsvNormalize() override
    {
        if (m_oldConfigHome)
            ::setenv("XDG_CONFIG_HOME", m_oldConfigHome->c_str(), 1);
        else
            ::unsetenv("XDG_CONFIG_HOME");
    }
    std::string Path(const std::string& name = "data.csv") const { return (m_dir / name).string(); }
    std::string Backup(int number) const { return Path("data.csv.bk" + std::to_string(number)); }
    int Normalize(std::vector<std::string> options = {})
    {
        std::vector<std::string> args{"normalize", Path(), Path()};
        args.insert(args.end(), options.begin(), options.end());
        std::string out;
        std::string err;
        return RunCsvTool(args, out, err);
    }
    void WritePreferences(std::string_view text)
    {
        WriteFile(m_dir / "config" / "Quirnel" / "quiredit.dat", text);
    }
    /// Backups 1 .. count, each holding its own number.
    void MakeBackups(int count)
    {
        for (int i = 1; i <= count; ++i)
            WriteFile(Backup(i), std::to_string(i));
    }

    static constexpr const char* kOriginal = "\"a\",b\n1, 2\n";
    test::TempDir m_dir;
    std::optional<std::string> m_oldConfigHome;
};

TEST_F(QuirnelCsvNormalize, InPlaceKeepsAsManyBackupsAsThePreferencesSay)
{
    WritePreferences("[Settings]\nBackupLevels=i:2\n");
    MakeBackups(2);
    EXPECT_EQ(0, Normalize());
    EXPECT_EQ("a,b\n1,2\n", ReadFile(Path()));
    EXPECT_EQ(kOriginal, ReadFile(Backup(1)));
    EXPECT_EQ("1", ReadFile(Backup(2)));
    EXPECT_FALSE(std::filesystem::exists(Backup(3)));
    // A choice on the command line wins.
    EXPECT_EQ(0, Normalize({"--backups", "0"}));
    EXPECT_EQ(kOriginal, ReadFile(Backup(1)));
    EXPECT_EQ(2, Normalize({"--backups", "1000"}));
}

TEST_F(QuirnelCsvNormalize, InPlaceKeepsNineBackupsWithoutReadablePreferences)
{
    for (const bool unreadable : {false, true}) {
        if (unreadable) {
            WritePreferences("[Settings]\nBackupLevels=i:1\n");
            ost::SettingsFile::FailCallForTest(1, EACCES); // its open
        }
        MakeBackups(9);
        WriteFile(Path(), kOriginal);
        EXPECT_EQ(0, Normalize());
        ost::SettingsFile::FailCallForTest(0);
        EXPECT_EQ(kOriginal, ReadFile(Backup(1)));
        EXPECT_EQ("8", ReadFile(Backup(9)));
        EXPECT_FALSE(std::filesystem::exists(Backup(10)));
    }
}

TEST(QuirnelCsv, LoadFailureGoesToStandardError)
{
    test::TempDir dir;
    std::string out;
    std::string err;
    EXPECT_EQ(2, RunCsvTool({"check", (dir / "none.csv").string()}, out, err));
    EXPECT_EQ("Failed to load the CSV file.\r\n\r\nNo such file or directory\n", err);
}

TEST(QuirnelCsv, BadUsageExitsTwo)
{
    std::string out;
    std::string err;
    EXPECT_EQ(2, RunCsvTool({"dump-json"}, out, err));
    EXPECT_EQ(2, RunCsvTool({"check", "x.csv", "--sep", "colon"}, out, err));
    EXPECT_EQ(2, RunCsvTool({"frobnicate", "x.csv"}, out, err));
    EXPECT_NE(std::string::npos, err.find("unknown separator 'colon'"));
}

TEST(JsonString, EscapesInvalidUtf8BytesOnly)
{
    EXPECT_EQ("\"\\u00E9\xC3\xA9\\u00C3\\\"\\\\\\r\\n\\u0001\"",
              JsonString("\xE9\xC3\xA9\xC3\"\\\r\n\x01"));
    EXPECT_EQ("\"\\u00ED\\u00A0\\u0080\"", JsonString("\xED\xA0\x80"));
}

} // namespace
} // namespace quirnel
