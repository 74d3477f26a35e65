#include "app/toolbar_model.h"
#include "ostrand/settings/settings_exchange.h"
#include "ostrand/settings/settings_file.h"

#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

namespace quirnel {
namespace {

void Write(ToolbarModel& toolbar, ost::SettingsFile& file)
{
    ost::SettingsExchange exchange(file, ost::SettingsDirection::Write);
    toolbar.Exchange(exchange);
}

void Read(ToolbarModel& toolbar, ost::SettingsFile& file)
{
    ost::SettingsExchange exchange(file, ost::SettingsDirection::Read);
    toolbar.Exchange(exchange);
}

class MainToolbar : public testing::Test
{
protected:
    void SetUp() override { BuildMainToolbar(toolbar); }

    std::string VisibleIds() const
    {
        std::string text;
        for (const ToolbarSlot& slot : toolbar.Layout()) {
            text += slot.gap ? std::string("|") : std::to_string(toolbar.Entries()[slot.entry].id);
            text += ' ';
        }
        return text;
    }

    ToolbarModel toolbar;
};

// The entries shown before anything is customised; "|" is a gap between groups.
constexpr const char* kDefaultBar = "11373 11374 11375 11158 11376 | 16161 16163 | 16152 16181 "
                                    "16182 | 16155 16160 16158 16156 16157 11299 11300 ";

TEST_F(MainToolbar, RegistersEveryButtonAndCaptionInTableOrder)
{
    ASSERT_EQ(toolbar.Entries().size(), 60u);
    EXPECT_EQ(toolbar.Entries()[0].id, 11373);
    EXPECT_EQ(toolbar.Entries()[12].kind, CommandKind::GroupCaption);
    EXPECT_EQ(toolbar.Entries()[12].caption, "Column:");
    EXPECT_EQ(toolbar.Entries()[59].id, 16168);
    EXPECT_EQ(VisibleIds(), kDefaultBar);
}

TEST_F(MainToolbar, ResetGivesBackTheRegisteredDefaults)
{
    const std::string defaults = toolbar.CustomizationRecord();
    for (int i = 0; i < static_cast<int>(toolbar.Entries().size()); ++i) {
        toolbar.SetVisible(i, i % 3 == 0);
        toolbar.SetLastInGroup(i, i % 2 == 0);
    }
    ASSERT_NE(toolbar.CustomizationRecord(), defaults);
    toolbar.Reset();
    EXPECT_EQ(toolbar.CustomizationRecord(), defaults);
    EXPECT_EQ(VisibleIds(), kDefaultBar);
    // Exactly the hidden-by-default column: only these are shown.
    const std::set<int> shown = {11373, 11374, 11375, 11158, 11376, 16161, 16163, 16152, 16181,
                                 16182, 16155, 16160, 16158, 16156, 16157, 11299, 11300};
    for (const ToolbarEntry& entry : toolbar.Entries()) {
        EXPECT_EQ(entry.visible, shown.count(entry.id) == 1) << entry.label;
    }
}

TEST_F(MainToolbar, GapOfAHiddenLastEntryStillSeparatesGroups)
{
    toolbar.SetVisible(toolbar.IndexOf(16150), true);
    toolbar.SetVisible(toolbar.IndexOf(16163), false);
    EXPECT_EQ(VisibleIds(), "11373 11374 11375 11158 11376 | 16161 16150 | 16152 16181 16182 | "
                            "16155 16160 16158 16156 16157 11299 11300 ");
    toolbar.SetLastInGroup(toolbar.IndexOf(11376), false);
    toolbar.SetLastInGroup(toolbar.IndexOf(16215), false);
    EXPECT_EQ(VisibleIds(), "11373 11374 11375 11158 11376 16161 16150 | 16152 16181 16182 | "
                            "16155 16160 16158 16156 16157 11299 11300 ");
}

TEST(ToolbarModel, EntryWithoutIconIsNotAdded)
{
    ToolbarModel toolbar;
    EXPECT_FALSE(toolbar.RegisterCommand("", 16160, "tip", "Delete Row(s)", false, "Delete", ""));
    EXPECT_TRUE(toolbar.Entries().empty());
    EXPECT_TRUE(
        toolbar.RegisterCommand("row-delete", 16160, "tip", "Delete Row(s)", false, "Delete", ""));
    EXPECT_FALSE(toolbar.RegisterCommand("row-delete", 16160, "tip", "again", false, "", ""));
    EXPECT_EQ(toolbar.Entries().size(), 1u);
    EXPECT_EQ(toolbar.IndexOf(16160), 0);
}

TEST_F(MainToolbar, SurvivesSaveAndLoad)
{
    toolbar.SetVisible(toolbar.IndexOf(16214), true);
    toolbar.SetVisible(toolbar.IndexOf(11373), false);
    toolbar.SetVisible(13, true);
    toolbar.SetLastInGroup(toolbar.IndexOf(16181), true);
    toolbar.SetAppearance(ToolbarAppearance::IconsOnly);
    ASSERT_TRUE(toolbar.SetSize(32));
    toolbar.SetNoTips(true);
    toolbar.SetShown(false);
    ost::SettingsFile saved;
    Write(toolbar, saved);
    EXPECT_EQ(saved.Keys("Toolbar"),
              (std::vector<std::string>{"ToolbarShown", "Size", "Appearance", "NoTips", "Custm"}));
    EXPECT_EQ(saved.GetText("Toolbar", "Custm").value_or("").substr(0, 20), "v1;11373:00;11374:10");

    // Through the file's text, as a restart would read it.
    ost::SettingsFile file;
    file.Parse(saved.Serialize());
    ToolbarModel reloaded;
    BuildMainToolbar(reloaded);
    Read(reloaded, file);
    EXPECT_EQ(reloaded.CustomizationRecord(), toolbar.CustomizationRecord());
    EXPECT_EQ(reloaded.Appearance(), ToolbarAppearance::IconsOnly);
    EXPECT_EQ(reloaded.Size(), 32);
    EXPECT_TRUE(reloaded.NoTips());
    EXPECT_FALSE(reloaded.Shown());
}

TEST_F(MainToolbar, DamagedSettingsKeepDefaults)
{
    ost::SettingsFile file;
    file.Set("Toolbar", "Size", 999);
    file.Set("Toolbar", "Appearance", 7);
    file.Set("Toolbar", "NoTips", std::string("yes"));
    file.Set("Toolbar", "Custm",
             std::string("v1;16214:1;abc:11;g9:11;;11373:0x;16169:10;g0:11;99999:00"));
    Read(toolbar, file);
    EXPECT_EQ(toolbar.Size(), 24);
    EXPECT_EQ(toolbar.Appearance(), ToolbarAppearance::IconsAndLabel);
    EXPECT_FALSE(toolbar.NoTips());
    EXPECT_TRUE(toolbar.Shown());
    EXPECT_FALSE(toolbar.Entries()[toolbar.IndexOf(16214)].visible);
    EXPECT_TRUE(toolbar.Entries()[toolbar.IndexOf(11373)].visible);
    EXPECT_TRUE(toolbar.Entries()[toolbar.IndexOf(16169)].visible);
    EXPECT_TRUE(toolbar.Entries()[12].visible);
    EXPECT_TRUE(toolbar.Entries()[12].lastInGroup);

    ToolbarModel other;
    BuildMainToolbar(other);
    EXPECT_FALSE(other.ApplyCustomizationRecord("11373:00"));
    EXPECT_FALSE(other.ApplyCustomizationRecord(""));
    EXPECT_TRUE(other.Entries()[0].visible);
}

} // namespace
} // namespace quirnel
