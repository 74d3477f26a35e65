#pragma once
// The "Warnings" pane: a dock below the table listing the load's warnings, with "Go",
// "Dismiss" and "Hide" buttons that send their commands like any menu entry.

#include <QDockWidget>

#include <vector>

class QListWidget;

namespace quirnel {

class TableDocument;
struct CSV_Warning;

class WarningsPane : public QDockWidget
{
    Q_OBJECT

public:
    explicit WarningsPane(QWidget* parent = nullptr);

    /// Lists the warnings as "Row n: message" (just the message when no row goes with it).
    /// `unicodeDocument`: how the warnings' extra data is encoded (see WarningLineText).
    void Show(const std::vector<CSV_Warning>& warnings, bool unicodeDocument);
    /// The row (storage index) of the chosen warning; -1 when none is chosen, the warning
    /// names no row, or its row is gone.
    int CurrentWarningRow(const TableDocument& document) const;
    /// Removes the chosen warning from the document and the list; the next one is chosen.
    void DismissCurrent(TableDocument& document);
    QListWidget* List() const { return m_list; }

signals:
    /// A button or a double click asks for this command.
    void CommandChosen(int id);

private:
    QListWidget* m_list;
};

} // namespace quirnel
