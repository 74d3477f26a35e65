#pragma once
// The table as one HTML table element, for the HTML export and for printing: the visible data
// columns and rows in the order shown, names and cells escaped so that no cell text can become
// markup, and nothing but 7-bit ASCII in the output.

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace quirnel {

class TableControl;

struct HtmlTableOptions
{
    /// Points; 0 (or anything not above 0) writes no style attribute.
    double fontSize = 0;
    /// The code page 8-bit cells and names are read in.
    std::uint32_t codePage = 0;
};

/// Receives the output in pieces; false stops the writing (a failed file write).
using HtmlSink = std::function<bool(std::string_view)>;

/// Writes the table element with CR LF line ends. False when the sink refused a piece.
bool WriteHtmlTable(const TableControl& table, const HtmlTableOptions& options,
                    const HtmlSink& sink);
/// The same into a string.
std::string HtmlTable(const TableControl& table, const HtmlTableOptions& options);

/// The size as the style attribute writes it: the shortest decimal form (10.5, 12, 7.25).
std::string ShortestDecimal(double value);

/// Appends one cell's text as HTML: <, >, &, " and ' escaped, a line break (CR LF, LF or CR) as
/// "<br>\r\n", spaces that a browser would fold as "&nbsp;", and every character beyond 7-bit
/// ASCII as "&#%d;" of its code point (a lone surrogate as &#65533;).
void AppendHtmlText(std::u16string_view text, std::string& out);
/// The same for UTF-8 text, whose invalid bytes become &#65533;.
void AppendHtmlTextUtf8(std::string_view text, std::string& out);

} // namespace quirnel
