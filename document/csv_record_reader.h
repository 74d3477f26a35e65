#pragma once
// The one delimited-text reader: splits text held in memory into records and fields. File
// loading, pasting rows and columns and importing into the grid all parse through it, so its
// quirks (spaces skipped before a field, quotes decided by the character after them, NUL ending
// a record) are the program's CSV dialect.

#include "document/file_format.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quirnel {

/// Reads records from text held in memory, 8-bit (`char`) or 16-bit (`char16_t`) units. The
/// reader never copies the text: records and raw fields are views into it, so the text must
/// outlive them.
template <typename Char> class BasicCsvRecordReader
{
public:
    using View = std::basic_string_view<Char>;
    using Text = std::basic_string<Char>;

    BasicCsvRecordReader() = default;
    explicit BasicCsvRecordReader(View data) : m_data(data) {}

    std::size_t Position() const { return m_position; }
    /// Moves the read position (clamped to the end); used to read a record again.
    void Seek(std::size_t position)
    {
        m_position = position < m_data.size() ? position : m_data.size();
    }
    std::size_t Size() const { return m_data.size(); }
    View Data() const { return m_data; }

    /// Reads one raw record (one logical line, quoted line breaks included) and leaves the
    /// position after its line end. False only at the end of the data. Skipped comment lines
    /// go to `comments` when given. An empty `separators` reads in detection mode, where only
    /// the quote state decides where the record ends.
    bool ReadRecord(View& record, unsigned flags, View separators, std::vector<Text>* comments);

    /// ReadRecord that also gives the record's raw fields, as SplitRecordRaw would. Without
    /// backslash escapes they are found in the same pass over the text.
    bool ReadRecordRaw(View& record, std::vector<View>& rawFields, unsigned flags, View separators,
                       std::vector<Text>* comments);

    /// ReadRecord, then SplitRecord. True when a record was read.
    bool ReadFields(std::vector<Text>& fields, unsigned flags, View separators,
                    std::vector<Text>* comments);

    /// Reads the first record in detection mode, picks its separator and splits it. True when
    /// at least one field is non-empty.
    bool ReadFirstRecordDetecting(std::vector<Text>& fields, unsigned flags, Char& separatorOut,
                                  std::vector<Text>* comments);

    /// Splits a raw record into cleaned fields. `fields` is cleared first unless CSV_APPEND.
    static void SplitRecord(View record, std::vector<Text>& fields, View separators,
                            unsigned flags);

    /// The raw fields of a record, before cleaning: leading spaces skipped, quotes kept. An
    /// empty record has no field; a record ending in a separator gets a last, empty field.
    static void SplitRecordRaw(View record, std::vector<View>& rawFields, View separators,
                               unsigned flags);

    /// Trims " \r\n\t", removes surrounding quotes, undoubles quote marks and, with
    /// CSV_BACKSLASH_ESCAPE, resolves backslash escapes.
    static Text UnquoteField(View field, unsigned flags);

    /// UnquoteField done inside the given memory, which the result never outgrows: returns the
    /// cleaned text as a view into [text, text + length).
    static View UnquoteInPlace(Char* text, std::size_t length, unsigned flags);

    /// The cleaned field as a view inside `field` when cleaning it only trims and removes the
    /// surrounding quotes; false when quote marks or escapes inside it must be rewritten, which
    /// UnquoteInPlace does on a copy. Never writes, so threads may share the text.
    static bool CleanWithoutRewrite(View field, unsigned flags, View& cleaned);

    /// ',' '\t' ';' or '|' by the counts outside quotes in the record; ties go in that order.
    static Char DetectSeparator(View record, unsigned flags);

private:
    bool ReadDetecting(View& record, unsigned flags);
    bool SkipToRecord(unsigned flags, std::vector<Text>* comments);
    bool ReadSeparated(View& record, unsigned flags, View separators, std::vector<View>* rawFields);
    void SetSeparators(View separators, unsigned flags);

    View m_data;
    std::size_t m_position = 0;
    /// Character classes for the unquoted scan, rebuilt when the separators or flags change.
    unsigned char m_classes[256] = {};
    Text m_classSeparators;
    unsigned m_classFlags = ~0u;
};

using CsvRecordReader = BasicCsvRecordReader<char>;
using CsvRecordReader16 = BasicCsvRecordReader<char16_t>;

extern template class BasicCsvRecordReader<char>;
extern template class BasicCsvRecordReader<char16_t>;

/// SplitRecord with CSV_FROM_UTF8: each cleaned field is converted from UTF-8 to UTF-16.
void SplitRecordFromUtf8(std::string_view record, std::vector<std::u16string>& fields,
                         std::string_view separators, unsigned flags);

} // namespace quirnel
