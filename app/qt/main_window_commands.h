#pragma once
// The main window's link to the menus and shortcuts. Kept in its own unit so that the menu
// model's headers and the grid control's headers never meet in one translation unit.

#include <functional>

class QMainWindow;
class QMenu;
class QWidget;

namespace quirnel {

class CommandActions;
class CommandHost;

/// Builds the menu bar and shortcuts on `window`; owned by `window`.
CommandActions* CreateCommandActions(QMainWindow* window, CommandHost& host,
                                     std::function<QWidget*()> cellEditor);
void RefreshCommandStates(CommandActions* actions);
void DestroyCommandActions(CommandActions* actions);
/// The Row menu as it stands now (texts by the selected-row count, entries without a handler
/// disabled); the caller owns it.
QMenu* BuildRowMenu(CommandActions* actions, QWidget* parent);

} // namespace quirnel
