#include "app/command_state.h"

#include "app/command_ids.h"
#include "app/menu_model.h"

namespace quirnel {

bool OptionValue(OptionBinding binding, const DocumentState& state)
{
    const bool* field = OptionField(binding, state);
    return field && *field;
}

bool IsToggleCommand(int id)
{
    switch (id) {
    case cmd::kMultilineEditingMode:
    case cmd::kMultilineEditingOption:
    case cmd::kWarningsVisible:
    case cmd::kDisplayWarnings:
    case cmd::kDisplayToolbar:
        return true;
    default:
        return false;
    }
}

CommandState ComputeCommandState(int id, const DocumentState& state)
{
    CommandState result;
    result.enabled = !state.hasHandler || state.hasHandler(id);
    switch (id) {
    case cmd::kMultilineEditingMode:
    case cmd::kMultilineEditingOption:
        result.checked = state.multilineMode;
        return result;
    case cmd::kWarningsVisible:
    case cmd::kDisplayWarnings:
        result.checked = state.warningsVisible;
        return result;
    case cmd::kDisplayToolbar:
        result.checked = state.toolbarShown;
        return result;
    default:
        break;
    }
    if (id >= cmd::kColumnAlignmentBase && id <= cmd::kColumnAlignmentBase + 2) {
        result.checked = id - cmd::kColumnAlignmentBase == state.currentColumnAlignment;
    } else if (id >= cmd::kSortMethodBase && id < cmd::kSortMethodBase + 6) {
        result.checked = id - cmd::kSortMethodBase == state.currentColumnSortMethod;
    } else if (id >= cmd::kCharacterSetBase && id <= cmd::kCharacterSetLast) {
        const auto position = static_cast<std::size_t>(id - cmd::kCharacterSetBase);
        result.checked = position < state.characterSets.size() &&
                         state.characterSets[position].codePage == state.currentCodePage;
    } else if (id >= cmd::kSortOnColumnBase - 1) {
        // A sort column that no longer exists counts as no sort.
        const int sorted =
            state.sortColumn >= 1 && state.sortColumn < state.columnCount ? state.sortColumn : -1;
        result.checked = id - cmd::kSortOnColumnBase == sorted;
    }
    return result;
}

CommandState ComputeCommandState(const CommandMenuEntry& entry, const DocumentState& state)
{
    CommandState result = ComputeCommandState(entry.id, state);
    if (entry.binding != OptionBinding::None) {
        result.checked = OptionValue(entry.binding, state);
    }
    return result;
}

} // namespace quirnel
