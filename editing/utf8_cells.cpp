#include "editing/utf8_cells.h"

#include "document/table_document.h"
#include "ostrand/core/string.h"

namespace quirnel {

namespace {

bool IsAscii(std::string_view text)
{
    for (char c : text)
        if (static_cast<unsigned char>(c) >= 0x80)
            return false;
    return true;
}

} // namespace

Utf8Cells::Utf8Cells(TableDocument& document)
    : m_document(document), m_unicode(document.IsUnicode()),
      m_systemUtf8(ost::SystemCharset() == "UTF-8"), m_system(ost::kCodePageSystem)
{}

std::string_view Utf8Cells::ToSystem(std::string_view utf8, std::string& scratch)
{
    if (m_systemUtf8 || IsAscii(utf8))
        return utf8;
    m_system.FromUtf16(ost::Utf8ToUtf16(utf8), scratch, '?');
    return scratch;
}

std::string_view Utf8Cells::FromSystem(std::string_view bytes, std::string& scratch)
{
    if (m_systemUtf8 || IsAscii(bytes))
        return bytes;
    m_system.ToUtf16(bytes, m_wide);
    scratch = ost::Utf16ToUtf8(m_wide);
    return scratch;
}

std::string_view Utf8Cells::Get(int row, int column, std::string& scratch)
{
    if (m_unicode) {
        const std::u16string_view text = m_document.CellText16(row, column);
        // Most cells are ASCII: narrowed into the reused scratch, they cost no allocation.
        scratch.resize(text.size());
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text[i] >= 0x80) {
                scratch = ost::Utf16ToUtf8(text);
                return scratch;
            }
            scratch[i] = static_cast<char>(text[i]);
        }
        return scratch;
    }
    return FromSystem(m_document.CellText8(row, column), scratch);
}

std::string Utf8Cells::Name(int column)
{
    if (m_unicode)
        return m_document.ColumnName(column);
    std::string scratch;
    return std::string(FromSystem(m_document.ColumnName(column), scratch));
}

void Utf8Cells::Put(int row, int column, std::string_view utf8)
{
    if (m_unicode) {
        m_document.SetCellText16(row, column, ost::Utf8ToUtf16(utf8));
        return;
    }
    std::string scratch;
    m_document.SetCellText8(row, column, ToSystem(utf8, scratch));
}

} // namespace quirnel
