#include "document/table_document.h"

#include "document/csv_saver.h"
#include "document/file_system.h"
#include "ostrand/codepage/code_page.h"
#include "ostrand/core/string.h"
#include "ostrand/core/user_interface.h"

namespace quirnel {

TableDocument::TableDocument(ost::UserInterface& ui) : m_ui(ui), m_files(&RealFileSystem()) {}

void TableDocument::SetHooks(DocumentHooks* hooks)
{
    m_hooks = hooks ? hooks : &m_defaultHooks;
}

void TableDocument::StoreFormat(const FileFormat& format)
{
    m_format = format;
}

void TableDocument::SetTextMode(bool unicode)
{
    m_textMode = unicode ? 1 : 0;
    for (int column = 1; column < m_table.ColumnCount(); ++column)
        m_table.MutableColumn(column).wide = unicode;
}

void TableDocument::AddWarning(std::string message, int row, std::string extraData)
{
    m_warnings.push_back({std::move(message), row, std::move(extraData)});
}

std::string TableDocument::ColumnName(int column) const
{
    if (column < 0 || column >= m_table.ColumnCount())
        return {};
    const TableColumn& c = m_table.Column(column);
    return c.wide ? ost::Utf16ToUtf8(c.headerTextWide) : c.headerText;
}

std::u16string TableDocument::ColumnNameWide(int column) const
{
    if (column < 0 || column >= m_table.ColumnCount())
        return {};
    const TableColumn& c = m_table.Column(column);
    if (c.wide)
        return c.headerTextWide;
    std::u16string wide;
    ost::CodePageConverter(ost::kCodePageSystem).ToUtf16(c.headerText, wide);
    return wide;
}

namespace {

TableColumn MakeColumn(bool unicode, std::string_view name8, std::u16string_view nameWide)
{
    TableColumn column;
    column.flags = COLUMN_CHOOSE_ALIGN | COLUMN_CHOOSE_SORT;
    column.wide = unicode;
    if (unicode)
        column.headerTextWide = nameWide;
    else
        column.headerText = name8;
    return column;
}

} // namespace

int TableDocument::AddColumn(std::string_view name8, std::u16string_view nameWide)
{
    return m_table.AddColumn(MakeColumn(IsUnicode(), name8, nameWide));
}

bool TableDocument::InsertColumn(int at, std::string_view name8, std::u16string_view nameWide)
{
    return m_table.InsertColumn(at, MakeColumn(IsUnicode(), name8, nameWide));
}

bool TableDocument::SetColumnName(int column, std::string_view name8, std::u16string_view nameWide)
{
    if (column < 1 || column >= m_table.ColumnCount())
        return false;
    TableColumn& c = m_table.MutableColumn(column);
    c.wide = IsUnicode();
    if (c.wide) {
        c.headerTextWide = nameWide;
        c.headerText.clear();
    } else {
        c.headerText = name8;
        c.headerTextWide.clear();
    }
    return true;
}

std::string_view TableDocument::CellText8(int row, int column) const
{
    return m_table.CellText8(row, column);
}

std::u16string_view TableDocument::CellText16(int row, int column) const
{
    return m_table.CellText16(row, column);
}

std::u16string TableDocument::CellTextWide(int row, int column) const
{
    if (IsUnicode())
        return std::u16string(m_table.CellText16(row, column));
    std::u16string wide;
    ost::CodePageConverter(ost::kCodePageSystem).ToUtf16(m_table.CellText8(row, column), wide);
    return wide;
}

bool TableDocument::SetCellText8(int row, int column, std::string_view text)
{
    if (!IsUnicode())
        return m_table.SetCellText8(row, column, text);
    std::u16string wide;
    ost::CodePageConverter(ost::kCodePageSystem).ToUtf16(text, wide);
    return m_table.SetCellText16(row, column, wide);
}

bool TableDocument::SetCellText16(int row, int column, std::u16string_view text)
{
    if (IsUnicode())
        return m_table.SetCellText16(row, column, text);
    std::string narrow;
    ost::CodePageConverter(ost::kCodePageSystem).FromUtf16(text, narrow, '?');
    return m_table.SetCellText8(row, column, narrow);
}

void TableDocument::Clear()
{
    m_table.Clear();
    m_warnings.clear();
}

void TableDocument::Release()
{
    Clear();
    m_fileOpen = false;
    m_modified = false;
}

std::string TableDocument::Description() const
{
    if (m_format.path.empty())
        return "the file";
    return FileNameOf(m_format.path);
}

bool TableDocument::QueryRelease()
{
    if (!m_fileOpen)
        return true;
    if (m_modified) {
        ost::MessageBoxRequest request;
        request.title = "Close";
        request.text = "Save changes to " + Description() + "?";
        request.icon = ost::MessageIcon::Question;
        request.buttons = ost::kButtonYes | ost::kButtonNo | ost::kButtonCancel;
        request.defaultButton = ost::kButtonYes;
        const int answer = m_ui.MessageBox(request);
        if (answer == ost::kButtonCancel)
            return false;
        if (answer == ost::kButtonYes) {
            std::string path = m_format.path;
            if (path.empty() && !m_hooks->ChooseSavePath(path))
                return false;
            if (!SaveCsvFile(*this, path))
                return false;
        }
    }
    Release();
    return true;
}

} // namespace quirnel
