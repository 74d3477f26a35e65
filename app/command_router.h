#pragma once
// The one map from command id to handler. Menus, toolbar buttons, accelerators and the grid's
// context menus send ids here; the same switch answers whether an id has a handler, so menus
// enable exactly the commands that run. Table-editing commands go to editing/ with the tool
// context; what only the window can do (files, dialogs of the shell, panes, toolbar) goes to
// ShellCommands, which the window implements.

#include <functional>

namespace quirnel {

struct ToolContext;

/// The window's side of the commands that are not table edits.
class ShellCommands
{
public:
    virtual ~ShellCommands() = default;
    virtual void NewFile() = 0;
    virtual void OpenFile() = 0;
    virtual void OpenNonstandardFile() = 0;
    virtual void SaveFile() = 0;
    virtual void SaveFileAs() = 0;
    virtual void CloseFile() = 0;
    virtual void Exit() = 0;
    /// Position in the recent-files list, 0 the most recent.
    virtual void OpenRecentFile(int position) = 0;
    virtual void FileProperties() = 0;
    /// Position in the character-set choices.
    virtual void SetCharacterSet(int position) = 0;
    virtual void ExploreFolder() = 0;
    virtual void EditPreferences() = 0;
    virtual void AssociateFileType() = 0;
    virtual void CustomizeToolbar() = 0;
    virtual void ToggleToolbar() = 0;
    virtual void ToggleMultilineEditing() = 0;
    virtual void ToggleWarnings() = 0;
    virtual void GoToWarning() = 0;
    virtual void DismissWarning() = 0;
    /// The warnings pane's "Copy extra data".
    virtual void CopyWarningExtraData() {}
    /// The filter check box was clicked, Enter was pressed in its field (id kFilterText) or
    /// one of its options changed.
    virtual void FilterChanged(int id) = 0;
    /// Something menus and toolbar show as checked or enabled changed (a bound option, the
    /// row selection): they read their states again.
    virtual void RefreshStates() = 0;
    /// The table's look changed without a change of its contents (alignment, sort, widths).
    virtual void RefreshTable() = 0;
};

class CommandRouter
{
public:
    CommandRouter(ShellCommands& shell, ToolContext& tools);

    /// True when a handler exists for the id.
    bool Handles(int id) const;
    /// Runs the command. An id without a handler goes to the unknown-id report and gives false.
    bool Dispatch(int id);

    /// A grid context-menu command (a GridCommand value, or an id the owner added) for the
    /// cell it was chosen on (storage row, -1 for none). The control's own display commands are
    /// run by the control; the others map to the command of the same meaning.
    bool HandlesGridCommand(int command) const;
    bool DispatchGridCommand(int command, int argument, int row, int column);

    /// Where an id without a handler is reported; by default nowhere.
    void SetUnknownCommandReport(std::function<void(int id)> report)
    {
        m_unknown = std::move(report);
    }

private:
    /// The switch itself: with `run` false it only answers whether a handler exists. The
    /// column-heading commands act on the `clicked` column (-1: the current column).
    bool Route(int id, bool run, int clicked = -1) const;
    /// The command id a grid command stands for; 0 when none.
    static int GridCommandId(int command);

    ShellCommands& m_shell;
    ToolContext& m_tools;
    std::function<void(int)> m_unknown;
};

} // namespace quirnel
