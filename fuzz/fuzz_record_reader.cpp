// Reads any bytes with the record reader and the field splitter, in 8-bit and in 16-bit units,
// with each separator set and flag. Every read must move on; both widths must find the same
// records, fields and comments; the fields found while scanning a record must be those the
// splitter finds in it; and cleaning a field in place must give what cleaning a copy gives.

#include "document/csv_record_reader.h"

#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

using namespace quirnel;

namespace {

std::u16string Widen(std::string_view text)
{
    std::u16string wide;
    for (char c : text)
        wide += static_cast<char16_t>(static_cast<unsigned char>(c));
    return wide;
}

void Check(bool condition)
{
    if (!condition)
        std::abort();
}

/// The same bounds, not merely the same text.
template <typename View> bool SameViews(const std::vector<View>& a, const std::vector<View>& b)
{
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (a[i].data() != b[i].data() || a[i].size() != b[i].size())
            return false;
    return true;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    if (size == 0)
        return 0;
    static const std::string_view kSeparators[] = {",", "\t", ";", "|", ",;", ""};
    const std::uint8_t choice = data[0];
    const std::string_view separators = kSeparators[choice % 6];
    const std::u16string separators16 = Widen(separators);
    const unsigned flags = ((choice & 0x40) ? CSV_BACKSLASH_ESCAPE : 0u) |
                           ((choice & 0x80) ? CSV_IGNORE_COMMENTS : 0u);
    const std::string_view text(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::u16string wide = Widen(text);

    CsvRecordReader reader(text);
    CsvRecordReader16 reader16(wide);
    std::vector<std::string> comments;
    std::vector<std::u16string> comments16;
    std::string_view record;
    std::u16string_view record16;
    std::vector<std::string_view> raw;
    std::vector<std::u16string_view> raw16;
    std::vector<std::string_view> split;
    std::vector<std::string> fields;
    bool first = true;
    for (;;) {
        const std::size_t before = reader.Position();
        const bool got = reader.ReadRecordRaw(record, raw, flags, separators, &comments);
        const bool got16 =
            reader16.ReadRecordRaw(record16, raw16, flags, separators16, &comments16);
        Check(got == got16);
        Check(reader.Position() == reader16.Position());
        if (!got)
            break;
        Check(reader.Position() > before && reader.Position() <= text.size());
        Check(record.data() >= text.data() &&
              record.data() + record.size() <= text.data() + text.size());
        Check(Widen(record) == record16);
        if (first) {
            Check(static_cast<char16_t>(CsvRecordReader::DetectSeparator(record, flags)) ==
                  CsvRecordReader16::DetectSeparator(record16, flags));
            first = false;
        }

        CsvRecordReader::SplitRecordRaw(record, split, separators, flags);
        Check(SameViews(raw, split));
        Check(raw.size() == raw16.size());
        CsvRecordReader::SplitRecord(record, fields, separators, flags);
        Check(fields.size() == raw.size());
        for (std::size_t i = 0; i < raw.size(); ++i) {
            Check(Widen(raw[i]) == raw16[i]);
            const std::string cleaned = CsvRecordReader::UnquoteField(raw[i], flags);
            Check(cleaned == fields[i]);
            std::string copy(raw[i]);
            Check(CsvRecordReader::UnquoteInPlace(copy.data(), copy.size(), flags) == cleaned);
            Check(CsvRecordReader16::UnquoteField(raw16[i], flags) == Widen(cleaned));
        }
        std::vector<std::u16string> fromUtf8;
        SplitRecordFromUtf8(record, fromUtf8, separators, flags);
        Check(fromUtf8.size() == raw.size());
    }
    Check(comments.size() == comments16.size());
    for (std::size_t i = 0; i < comments.size(); ++i)
        Check(Widen(comments[i]) == comments16[i]);

    // The reading entry points over the same text: they must end, whatever they find.
    CsvRecordReader again(text);
    char separator = ',';
    again.ReadFirstRecordDetecting(fields, flags | CSV_APPEND, separator, nullptr);
    while (again.ReadFields(fields, flags, std::string_view(&separator, 1), &comments))
        Check(again.Position() <= text.size());
    return 0;
}
