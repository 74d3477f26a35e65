#pragma once
// The main toolbar as widgets: a QToolBar mirroring ToolbarModel::Layout(), its context menu,
// and the "Customize toolbar" dialog. Decisions (what is shown, where gaps go, what is saved)
// stay in the model; these classes only draw it and edit a copy of it.

#include "app/toolbar_model.h"

#include <QDialog>
#include <QObject>

#include <vector>

class QAction;
class QComboBox;
class QMainWindow;
class QMenu;
class QPushButton;
class QToolBar;
class QTreeWidget;

namespace quirnel {

class CommandActions;
struct CommandMenuEntry;

class MainToolbar : public QObject
{
    Q_OBJECT

public:
    /// Adds the toolbar to window; the model must outlive this object.
    MainToolbar(QMainWindow* window, ToolbarModel& model, CommandActions& actions);

    QToolBar* ToolBar() const { return m_toolBar; }
    ToolbarModel& Model() const { return m_model; }

    /// Widgets kept at the end of the bar after every rebuild (the row filter's check box and
    /// text field, made by the main window); the toolbar takes ownership.
    void SetTrailingWidgets(const std::vector<QWidget*>& widgets);

    /// Mirrors the model: entries, gaps, appearance, size, shown.
    void Rebuild();

    /// "Customize toolbar": edits a copy; OK applies it and rebuilds. True on OK.
    bool ShowCustomizeDialog();
    /// "Display toolbar": flips the toolbar's visibility.
    void ToggleShown();

    /// The toolbar's own context menu; the caller owns it.
    QMenu* CreateContextMenu(QWidget* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void AddContextEntries(QMenu* menu, const std::vector<CommandMenuEntry>& entries);

    QMainWindow* m_window;
    ToolbarModel& m_model;
    CommandActions& m_actions;
    QToolBar* m_toolBar;
    /// Ours to remove on a rebuild: gaps and caption labels (button actions are reused).
    std::vector<QAction*> m_placed;
    std::vector<QAction*> m_trailing;
    QAction* m_trailingGap = nullptr;
};

class CustomizeToolbarDialog : public QDialog
{
    Q_OBJECT

public:
    CustomizeToolbarDialog(const ToolbarModel& model, QWidget* parent = nullptr);

    /// The edited copy; read it after exec() returned Accepted.
    const ToolbarModel& Result();

    QTreeWidget* List() const { return m_list; }
    QPushButton* ResetButton() const { return m_reset; }
    QComboBox* AppearanceBox() const { return m_appearance; }
    QComboBox* SizeBox() const { return m_size; }

private:
    void Fill();
    void ReadBack();

    ToolbarModel m_model;
    QTreeWidget* m_list;
    QPushButton* m_reset;
    QComboBox* m_appearance;
    QComboBox* m_size;
};

} // namespace quirnel
