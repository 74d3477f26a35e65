#include "app/accelerators.h"

#include "app/command_ids.h"

#include <algorithm>

namespace quirnel {
namespace {

std::string KeyName(int keyCode)
{
    if ((keyCode >= 'A' && keyCode <= 'Z') || (keyCode >= '0' && keyCode <= '9')) {
        return std::string(1, static_cast<char>(keyCode));
    }
    if (keyCode >= key::kF1 && keyCode <= key::kF12) {
        // Appending instead of "F" + to_string(): GCC 12 at -O3 misreads the latter as an
        // overlapping copy (-Wrestrict) and our warnings are errors.
        std::string name = "F";
        name += std::to_string(keyCode - key::kF1 + 1);
        return name;
    }
    switch (keyCode) {
    case key::kReturn:
        return "Enter";
    case key::kPageUp:
        return "PageUp";
    case key::kPageDown:
        return "PageDown";
    case key::kUp:
        return "Up";
    case key::kDown:
        return "Down";
    case key::kInsert:
        return "Insert";
    case key::kDelete:
        return "Delete";
    default:
        return {};
    }
}

} // namespace

bool AcceleratorTable::RegisterAccelerator(int keyCode, int modifiers, int id)
{
    if (id < kFirstAcceleratorId || id > kLastAcceleratorId) {
        return false;
    }
    if ((modifiers & ~(kModShift | kModCtrl | kModAlt)) != 0 || KeyName(keyCode).empty()) {
        return false;
    }
    if (Find(keyCode, modifiers)) {
        return false;
    }
    m_entries.push_back({keyCode, modifiers, id});
    return true;
}

std::optional<int> AcceleratorTable::Find(int keyCode, int modifiers) const
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(), [&](const Accelerator& a) {
        return a.keyCode == keyCode && a.modifiers == modifiers;
    });
    if (found == m_entries.end()) {
        return std::nullopt;
    }
    return found->id;
}

void BuildMainAccelerators(AcceleratorTable& table)
{
    const Accelerator rows[] = {
        {'O', kModCtrl, cmd::kOpenFile},
        {'S', kModCtrl, cmd::kSaveFile},
        {key::kF2, kModCtrl, cmd::kFind},
        {key::kF2, kModAlt, cmd::kFindReplace},
        {key::kF2, 0, cmd::kFindNext},
        {key::kF2, kModShift, cmd::kFindPrevious},
        {key::kF4, 0, cmd::kBookmarkReturn},
        {key::kF4, kModShift, cmd::kBookmarkSet},
        {key::kInsert, kModAlt, cmd::kInsertRowAfter},
        {'C', kModCtrl | kModShift, cmd::kCopyRows},
        {'X', kModCtrl | kModShift, cmd::kCutRows},
        {'V', kModCtrl | kModShift, cmd::kPasteRows},
        {'V', kModCtrl | kModShift | kModAlt, cmd::kPasteRowsWithMapping},
        {'P', kModAlt, cmd::kPreferences},
        {key::kReturn, kModCtrl, cmd::kMultilineEditingMode},
        {key::kDelete, kModAlt, cmd::kDeleteRows},
        // Only shortcut texts elsewhere; bound here so that the keys reach their commands.
        {key::kPageUp, kModAlt, cmd::kMoveRowUp},
        {key::kPageDown, kModAlt, cmd::kMoveRowDown},
        // The grid's cell menu shows these for the same two commands.
        {key::kUp, kModAlt, cmd::kMoveRowUp},
        {key::kDown, kModAlt, cmd::kMoveRowDown},
        {key::kF4, kModCtrl, cmd::kExit},
        {'N', kModCtrl | kModShift, cmd::kSearchColumn},
        {'N', kModCtrl, cmd::kSearchColumnContinue},
    };
    for (const Accelerator& row : rows) {
        table.RegisterAccelerator(row.keyCode, row.modifiers, row.id);
    }
}

std::string ShortcutText(int keyCode, int modifiers)
{
    const std::string name = KeyName(keyCode);
    if (name.empty()) {
        return {};
    }
    std::string text;
    if (modifiers & kModCtrl) {
        text += "Ctrl+";
    }
    if (modifiers & kModShift) {
        text += "Shift+";
    }
    if (modifiers & kModAlt) {
        text += "Alt+";
    }
    return text + name;
}

} // namespace quirnel
