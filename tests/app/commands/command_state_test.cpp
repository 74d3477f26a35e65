#include "app/command_ids.h"
#include "app/command_state.h"
#include "app/menu_model.h"

#include <gtest/gtest.h>

#include <utility>

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
    // The toolbar button and the Options entry of one switch show the same check.
    const std::pair<int, bool DocumentState::*> toggles[] = {
        {cmd::kMultilineEditingMode, &DocumentState::multilineMode},
        {cmd::kMultilineEditingOption, &DocumentState::multilineMode},
        {cmd::kWarningsVisible, &DocumentState::warningsVisible},
        {cmd::kDisplayWarnings, &DocumentState::warningsVisible},
        {cmd::kDisplayToolbar, &DocumentState::toolbarShown}};
    for (const auto& [id, flag] : toggles)
        for (bool on : {false, true}) {
            DocumentState state;
            state.*flag = on;
            EXPECT_EQ(ComputeCommandState(id, state).checked, on) << id;
        }
}

TEST(CommandState, EntriesSharingAnIdAreCheckedByTheirOwnBoolean)
{
    int bound = 0;
    // Kept in a variable: a range-for over a member of the temporary would outlive it.
    const auto menus = MainMenuBar(false);
    for (const CommandMenuEntry& entry : menus[1].entries) {
        for (bool on : {false, true}) {
            // Every other flag says the opposite, so a check taken from the wrong one shows.
            DocumentState state;
            for (auto binding :
                 {OptionBinding::CopyRowsNoColumnNames, OptionBinding::WarnTooFew,
                  OptionBinding::FilterCaseSensitive, OptionBinding::FilterWholeWord})
                *OptionField(binding, state) = !on;
            if (bool* flag = OptionField(entry.binding, state)) {
                *flag = on;
                EXPECT_EQ(ComputeCommandState(entry, state).checked, on) << entry.text;
                bound += on;
            }
        }
    }
    EXPECT_EQ(bound, 4);
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
