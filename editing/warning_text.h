#pragma once
// How one load warning reads in the Warnings pane: its message once, and for a row with extra
// fields the fields themselves after it, since they are what a save would leave out.

#include <string>

namespace quirnel {

struct CSV_Warning;

/// UTF-8. `unicodeDocument`: the warning's extra data is UTF-8 already; otherwise it is 8-bit
/// text in the system code page and converted for display.
std::string WarningLineText(const CSV_Warning& warning, bool unicodeDocument);

} // namespace quirnel
