#include "view/qt/grid_model.h"

#include "ostrand/codepage/code_page.h"

#include <QBrush>

namespace quirnel {

namespace {

bool IsTwoState(const TableColumn& column)
{
    return column.kind == kColumnCheck || column.kind == kColumnCheckAlt;
}

} // namespace

GridModel::GridModel(TableControl& table, QObject* parent)
    : QAbstractTableModel(parent), m_table(table),
      m_converter(std::make_unique<ost::CodePageConverter>(ost::kCodePageSystem)),
      m_shade(0xF0, 0xF0, 0xF4), m_selected(0xC8, 0xDC, 0xF8)
{
    // Most machines here run UTF-8 locales: Qt's own decoder is then the same conversion
    // without a round trip through iconv for every painted cell.
    m_systemIsUtf8 = ost::SystemCharset() == "UTF-8";
    m_table.AddObserver(this);
}

GridModel::~GridModel()
{
    m_table.RemoveObserver(this);
}

QString GridModel::FromSystem(std::string_view bytes) const
{
    if (bytes.empty())
        return QString();
    if (m_systemIsUtf8 || !m_converter->IsValid())
        return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
    std::u16string wide;
    m_converter->ToUtf16(bytes, wide);
    return QString::fromUtf16(wide.data(), static_cast<qsizetype>(wide.size()));
}

std::string GridModel::ToSystem(const QString& text) const
{
    if (m_systemIsUtf8 || !m_converter->IsValid())
        return text.toStdString();
    std::string bytes;
    m_converter->FromUtf16(std::u16string_view(reinterpret_cast<const char16_t*>(text.utf16()),
                                               static_cast<std::size_t>(text.size())),
                           bytes, '?');
    return bytes;
}

int GridModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_table.VisibleRowCount();
}

int GridModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : m_table.ColumnCount();
}

QVariant GridModel::data(const QModelIndex& index, int role) const
{
    if (!index.isValid())
        return QVariant();
    const int row = m_table.RowAtViewIndex(index.row());
    const int column = index.column();
    if (row < 0 || column >= m_table.ColumnCount())
        return QVariant();
    const TableColumn& info = m_table.Column(column);
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        if (column == 0)
            return QString::number(row + 1);
        if (IsTwoState(info))
            return QVariant();
        if (info.kind == kColumnChoice) {
            std::int32_t value = m_table.CellValue(row, column);
            return value == kEmptyChoice ? QVariant(QString()) : QVariant(value);
        }
        if (m_table.CellIsWide(row, column)) {
            std::u16string_view text = m_table.CellText16(row, column);
            return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
        }
        return FromSystem(m_table.CellText8(row, column));
    case Qt::CheckStateRole:
        if (column > 0 && IsTwoState(info))
            return m_table.CellChecked(row, column) ? Qt::Checked : Qt::Unchecked;
        return QVariant();
    case Qt::TextAlignmentRole: {
        Qt::Alignment horizontal = Qt::AlignLeft;
        if (info.flags & COLUMN_RIGHT)
            horizontal = Qt::AlignRight;
        else if (info.flags & COLUMN_CENTER)
            horizontal = Qt::AlignHCenter;
        return QVariant::fromValue(horizontal | Qt::AlignVCenter);
    }
    case Qt::BackgroundRole:
        if (m_table.IsRowSelected(row))
            return QBrush(m_selected);
        if (m_table.EffectiveAltRows() && index.row() % 2 == 1)
            return QBrush(m_shade);
        return QVariant();
    default:
        return QVariant();
    }
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role)
{
    if (!index.isValid() || !(flags(index) & (Qt::ItemIsEditable | Qt::ItemIsUserCheckable)))
        return false;
    const int row = m_table.RowAtViewIndex(index.row());
    const int column = index.column();
    const TableColumn& info = m_table.Column(column);
    bool changed = false;
    if (role == Qt::CheckStateRole && IsTwoState(info)) {
        changed = m_table.SetCellChecked(row, column, value.toInt() == Qt::Checked);
    } else if (role == Qt::EditRole && info.kind == kColumnChoice) {
        bool ok = false;
        int number = value.toInt(&ok);
        changed = m_table.SetCellValue(row, column, ok ? number : kEmptyChoice);
    } else if (role == Qt::EditRole) {
        const QString text = value.toString();
        // A cell keeps the document's text mode: UTF-16 cells (or columns) take the text as
        // it is, 8-bit cells through the system code page.
        if (m_table.CellIsWide(row, column) || info.wide)
            changed = m_table.SetCellText16(
                row, column,
                std::u16string_view(reinterpret_cast<const char16_t*>(text.utf16()),
                                    static_cast<std::size_t>(text.size())));
        else
            changed = m_table.SetCellText8(row, column, ToSystem(text));
    }
    if (changed) {
        emit dataChanged(index, index);
        emit cellEdited(row, column);
    }
    return changed;
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || section < 0 || section >= m_table.ColumnCount())
        return QVariant();
    if (role == Qt::DisplayRole) {
        const TableColumn& info = m_table.Column(section);
        if (info.wide)
            return QString::fromUtf16(info.headerTextWide.data(),
                                      static_cast<qsizetype>(info.headerTextWide.size()));
        return FromSystem(info.headerText);
    }
    return QVariant();
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    Qt::ItemFlags result = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    const int column = index.column();
    if (column <= 0 || column >= m_table.ColumnCount())
        return result;
    const TableColumn& info = m_table.Column(column);
    if (info.flags & (COLUMN_NO_EDIT | COLUMN_READ_ONLY))
        return result;
    if (IsTwoState(info))
        return result | Qt::ItemIsUserCheckable;
    return result | Qt::ItemIsEditable;
}

void GridModel::OnTableReset()
{
    beginResetModel();
    endResetModel();
}

void GridModel::OnTableRepaint()
{
    const int rows = rowCount();
    const int columns = columnCount();
    if (rows > 0 && columns > 0)
        emit dataChanged(index(0, 0), index(rows - 1, columns - 1));
    emit headerDataChanged(Qt::Horizontal, 0, columns - 1);
}

} // namespace quirnel
