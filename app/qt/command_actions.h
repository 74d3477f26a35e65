#pragma once
// Builds the main window's menu bar and keyboard shortcuts by walking the command table and
// the menu model, and sends every choice to the CommandHost. Popups are rebuilt each time they
// open; enabled and checked states always come from the host's document snapshot.

#include "app/accelerators.h"
#include "app/command_state.h"
#include "app/menu_model.h"

#include <QObject>

#include <functional>
#include <vector>

class QAction;
class QMainWindow;
class QMenu;
class QShortcut;
class QWidget;

namespace quirnel {

class CommandActions : public QObject
{
    Q_OBJECT

public:
    /// Builds the menus into window's menu bar and binds the accelerators on window.
    CommandActions(QMainWindow* window, CommandHost& host);

    /// The widget whose context menu the Cell popup shows (the multiline editor or the grid's
    /// in-place editor); nullptr or an unsupported widget leaves the popup empty.
    void SetCellEditorProvider(std::function<QWidget*()> provider);

    /// The action of a table command for the toolbar: icon, caption under the icon and tip.
    /// Made on first request; nullptr for ids not in the table.
    QAction* ToolbarAction(int id);

    /// A context menu with the entries of popup `popupId` for the state now (the Row menu of
    /// the grid's "#" column); the caller owns it.
    QMenu* BuildPopup(int popupId, QWidget* parent);

    /// Sends id as a menu entry would (a bound boolean is flipped first), unless disabled.
    void Dispatch(const CommandMenuEntry& entry);
    /// Re-reads enabled and checked of the toolbar actions and the fixed menus' entries.
    void RefreshStates();

    /// The menu-bar menus in order ("&File" .. "&Tools").
    const std::vector<QMenu*>& Menus() const { return m_menus; }
    const AcceleratorTable& Accelerators() const { return m_accelerators; }

private:
    struct TrackedAction
    {
        QAction* action;
        CommandMenuEntry entry;
    };

    void AddEntries(QMenu* menu, const std::vector<CommandMenuEntry>& entries, bool track);
    QAction* AddEntry(QMenu* menu, const CommandMenuEntry& entry, const DocumentState* state,
                      bool track);
    void FillPopup(QMenu* menu, int popupId);
    void FillRecentFiles(QMenu* menu);
    void AddCellEditorEntries(QMenu* menu);
    void BindAccelerators(QMainWindow* window);

    CommandHost& m_host;
    std::function<QWidget*()> m_cellEditor;
    AcceleratorTable m_accelerators;
    std::vector<QMenu*> m_menus;
    std::vector<TrackedAction> m_tracked;
    std::vector<std::pair<int, QAction*>> m_toolbarActions;
    QAction* m_recentAnchor = nullptr;
    std::vector<QAction*> m_recentActions;
};

} // namespace quirnel
