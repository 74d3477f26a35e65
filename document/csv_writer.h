#pragma once
// The one delimited-text writer: the quoting rule for a field and the writing of a record. File
// saving and copying rows and columns to the clipboard both write through it.

#include "document/file_format.h"

#include <string>
#include <string_view>
#include <vector>

namespace quirnel {

/// Where records go: a file being saved, or text for the clipboard.
template <typename Char> class BasicRecordSink
{
public:
    virtual ~BasicRecordSink() = default;
    /// False on a write error.
    virtual bool Write(std::basic_string_view<Char> text) = 0;
};

using RecordSink = BasicRecordSink<char>;
using RecordSink16 = BasicRecordSink<char16_t>;

/// Appends every record to a string.
template <typename Char> class StringRecordSink : public BasicRecordSink<Char>
{
public:
    explicit StringRecordSink(std::basic_string<Char>& out) : m_out(out) {}
    bool Write(std::basic_string_view<Char> text) override
    {
        m_out.append(text);
        return true;
    }

private:
    std::basic_string<Char>& m_out;
};

/// The field as written: quote marks doubled, backslashes doubled with CSV_BACKSLASH_ESCAPE,
/// and surrounded by quote marks when it holds any of ",\"\t\r\n;|" (whatever the file's own
/// separator), begins with a space or an apostrophe, ends with a space, or CSV_QUOTE_ALL is set.
std::string QuoteField(std::string_view text, unsigned flags);
std::u16string QuoteField(std::u16string_view text, unsigned flags);

/// QuoteField appended to `out`, without a temporary.
void AppendQuotedField(std::string& out, std::string_view text, unsigned flags);
void AppendQuotedField(std::u16string& out, std::u16string_view text, unsigned flags);

/// Writes one record: the quoted fields joined by the separator, then the newline. No fields
/// write nothing; one empty field writes "\"\"" so that the line is not read back as blank.
bool WriteRecord(RecordSink& out, unsigned flags, const std::vector<std::string_view>& fields,
                 char separator, std::string_view newline);
bool WriteRecord(RecordSink16& out, unsigned flags, const std::vector<std::u16string_view>& fields,
                 char16_t separator, std::u16string_view newline);

/// The most bytes PutRecord can write for these fields: every field doubled, quoted and
/// separated, and the newline.
std::size_t RecordBound(const std::string_view* fields, std::size_t count,
                        std::string_view newline);

/// The bytes WriteRecord writes for the record, put at `out`, which has room for RecordBound;
/// returns the end of what was put. For writers that fill a large buffer of their own.
char* PutRecord(char* out, unsigned flags, const std::string_view* fields, std::size_t count,
                char separator, std::string_view newline);

} // namespace quirnel
