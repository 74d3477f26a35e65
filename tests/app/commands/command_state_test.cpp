#include "app/command_ids.h"
#include "app/command_state.h"
#include "app/menu_model.h"

#include <gtest/gtest.h>

namespace quirnel {
namespace {

TEST(CommandState, CommandsWithoutHandlerAreDisabled)
{
    DocumentState state;
    EXPECT_TRUE(ComputeCommandState(cmd::kGraph, state).enabled);
    state.hasHandler = [](int id) { return id != cmd::kGraph; };
    EXPECT_FALSE(ComputeCommandState(cmd::kGraph, state).enabled);
    EXPECT_TRUE(ComputeCommandState(cmd::kOpenFile, state).enabled);
}

TEST(CommandState, ToggleCommandsFollowTheirSwitches)
{
    DocumentState state;
    state.multilineMode = true;
    state.toolbarShown = false;
    EXPECT_TRUE(ComputeCommandState(cmd::kMultilineEditingMode, state).checked);
    EXPECT_TRUE(ComputeCommandState(cmd::kMultilineEditingOption, state).checked);
    EXPECT_FALSE(ComputeCommandState(cmd::kWarningsVisible, state).checked);
    EXPECT_FALSE(ComputeCommandState(cmd::kDisplayWarnings, state).checked);
    EXPECT_FALSE(ComputeCommandState(cmd::kDisplayToolbar, state).checked);
    state.warningsVisible = true;
    EXPECT_TRUE(ComputeCommandState(cmd::kWarningsVisible, state).checked);
    EXPECT_TRUE(ComputeCommandState(cmd::kDisplayWarnings, state).checked);
}

TEST(CommandState, EntriesSharingAnIdAreCheckedByTheirOwnBoolean)
{
    DocumentState state;
    state.filterWholeWord = true;
    state.warnTooFew = false;
    state.copyRowsNoColumnNames = true;
    const std::vector<Menu> menus = MainMenuBar(false);
    const std::vector<CommandMenuEntry>& options = menus[1].entries;
    // "Copy rows: no column names", "Filter: case sensitive", "Filter: whole word",
    // "Warn if too few columns".
    EXPECT_TRUE(ComputeCommandState(options[4], state).checked);
    EXPECT_FALSE(ComputeCommandState(options[7], state).checked);
    EXPECT_TRUE(ComputeCommandState(options[8], state).checked);
    EXPECT_FALSE(ComputeCommandState(options[10], state).checked);
    EXPECT_EQ(options[7].id, options[8].id);
    EXPECT_EQ(options[4].id, options[10].id);
}

TEST(CommandState, CharacterSetFollowsTheCodePage)
{
    DocumentState state;
    state.characterSets = {{"8-bit ASCII (System Default)", 0}, {"UTF-8 (Unicode)", 65001}};
    state.currentCodePage = 65001;
    const std::vector<CommandMenuEntry> entries = OnInitPopup(cmd::kCharacterSetMenu, state);
    ASSERT_EQ(entries.size(), 2u);
    EXPECT_FALSE(entries[0].checked);
    EXPECT_TRUE(entries[1].checked);
    EXPECT_EQ(entries[1].text, "UTF-8 (Unicode)");
}

} // namespace
} // namespace quirnel
