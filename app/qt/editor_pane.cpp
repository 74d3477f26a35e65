#include "app/qt/editor_pane.h"

#include "document/table_document.h"
#include "ostrand/codepage/code_page.h"

#include <QTextBlock>
#include <QTextCursor>

#include <algorithm>

namespace quirnel {

EditorPane::EditorPane(TableDocument& document, QWidget* parent)
    : QPlainTextEdit(parent), m_document(document)
{
    setObjectName(QStringLiteral("Editor"));
    connect(this, &QPlainTextEdit::textChanged, this, [this] {
        if (!m_loading && m_row >= 0)
            Commit();
    });
}

void EditorPane::ShowFocusCell()
{
    const TableControl& table = m_document.Table();
    m_row = table.FocusRow();
    m_column = table.FocusColumn();
    m_loading = true;
    if (m_row >= 0 && m_row < table.RowCount() && m_column >= 1 && m_column < table.ColumnCount()) {
        QString text =
            m_document.IsUnicode()
                ? QString::fromStdU16String(std::u16string(m_document.CellText16(m_row, m_column)))
                : QString::fromUtf16(m_document.CellTextWide(m_row, m_column).c_str());
        // Cells keep CR LF line ends; the editor works in LF.
        text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
        setPlainText(text);
        setReadOnly(false);
    } else {
        clear();
        setReadOnly(true);
        m_row = m_column = -1;
    }
    m_loading = false;
}

void EditorPane::Forget()
{
    m_row = m_column = -1;
}

bool EditorPane::Commit()
{
    if (m_row < 0 || m_column < 1 || !m_document.FileOpen() || m_row >= m_document.RowCount() ||
        m_column >= m_document.ColumnCount())
        return false;
    QString text = toPlainText();
    text.replace(QStringLiteral("\n"), QStringLiteral("\r\n"));
    const std::u16string wide = text.toStdU16String();
    if (m_document.IsUnicode()) {
        if (m_document.CellText16(m_row, m_column) == wide)
            return false;
        m_document.SetCellText16(m_row, m_column, wide);
    } else {
        std::string narrow;
        ost::CodePageConverter converter(ost::kCodePageSystem);
        converter.FromUtf16(wide, narrow, '?');
        if (m_document.CellText8(m_row, m_column) == narrow)
            return false;
        m_document.SetCellText8(m_row, m_column, narrow);
    }
    emit CellCommitted(m_row, m_column);
    return true;
}

void EditorPane::SelectText(int start, int length)
{
    QTextCursor cursor(document());
    const int end = document()->characterCount() - 1;
    cursor.setPosition(std::clamp(start, 0, end));
    cursor.setPosition(std::clamp(start + length, 0, end), QTextCursor::KeepAnchor);
    setTextCursor(cursor);
}

} // namespace quirnel
