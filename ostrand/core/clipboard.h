#pragma once
// The system clipboard as toolkit-free code sees it: one write puts several named formats at
// once (so a paste into any program finds the form it understands), and reads ask for one
// format by name. The editor implements it over the platform clipboard; tests keep a map.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ost {

/// Format names the editor writes and reads.
inline constexpr std::string_view kClipboardPlainText = "text/plain";
inline constexpr std::string_view kClipboardCsv = "text/csv";
inline constexpr std::string_view kClipboardCsvMarker = "application/x-ostrand-csv-data";
/// Rows dragged by the grid's "#" column; the payload is the editor's own.
inline constexpr std::string_view kClipboardRowDrag = "application/x-ostrand-csv-editor-row";

struct ClipboardItem
{
    std::string format;
    /// The bytes as stored under the format; text formats hold UTF-8.
    std::string data;
};

class Clipboard
{
public:
    virtual ~Clipboard() = default;
    /// Replaces the whole clipboard with these formats; false when the clipboard is busy.
    virtual bool Write(const std::vector<ClipboardItem>& items) = 0;
    /// nullopt when the clipboard holds nothing under that format.
    virtual std::optional<std::string> Read(std::string_view format) = 0;
    bool Has(std::string_view format) { return Read(format).has_value(); }
};

} // namespace ost
