#include "view/html_table_writer.h"

#include "ostrand/codepage/code_page.h"
#include "view/table_control.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <memory>
#include <vector>

namespace quirnel {

namespace {

constexpr char32_t kReplacement = 0xFFFD;
/// Pieces handed to the sink: big enough that a file write per piece costs nothing.
constexpr std::size_t kFlushSize = 1 << 20;

void AppendNumber(std::uint32_t value, std::string& out)
{
    char digits[16];
    auto result = std::to_chars(digits, digits + sizeof digits, value);
    out.append(digits, result.ptr);
}

bool IsLineBreak(char32_t c)
{
    return c == U'\r' || c == U'\n';
}

/// The escaping itself, over code points (or ASCII bytes, which are code points too).
template <typename Char> void EscapeCodePoints(std::basic_string_view<Char> text, std::string& out)
{
    const std::size_t n = text.size();
    for (std::size_t i = 0; i < n; ++i) {
        const auto c = static_cast<char32_t>(text[i]);
        switch (c) {
        case U'\r':
            if (i + 1 < n && static_cast<char32_t>(text[i + 1]) == U'\n')
                ++i;
            [[fallthrough]];
        case U'\n':
            out += "<br>\r\n";
            break;
        case U' ': {
            // A browser folds a space next to another, and drops one at a line's start or
            // end: only a lone space between two other characters may stay plain, so that
            // long lines can still wrap there.
            const bool lone = i > 0 && i + 1 < n && static_cast<char32_t>(text[i - 1]) != U' ' &&
                              !IsLineBreak(static_cast<char32_t>(text[i - 1])) &&
                              static_cast<char32_t>(text[i + 1]) != U' ' &&
                              !IsLineBreak(static_cast<char32_t>(text[i + 1]));
            out += lone ? " " : "&nbsp;";
            break;
        }
        case U'<':
            out += "&lt;";
            break;
        case U'>':
            out += "&gt;";
            break;
        case U'&':
            out += "&amp;";
            break;
        case U'"':
            out += "&quot;";
            break;
        case U'\'':
            out += "&#39;";
            break;
        default:
            if (c < 0x80) {
                out.push_back(static_cast<char>(c));
            } else {
                out += "&#";
                AppendNumber(static_cast<std::uint32_t>(c), out);
                out.push_back(';');
            }
            break;
        }
    }
}

void DecodeUtf16(std::u16string_view text, std::u32string& out)
{
    out.clear();
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (unit >= 0xD800 && unit <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
            text[i + 1] <= 0xDFFF) {
            out.push_back(0x10000 + ((char32_t(unit) - 0xD800) << 10) + (text[i + 1] - 0xDC00));
            ++i;
        } else if (unit >= 0xD800 && unit <= 0xDFFF) {
            out.push_back(kReplacement);
        } else {
            out.push_back(unit);
        }
    }
}

void DecodeUtf8(std::string_view text, std::u32string& out)
{
    out.clear();
    const auto* p = reinterpret_cast<const unsigned char*>(text.data());
    const std::size_t n = text.size();
    std::size_t i = 0;
    while (i < n) {
        const unsigned char lead = p[i];
        if (lead < 0x80) {
            out.push_back(lead);
            ++i;
            continue;
        }
        int length = lead >= 0xF0 && lead <= 0xF4 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC2 ? 2 : 0;
        if (lead > 0xF4)
            length = 0;
        char32_t c = length == 2 ? lead & 0x1F : length == 3 ? lead & 0x0F : lead & 0x07;
        int taken = 1;
        while (length > 0 && taken < length && i + taken < n && (p[i + taken] & 0xC0) == 0x80) {
            c = (c << 6) | (p[i + taken] & 0x3F);
            ++taken;
        }
        // Overlong forms, surrogates and truncated sequences are not characters: each bad
        // sequence is one replacement, and decoding goes on after it.
        const bool valid = length > 0 && taken == length &&
                           !(length == 3 && (c < 0x800 || (c >= 0xD800 && c <= 0xDFFF))) &&
                           !(length == 4 && (c < 0x10000 || c > 0x10FFFF));
        out.push_back(valid ? c : kReplacement);
        i += valid ? taken : std::max(1, taken);
    }
}

/// ASCII bytes that go out as they are: everything below 0x80 but the escaped characters, line
/// ends and spaces (which depend on their neighbours).
struct PlainBytes
{
    bool plain[256] = {};
    constexpr PlainBytes()
    {
        for (int c = 0; c < 0x80; ++c)
            plain[c] = true;
        for (unsigned char c : {'<', '>', '&', '"', '\'', '\r', '\n', ' '})
            plain[c] = false;
    }
};
constexpr PlainBytes kPlain;

/// The escaping of 8-bit ASCII text, copying runs of plain bytes whole. False (with `out` as
/// it was) when the text holds a byte beyond ASCII.
bool EscapeAscii(std::string_view text, std::string& out)
{
    const std::size_t mark = out.size();
    const char* p = text.data();
    const std::size_t n = text.size();
    std::size_t run = 0;
    for (std::size_t i = 0; i < n; ++i) {
        const auto c = static_cast<unsigned char>(p[i]);
        if (kPlain.plain[c])
            continue;
        if (c >= 0x80) {
            out.resize(mark);
            return false;
        }
        out.append(p + run, i - run);
        // The special byte and what follows it are the general escaper's business, one
        // character at a time (a space needs both neighbours, CR LF is one break).
        std::size_t end = i + 1;
        if (c == '\r' && end < n && p[end] == '\n')
            ++end;
        if (c == ' ') {
            const bool lone = i > 0 && i + 1 < n && p[i - 1] != ' ' && p[i - 1] != '\r' &&
                              p[i - 1] != '\n' && p[i + 1] != ' ' && p[i + 1] != '\r' &&
                              p[i + 1] != '\n';
            out += lone ? " " : "&nbsp;";
        } else {
            EscapeCodePoints(std::string_view(p + i, end - i), out);
        }
        run = end;
        i = end - 1;
    }
    out.append(p + run, n - run);
    return true;
}

/// Turns 8-bit text of one code page into escaped HTML, with a fast path for ASCII.
class EightBitEscaper
{
public:
    explicit EightBitEscaper(std::uint32_t codePage)
        : m_codePage(codePage),
          m_utf8(codePage == ost::kCodePageUtf8 ||
                 (codePage == ost::kCodePageSystem && ost::SystemCharset() == "UTF-8"))
    {}

