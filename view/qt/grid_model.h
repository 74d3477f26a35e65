#pragma once
// The Qt item model over a TableControl. It asks the control only for the rows being drawn:
// view row i is the row at display position i (hidden rows sort last, so the model simply
// shows the visible count), and column c is the control's column c, "#" included.

#include "view/table_control.h"

#include <QAbstractTableModel>
#include <QColor>

#include <memory>

namespace ost {
class CodePageConverter;
}

namespace quirnel {

class GridModel : public QAbstractTableModel, public TableControlObserver
{
    Q_OBJECT

public:
    explicit GridModel(TableControl& table, QObject* parent = nullptr);
    ~GridModel() override;

    TableControl& Table() { return m_table; }
    /// The control's row shown on view line `viewRow`; -1 when none.
    int RowOfViewRow(int viewRow) const { return m_table.RowAtViewIndex(viewRow); }

    /// An 8-bit cell's bytes (system code page) as display text, and back.
    QString FromSystem(std::string_view bytes) const;
    std::string ToSystem(const QString& text) const;

    int rowCount(const QModelIndex& parent = QModelIndex()) const override;
    int columnCount(const QModelIndex& parent = QModelIndex()) const override;
    QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation,
                        int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex& index) const override;

    void OnTableReset() override;
    void OnTableRepaint() override;

    void SetShadeColor(const QColor& color) { m_shade = color; }
    void SetSelectedColor(const QColor& color) { m_selected = color; }

signals:
    /// A cell was changed by in-place editing; the owner marks its document modified.
    void cellEdited(int row, int column);

private:
    TableControl& m_table;
    std::unique_ptr<ost::CodePageConverter> m_converter;
    bool m_systemIsUtf8 = true;
    QColor m_shade;
    QColor m_selected;
};

} // namespace quirnel
