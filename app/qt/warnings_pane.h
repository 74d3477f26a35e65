#pragma once
// The "Warnings" pane: a dock below the table listing the load's warnings, with "Go",
// "Dismiss" and "Hide" buttons and a context menu that send their commands like any menu
// entry. What the commands do is decided in the core (editing/warnings_commands.h); the pane
// is the list they work on.

#include "editing/warnings_commands.h"

#include <QDockWidget>

#include <functional>
#include <vector>

class QListWidget;
class QMenu;

namespace quirnel {

class TableDocument;
struct CSV_Warning;

class WarningsPane : public QDockWidget, public WarningsList
{
    Q_OBJECT

public:
    /// `document` must outlive the pane; the context menu asks it about the selected line.
    explicit WarningsPane(const TableDocument& document, QWidget* parent = nullptr);

    /// Lists the warnings as "Row n: message" (just the message when no row goes with it).
    /// `unicodeDocument`: how the warnings' extra data is encoded (see WarningLineText).
    void Show(const std::vector<CSV_Warning>& warnings, bool unicodeDocument);
    QListWidget* List() const { return m_list; }
    /// What showing or hiding the pane and focusing the table take; the window's doing.
    void SetWindowHooks(std::function<void(bool)> showPane, std::function<void()> focusTable)
    {
        m_showPane = std::move(showPane);
        m_focusTable = std::move(focusTable);
    }
    /// The context menu of the selected line as a right click shows it; nullptr when the line
    /// offers none. The caller owns it.
    QMenu* BuildContextMenu(QWidget* parent);

    int SelectedLine() const override;
    bool DeleteLine(int line) override;
    void Refill(const TableDocument& document) override;
    void ShowPane(bool shown) override;
    void FocusTable() override;

signals:
    /// A button, a double click or a context-menu entry asks for this command.
    void CommandChosen(int id);

private:
    const TableDocument& m_document;
    QListWidget* m_list;
    std::function<void(bool)> m_showPane;
    std::function<void()> m_focusTable;
};

} // namespace quirnel