    void Append(std::string_view text, std::string& out)
    {
        if (EscapeAscii(text, out))
            return;
        if (m_utf8) {
            DecodeUtf8(text, m_codePoints);
        } else {
            if (!m_converter)
                m_converter = std::make_unique<ost::CodePageConverter>(m_codePage);
            if (!m_converter->ToUtf16(text, m_units)) {
                // A code page this machine cannot read: its ASCII still is ASCII.
                m_units.clear();
                for (char c : text)
                    m_units.push_back(static_cast<unsigned char>(c) < 0x80
                                          ? static_cast<char16_t>(c)
                                          : static_cast<char16_t>(kReplacement));
            }
            DecodeUtf16(m_units, m_codePoints);
        }
        EscapeCodePoints(std::u32string_view(m_codePoints), out);
    }

private:
    std::uint32_t m_codePage;
    bool m_utf8;
    std::unique_ptr<ost::CodePageConverter> m_converter;
    std::u16string m_units;
    std::u32string m_codePoints;
};

void AppendWide(std::u16string_view text, std::u32string& scratch, std::string& out)
{
    DecodeUtf16(text, scratch);
    EscapeCodePoints(std::u32string_view(scratch), out);
}

} // namespace

void AppendHtmlText(std::u16string_view text, std::string& out)
{
    std::u32string codePoints;
    AppendWide(text, codePoints, out);
}

void AppendHtmlTextUtf8(std::string_view text, std::string& out)
{
    std::u32string codePoints;
    DecodeUtf8(text, codePoints);
    EscapeCodePoints(std::u32string_view(codePoints), out);
}

std::string ShortestDecimal(double value)
{
    char digits[32];
    auto result = std::to_chars(digits, digits + sizeof digits, value);
    return std::string(digits, result.ptr);
}

bool WriteHtmlTable(const TableControl& table, const HtmlTableOptions& options,
                    const HtmlSink& sink)
{
    std::string out;
    out.reserve(kFlushSize + 4096);
    EightBitEscaper eightBit(options.codePage);
    std::u32string scratch;
    auto flush = [&](bool force) {
        if (out.size() < kFlushSize && !force)
            return true;
        const bool ok = out.empty() || sink(out);
        out.clear();
        return ok;
    };

    out += "<table width=\"100%\" cellpadding=2 cellspacing=0 rules=all border=2 frame=box "
           "align=center";
    // NaN is not above 0 either: no size, no style.
    if (options.fontSize > 0 && std::isfinite(options.fontSize)) {
        out += " style=\"font-size: ";
        out += ShortestDecimal(options.fontSize);
        out += "pt\"";
    }
    out += ">\r\n";

    std::vector<int> columns;
    for (int c = 1; c < table.ColumnCount(); ++c)
        if (!table.Column(c).hidden)
            columns.push_back(c);

    for (int c : columns) {
        out += "<col width=\"";
        AppendNumber(static_cast<std::uint32_t>(std::max(0, table.Column(c).width)), out);
        out += "*\">\r\n";
    }
    out += "<thead style=\"font-weight: bold; font-size: 1.1em\"><tr>\r\n";
    for (int c : columns) {
        const TableColumn& column = table.Column(c);
        out += "<td>";
        if (column.wide)
            AppendWide(column.headerTextWide, scratch, out);
        else
            eightBit.Append(column.headerText, out);
        out += "</td>\r\n";
    }
    out += "</tr></thead>\r\n";

    std::vector<std::string_view> texts(static_cast<std::size_t>(table.ColumnCount()));
    for (int position = 0; position < table.RowCount(); ++position) {
        const int row = table.RowAtDisplayPosition(position);
        if (row < 0 || table.IsRowHidden(row))
            continue;
        if (texts.size() > 1)
            table.RowText8(row, texts.data() + 1);
        out += "<tr>\r\n";
        for (int c : columns) {
            out += "<td>";
            const std::string_view text = texts[static_cast<std::size_t>(c)];
            if (!text.empty())
                eightBit.Append(text, out);
            else if (table.CellIsWide(row, c))
                AppendWide(table.CellText16(row, c), scratch, out);
            out += "</td>\r\n";
        }
        out += "</tr>\r\n";
        if (!flush(false))
            return false;
    }
    out += "</table>\r\n";
    return flush(true);
}

std::string HtmlTable(const TableControl& table, const HtmlTableOptions& options)
{
    std::string all;
    WriteHtmlTable(table, options, [&all](std::string_view piece) {
        all.append(piece);
        return true;
    });
    return all;
}

} // namespace quirnel
