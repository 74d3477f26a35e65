#pragma once
// Cells as UTF-8, whatever the document's text mode: what the clipboard and imported files
// carry. 8-bit cells are system code page text, which here is normally UTF-8 already; then
// nothing is converted, which keeps copying a million rows cheap.

#include "ostrand/codepage/code_page.h"

#include <string>
#include <string_view>

namespace quirnel {

class TableDocument;

class Utf8Cells
{
public:
    explicit Utf8Cells(TableDocument& document);

    /// The cell's text as UTF-8; may point into `scratch` or into the table (valid until the
    /// next change).
    std::string_view Get(int row, int column, std::string& scratch);
    /// A data column's name as UTF-8.
    std::string Name(int column);
    /// Stores UTF-8 text in the document's text mode ("?" for what the code page lacks).
    void Put(int row, int column, std::string_view utf8);
    /// UTF-8 as system code page text; the same bytes when the system speaks UTF-8.
    std::string_view ToSystem(std::string_view utf8, std::string& scratch);
    /// System code page text as UTF-8.
    std::string_view FromSystem(std::string_view bytes, std::string& scratch);

private:
    TableDocument& m_document;
    bool m_unicode;
    bool m_systemUtf8;
    ost::CodePageConverter m_system;
    std::u16string m_wide;
};

} // namespace quirnel
