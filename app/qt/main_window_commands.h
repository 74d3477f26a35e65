#pragma once
// The main window's link to the menus and shortcuts. Kept in its own unit so that the menu
// model's headers and the grid control's headers never meet in one translation unit.

#include <functional>
#include <string>

class QMainWindow;
class QWidget;

namespace quirnel {

class CommandActions;
class CommandHost;

/// Builds the menu bar and shortcuts on `window`; owned by `window`.
CommandActions* CreateCommandActions(QMainWindow* window, CommandHost& host,
                                     std::function<QWidget*()> cellEditor);
void RefreshCommandStates(CommandActions* actions);
void DestroyCommandActions(CommandActions* actions);

/// The command's label ("Table Statistics"), the title of the boxes it shows; empty when unknown.
std::string CommandLabel(int id);

/// The value a menu entry's id stands for; false when the id is not such an entry.
bool ColumnAlignmentCommand(int id, int& alignment);
bool ColumnSortMethodCommand(int id, int& method);
/// column -1 is "No sorting".
bool SortOnColumnCommand(int id, int& column);

} // namespace quirnel
