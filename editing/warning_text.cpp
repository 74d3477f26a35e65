#include "editing/warning_text.h"

#include "document/table_document.h"
#include "ostrand/codepage/code_page.h"
#include "ostrand/core/string.h"

namespace quirnel {

std::string WarningLineText(const CSV_Warning& warning, bool unicodeDocument)
{
    // Every message that concerns a row already names it ("Row 2 only contains ..."); the
    // row index is for Go, not for the text.
    std::string line = warning.message;
    if (warning.extraData.empty())
        return line;
    if (unicodeDocument) {
        line += warning.extraData;
        return line;
    }
    std::u16string wide;
    ost::CodePageConverter converter(ost::kCodePageSystem);
    if (converter.ToUtf16(warning.extraData, wide))
        line += ost::Utf16ToUtf8(wide);
    else
        line += warning.extraData;
    return line;
}

} // namespace quirnel
