#pragma once
// The menu bar as data: the fixed menus with their exact texts, and the popups that OnInitPopup
// rebuilds each time they open from a snapshot of the document. The Qt side turns entries
// into actions and never composes a text itself.

#include "app/command_state.h"

#include <string>
#include <vector>

namespace quirnel {

enum class MenuEntryKind
{
    Command,
    Separator,
    /// A submenu: fixed children, or filled by OnInitPopup(popupId) when popupId is set.
    Submenu,
    /// Where the recent-files entries go; filled from DocumentState::recentFiles on opening.
    RecentFiles,
    /// Where the cell editor's own context menu goes (the Cell popup); no core content.
    CellEditorMenu,
};

enum class MenuCheck
{
    None,
    Check,
    Radio,
};

struct CommandMenuEntry
{
    MenuEntryKind kind = MenuEntryKind::Command;
    int id = 0;
    /// With "&" mnemonics and "\t" before the shortcut text.
    std::string text;
    OptionBinding binding = OptionBinding::None;
    MenuCheck check = MenuCheck::None;
    /// Filled by OnInitPopup; fixed menus ask ComputeCommandState when they open.
    bool checked = false;
    int popupId = 0;
    std::vector<CommandMenuEntry> children;
};

struct Menu
{
    std::string title;
    /// 0 for a menu built once; else the popup id OnInitPopup fills it by.
    int popupId = 0;
    std::vector<CommandMenuEntry> entries;
};

/// "&File", "&Options", "C&ell", "&Column", "&Row", "T&able", "&Tools", left to right.
std::vector<Menu> MainMenuBar(bool helpAvailable);

/// The entries of popup popupId for this state (Row 16151, Column 16175, Sort on column
/// 16219, Cell 16220, Character set); empty for any other id.
std::vector<CommandMenuEntry> OnInitPopup(int popupId, const DocumentState& state);

/// "&1 name" entries for the recent files, ids from kRecentFileBase.
std::vector<CommandMenuEntry> RecentFileEntries(const std::vector<std::string>& paths);

/// The toolbar's own context menu: "Display toolbar", "Customize toolbar", the "Toolbar size"
/// choices (ids from kToolbarSizeBase, the current one checked), "Balloon help disabled".
std::vector<CommandMenuEntry> ToolbarContextMenu(bool shown, int size, bool noTips);

/// Every command id a menu (fixed or popup, at any depth) can send, for checking references.
std::vector<int> MenuCommandIds(const std::vector<CommandMenuEntry>& entries);

/// The id of the "Sort on column" entry for a column; -1 gives "No sorting".
int SortOnColumnCommand(int column);
/// The value an entry's id stands for: its column (-1 "No sorting"), alignment (0 left,
/// 1 center, 2 right) or sort method; false when the id is not such an entry.
bool SortOnColumnFromCommand(int id, int& column);
bool AlignmentFromCommand(int id, int& alignment);
bool SortMethodFromCommand(int id, int& method);

} // namespace quirnel
