#include "app/qt/filter_bar.h"

#include "app/command_ids.h"
#include "document/table_document.h"

#include <QCheckBox>
#include <QLineEdit>
#include <QRegularExpression>

namespace quirnel {

FilterBar::FilterBar(QObject* parent)
    : QObject(parent), m_check(new QCheckBox(QStringLiteral("Filter:"))), m_text(new QLineEdit)
{
    m_check->setObjectName(QStringLiteral("Filter Enabled"));
    m_check->setToolTip(
        QStringLiteral("If checked, any row that doesn't contain the specified text is hidden."));
    m_text->setObjectName(QStringLiteral("Filter Text"));
    m_text->setToolTip(QStringLiteral("Any row that doesn't contain this text is hidden.  "
                                      "Press Enter to make the filter take effect."));
    m_text->setPlaceholderText(QStringLiteral("Filter"));
    m_text->setMaximumWidth(200);
    connect(m_check, &QCheckBox::clicked, this,
            [this] { emit CommandChosen(cmd::kFilterEnabled); });
    connect(m_text, &QLineEdit::returnPressed, this,
            [this] { emit CommandChosen(cmd::kFilterText); });
}

void FilterBar::Apply(int id, TableDocument& document, bool caseSensitive, bool wholeWord)
{
    if (id == cmd::kFilterEnabled) {
        m_enabled = m_check->isChecked();
    } else if (id == cmd::kFilterText) {
        m_enabled = true;
        m_check->setChecked(true);
    }
    TableControl& table = document.Table();
    const QString wanted = m_text->text();
    const bool active = m_enabled && !wanted.isEmpty();
    const QRegularExpression word(
        QStringLiteral("\\b%1\\b").arg(QRegularExpression::escape(wanted)),
        caseSensitive ? QRegularExpression::NoPatternOption
                      : QRegularExpression::CaseInsensitiveOption);
    for (int row = 0; row < table.RowCount(); ++row) {
        bool keep = !active;
        for (int c = 1; !keep && c < table.ColumnCount(); ++c) {
            const QString cell =
                document.IsUnicode()
                    ? QString::fromStdU16String(std::u16string(table.CellText16(row, c)))
                    : QString::fromUtf16(document.CellTextWide(row, c).c_str());
            keep = wholeWord ? word.match(cell).hasMatch()
                             : cell.contains(wanted, caseSensitive ? Qt::CaseSensitive
                                                                   : Qt::CaseInsensitive);
        }
        table.SetRowHidden(row, !keep, true);
    }
    table.Redraw();
}

} // namespace quirnel
