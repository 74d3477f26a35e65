#pragma once
// The command table: one row per toolbar entry in the order the toolbar receives them, with
// every text a command shows (label, toolbar caption, tip, shortcut text). Menus, the toolbar
// and the customisation list all read their texts from here and nowhere else.

#include <span>
#include <string_view>

namespace quirnel {

enum class CommandKind
{
    Button,
    GroupCaption,
    CheckBox,
    TextField,
};

struct CommandSpec
{
    CommandKind kind = CommandKind::Button;
    /// 0 for group captions, which send nothing.
    int id = 0;
    /// Name of the command's image; empty for group captions and the filter controls.
    std::string_view icon;
    /// One sentence, shown as tool tip and in the customisation list.
    std::string_view description;
    /// The command's name; for the filter controls, the control's name.
    std::string_view label;
    /// Text under the icon, "\n" where it breaks; empty means icon only.
    std::string_view caption;
    /// Shown in the tool tip only; the keys themselves are bound by the accelerator table.
    std::string_view shortcut;
    bool hiddenByDefault = false;
    /// A gap follows the entry.
    bool lastInGroup = false;
    /// Grey hint shown in an empty text field.
    std::string_view cueText;
};

/// Every entry in toolbar order: buttons, group captions, then the filter check box and field.
std::span<const CommandSpec> CommandTable();

/// The entry with this id, or nullptr (group captions have none).
const CommandSpec* FindCommand(int id);

/// The command's label (its caption in titles of the boxes it shows); empty for an id without
/// an entry.
std::string_view CommandLabel(int id);

/// The image of a command, including the few that live only in menus; empty when none.
std::string_view CommandIconName(int id);

/// The texts of commands offered by the warnings pane: its buttons (caption and tip) and its
/// context menu (entry text, TAB before the shortcut text). Empty where the command has no
/// such place.
struct PaneCommandText
{
    int id = 0;
    std::string_view button;
    std::string_view tip;
    std::string_view menuText;
};

/// The pane texts of a command; nullptr when the pane does not offer it.
const PaneCommandText* FindPaneCommand(int id);

} // namespace quirnel
