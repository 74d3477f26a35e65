#pragma once
// The system clipboard through Qt: every format of one copy goes into a single QMimeData, so
// another program never sees a clipboard that holds some of the formats but not the others.

#include "ostrand/core/clipboard.h"

namespace ost {

class QtClipboard : public Clipboard
{
public:
    /// False when no GUI application runs (there is then no clipboard to write).
    bool Write(const std::vector<ClipboardItem>& items) override;
    std::optional<std::string> Read(std::string_view format) override;
};

} // namespace ost
