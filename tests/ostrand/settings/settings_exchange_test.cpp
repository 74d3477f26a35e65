#include "ostrand/settings/settings_exchange.h"
#include "ostrand/settings/settings_file.h"
#include "ostrand/settings/settings_folder.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>

namespace {

using ost::SettingsDirection;
using ost::SettingsExchange;
using ost::SettingsFile;
using ost::SettingsValue;

// A settings owner as the program writes them: one routine for both directions.
struct Owner
{
    bool confirm = true;
    int levels = 9;
    double size = 10.0;
    std::string separator = ",";
    std::u16string title = u"Graph";

    void Exchange(SettingsExchange& ex)
    {
        ex.Section("Settings");
        ex.Bool("NoConfirmDeleteRow", confirm);
        ex.Int("BackupLevels", levels);
        ex.Double("PrintSize", size);
        ex.Text("CCSeparator", separator);
        ex.Section("Graph");
        ex.Wide("GraphTitle", title);
    }
};

TEST(SettingsExchange, WriteThenReadRestoresEveryVariable)
{
    SettingsFile file;
    Owner written{false, 3, 12.5, ";\r\n", u"Umsatz 😀"};
    SettingsExchange writer(file, SettingsDirection::Write);
    written.Exchange(writer);
    EXPECT_EQ(file.Keys("Settings"), (std::vector<std::string>{"NoConfirmDeleteRow", "BackupLevels",
                                                               "PrintSize", "CCSeparator"}));

    SettingsFile reloaded;
    reloaded.Parse(file.Serialize());
    Owner read;
    SettingsExchange reader(reloaded, SettingsDirection::Read);
    read.Exchange(reader);
    EXPECT_FALSE(read.confirm);
    EXPECT_EQ(read.levels, 3);
    EXPECT_EQ(read.size, 12.5);
    EXPECT_EQ(read.separator, ";\r\n");
    EXPECT_EQ(read.title, u"Umsatz 😀");
}

TEST(SettingsExchange, ReadingKeepsDefaultsForMissingOrMistypedKeys)
{
    SettingsFile file;
    file.Parse("[Settings]\nNoConfirmDeleteRow=i:1\nBackupLevels=s:5\nPrintSize=i:8\n"
               "[Graph]\nGraphTitle=s:narrow\n");
    Owner owner;
    SettingsExchange reader(file, SettingsDirection::Read);
    owner.Exchange(reader);
    EXPECT_TRUE(owner.confirm);
    EXPECT_EQ(owner.levels, 9);
    EXPECT_EQ(owner.size, 8.0); // an integer is a fine number
    EXPECT_EQ(owner.separator, ",");
    EXPECT_EQ(owner.title, u"Graph");
    // Reading never adds keys.
    EXPECT_EQ(file.Keys("Settings").size(), 3u);
}

TEST(SettingsExchange, PlainTextValuesInEitherDirection)
{
    SettingsFile file;
    SettingsExchange ex(file, SettingsDirection::Read);
    ex.Section("Settings");
    EXPECT_EQ(ex.ReadText("TableSort"), std::nullopt);
    ex.WriteText("TableSort", "1,0,2");
    EXPECT_EQ(ex.ReadText("TableSort"), "1,0,2");
    EXPECT_EQ(file.GetText("Settings", "TableSort"), "1,0,2");
    ex.Remove("TableSort");
    EXPECT_EQ(ex.ReadText("TableSort"), std::nullopt);
}

// Puts an environment variable back as it was when the test started.
class EnvironmentRestorer
{
public:
    explicit EnvironmentRestorer(const char* name) : m_name(name)
    {
        if (const char* value = std::getenv(name))
            m_old = value;
    }
    ~EnvironmentRestorer()
    {
        if (m_old)
            ::setenv(m_name, m_old->c_str(), 1);
        else
            ::unsetenv(m_name);
    }

private:
    const char* m_name;
    std::optional<std::string> m_old;
};

class SettingsFolderTest : public ::testing::Test
{
protected:
    EnvironmentRestorer m_config{"XDG_CONFIG_HOME"};
    EnvironmentRestorer m_home{"HOME"};
    quirnel::test::TempDir dir;
};

TEST_F(SettingsFolderTest, FollowsXdgConfigHomeAndCreatesTheFolder)
{
    ::setenv("XDG_CONFIG_HOME", (dir / "config").c_str(), 1);
    EXPECT_EQ(ost::SettingsFolder(), dir / "config" / "Quirnel");
    EXPECT_TRUE(std::filesystem::is_directory(dir / "config" / "Quirnel"));
    EXPECT_EQ(ost::SettingsFilePath(), dir / "config" / "Quirnel" / "quiredit.dat");
}

TEST_F(SettingsFolderTest, FallsBackToDotConfigWhenUnsetOrRelative)
{
    ::setenv("HOME", dir.Path().c_str(), 1);
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(ost::SettingsFolder(), dir / ".config" / "Quirnel");
    ::setenv("XDG_CONFIG_HOME", "relative/config", 1);
    EXPECT_EQ(ost::SettingsFolder(), dir / ".config" / "Quirnel");
    EXPECT_TRUE(std::filesystem::is_directory(dir / ".config" / "Quirnel"));
}

} // namespace
