#pragma once
// Paints the grid's cells as usual, except the one cell whose search match is on show: there the
// matched text is drawn selected, so that the user sees what was found without an editor being
// opened on the cell (which would count as an edit).

#include <QStyledItemDelegate>

namespace quirnel {

class TableControl;

class MatchDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    MatchDelegate(const TableControl& table, QObject* parent = nullptr);

    /// Storage row and column; start and length in UTF-16 units of the cell's text.
    void SetMatch(int row, int column, int start, int length);
    void Clear() { m_row = -1; }
    bool HasMatch() const { return m_row >= 0; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

private:
    const TableControl& m_table;
    int m_row = -1;
    int m_column = -1;
    int m_start = 0;
    int m_length = 0;
};

} // namespace quirnel
