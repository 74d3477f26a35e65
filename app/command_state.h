#pragma once
// Enabled and checked states of commands, decided from a snapshot of the document and the
// main window's switches rather than from widgets, so that every state is testable here.

#include <functional>
#include <string>
#include <vector>

namespace quirnel {

struct CommandMenuEntry;

/// The main-window boolean an Options check entry flips.
enum class OptionBinding
{
    None,
    CopyRowsNoColumnNames,
    WarnTooFew,
    FilterCaseSensitive,
    FilterWholeWord,
};

struct CharacterSetChoice
{
    std::string name;
    int codePage = 0;
};

struct DocumentState
{
    bool fileOpen = false;
    /// Rows whose selected flag is set (the focus row in single-row mode).
    int selectedRowCount = 0;
    /// Including the "#" column at index 0.
    int columnCount = 0;
    /// -1 when there is no current cell.
    int currentColumn = -1;
    /// Header texts by column index; index 0 is the row-number column.
    std::vector<std::string> columnTitles;
    /// -1 when the rows are not sorted.
    int sortColumn = -1;
    /// Of the current column: 0 left, 1 center, 2 right.
    int currentColumnAlignment = 0;
    /// Of the current column: a sort method value.
    int currentColumnSortMethod = 0;

    bool multilineMode = false;
    bool warningsVisible = false;
    bool toolbarShown = true;
    bool copyRowsNoColumnNames = false;
    bool warnTooFew = true;
    bool filterCaseSensitive = false;
    bool filterWholeWord = false;
    bool helpAvailable = false;

    /// Most recent first.
    std::vector<std::string> recentFiles;
    std::vector<CharacterSetChoice> characterSets;
    int currentCodePage = 0;

    /// Whether a handler exists for the id; empty means every command is handled. Commands
    /// without one show disabled rather than pretend to work.
    std::function<bool(int id)> hasHandler;
};

struct CommandState
{
    bool enabled = true;
    bool checked = false;
};

/// What the menus, toolbar and accelerators talk to: the main window. The Qt builder sends
/// every chosen id to OnCommand and asks CurrentState whenever a menu opens or states refresh.
class CommandHost
{
public:
    virtual ~CommandHost() = default;
    /// The one dispatcher from id to handler.
    virtual void OnCommand(int id) = 0;
    virtual DocumentState CurrentState() const = 0;
    /// Sets the boolean an Options check entry is bound to; called before its id is sent.
    virtual void SetOption(OptionBinding binding, bool value) = 0;
};

/// The state of command id. Ids that toggle a switch report it as checked.
CommandState ComputeCommandState(int id, const DocumentState& state);
/// The same for a menu entry, whose bound boolean (if any) decides the check rather than its
/// id, since several entries share one id.
CommandState ComputeCommandState(const CommandMenuEntry& entry, const DocumentState& state);

/// Commands that switch something on and off, shown as checkable buttons and entries.
bool IsToggleCommand(int id);

/// The value of a bound boolean in the snapshot.
bool OptionValue(OptionBinding binding, const DocumentState& state);

/// The flag `binding` names in `holder`, or nullptr for None. The snapshot, the preferences and
/// test doubles all spell these flags alike, so one mapping serves them all.
template <class Holder>
auto OptionField(OptionBinding binding, Holder& holder) -> decltype(&holder.warnTooFew)
{
    switch (binding) {
    case OptionBinding::CopyRowsNoColumnNames:
        return &holder.copyRowsNoColumnNames;
    case OptionBinding::WarnTooFew:
        return &holder.warnTooFew;
    case OptionBinding::FilterCaseSensitive:
        return &holder.filterCaseSensitive;
    case OptionBinding::FilterWholeWord:
        return &holder.filterWholeWord;
    case OptionBinding::None:
        break;
    }
    return nullptr;
}

} // namespace quirnel
