#include "app/qt/match_delegate.h"

#include "view/table_control.h"

#include <QApplication>
#include <QPainter>

namespace quirnel {

MatchDelegate::MatchDelegate(const TableControl& table, QObject* parent)
    : QStyledItemDelegate(parent), m_table(table)
{}

void MatchDelegate::SetMatch(int row, int column, int start, int length)
{
    m_row = row;
    m_column = column;
    m_start = start;
    m_length = length;
}

void MatchDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const
{
    if (m_row < 0 || index.column() != m_column || m_table.RowAtViewIndex(index.row()) != m_row) {
        QStyledItemDelegate::paint(painter, option, index);
        return;
    }
    QStyleOptionViewItem item(option);
    initStyleOption(&item, index);
    QString text = item.text;
    item.text.clear();
    const QWidget* widget = item.widget;
    QStyle* style = widget ? widget->style() : QApplication::style();
    style->drawControl(QStyle::CE_ItemViewItem, &item, painter, widget);

    // One line, as the cell shows it; line breaks keep their places as spaces so that the
    // match's offsets still hold.
    text.replace(QLatin1Char('\n'), QLatin1Char(' ')).replace(QLatin1Char('\r'), QLatin1Char(' '));
    const int start = std::clamp(m_start, 0, static_cast<int>(text.size()));
    const int length = std::clamp(m_length, 0, static_cast<int>(text.size()) - start);
    const int margin = style->pixelMetric(QStyle::PM_FocusFrameHMargin, nullptr, widget) + 1;
    const QRect area = style->subElementRect(QStyle::SE_ItemViewItemText, &item, widget)
                           .adjusted(margin, 0, -margin, 0);
    const QFontMetrics metrics(item.font);
    int x = area.left();
    const int width = metrics.horizontalAdvance(text);
    if (item.displayAlignment & Qt::AlignRight)
        x = area.right() - width;
    else if (item.displayAlignment & Qt::AlignHCenter)
        x = area.left() + (area.width() - width) / 2;
    const int baseline = area.top() + (area.height() - metrics.height()) / 2 + metrics.ascent();
    const QString before = text.left(start);
    const QString match = text.mid(start, length);
    const QString after = text.mid(start + length);
    const int matchLeft = x + metrics.horizontalAdvance(before);
    const int matchWidth = metrics.horizontalAdvance(match);

    painter->save();
    painter->setClipRect(area);
    painter->setFont(item.font);
    const bool selected = item.state & QStyle::State_Selected;
    painter->setPen(item.palette.color(selected ? QPalette::HighlightedText : QPalette::Text));
    painter->drawText(x, baseline, before);
    painter->drawText(matchLeft + matchWidth, baseline, after);
    const QRect matchBox(matchLeft, area.top() + (area.height() - metrics.height()) / 2, matchWidth,
                         metrics.height());
    // On a selected cell the usual highlight colour would not stand out; swap the two.
    painter->fillRect(
        matchBox, item.palette.color(selected ? QPalette::HighlightedText : QPalette::Highlight));
    painter->setPen(item.palette.color(selected ? QPalette::Highlight : QPalette::HighlightedText));
    painter->drawText(matchLeft, baseline, match);
    painter->restore();
}

} // namespace quirnel
