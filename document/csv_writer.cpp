#include "document/csv_writer.h"

#include <array>

namespace quirnel {

namespace {

enum QuoteClass : unsigned char
{
    kForcesQuotes = 1,
    kQuoteMark = 2,
    kBackslash = 4,
};

/// Characters that force quoting are all four separators, whatever the file's own one is.
constexpr std::array<unsigned char, 256> MakeQuoteClasses()
{
    std::array<unsigned char, 256> table{};
    for (char c : std::string_view(",\"\t\r\n;|"))
        table[static_cast<unsigned char>(c)] = kForcesQuotes;
    table[static_cast<unsigned char>('"')] |= kQuoteMark;
    table[static_cast<unsigned char>('\\')] = kBackslash;
    return table;
}
constexpr std::array<unsigned char, 256> kQuoteClasses = MakeQuoteClasses();

template <typename Char> unsigned char QuoteClassOf(Char c)
{
    const auto unit = static_cast<std::make_unsigned_t<Char>>(c);
    return unit < 256 ? kQuoteClasses[unit] : 0;
}

template <typename Char>
void AppendQuoted(std::basic_string<Char>& out, std::basic_string_view<Char> text, unsigned flags)
{
    const bool escapes = flags & CSV_BACKSLASH_ESCAPE;
    // One pass gathers every class present; no branch per character, so it runs fast over the
    // millions of cells of a large file.
    unsigned classes = 0;
    for (Char c : text)
        classes |= QuoteClassOf(c);
    bool quote = (flags & CSV_QUOTE_ALL) || (classes & kForcesQuotes);
    const bool rewrite = (classes & kQuoteMark) || (escapes && (classes & kBackslash));
    if (!quote && !text.empty() &&
        (text.front() == Char(' ') || text.front() == Char('\'') || text.back() == Char(' ')))
        quote = true;
    if (quote)
        out.push_back(Char('"'));
    if (!rewrite) {
        out.append(text);
    } else {
        for (Char c : text) {
            if (c == Char('"') || (escapes && c == Char('\\')))
                out.push_back(c);
            out.push_back(c);
        }
    }
    if (quote)
        out.push_back(Char('"'));
}

template <typename Char>
bool WriteFields(BasicRecordSink<Char>& out, unsigned flags,
                 const std::vector<std::basic_string_view<Char>>& fields, Char separator,
                 std::basic_string_view<Char> newline)
{
    if (fields.empty())
        return true;
    // One buffer per thread and character width: records are written millions of times.
    thread_local std::basic_string<Char> record;
    record.clear();
    if (fields.size() == 1 && fields[0].empty()) {
        record.push_back(Char('"'));
        record.push_back(Char('"'));
    } else {
        for (std::size_t i = 0; i < fields.size(); ++i) {
            if (i)
                record.push_back(separator);
            AppendQuoted(record, fields[i], flags);
        }
    }
    record.append(newline);
    return out.Write(record);
}

} // namespace

void AppendQuotedField(std::string& out, std::string_view text, unsigned flags)
{
    AppendQuoted(out, text, flags);
}

void AppendQuotedField(std::u16string& out, std::u16string_view text, unsigned flags)
{
    AppendQuoted(out, text, flags);
}

std::string QuoteField(std::string_view text, unsigned flags)
{
    std::string out;
    AppendQuoted(out, text, flags);
    return out;
}

std::u16string QuoteField(std::u16string_view text, unsigned flags)
{
    std::u16string out;
    AppendQuoted(out, text, flags);
    return out;
}

bool WriteRecord(RecordSink& out, unsigned flags, const std::vector<std::string_view>& fields,
                 char separator, std::string_view newline)
{
    return WriteFields(out, flags, fields, separator, newline);
}

bool WriteRecord(RecordSink16& out, unsigned flags, const std::vector<std::u16string_view>& fields,
                 char16_t separator, std::u16string_view newline)
{
    return WriteFields(out, flags, fields, separator, newline);
}

} // namespace quirnel
