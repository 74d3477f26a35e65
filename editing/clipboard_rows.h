#pragma once
// Rows through the clipboard: Copy Row(s), Cut Row(s) and Paste Row(s) with its column mapping
// and insertion place. Rows leave as comma-separated CSV text and as tab-separated text, so
// that spreadsheets take them; anything that parses as CSV comes back as rows. Both directions
// go through the file reader and writer, so the clipboard speaks the files' own dialect.

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ost {
class Clipboard;
}

namespace quirnel {

struct ToolContext;
class TableDocument;

/// Delimited records read from the clipboard or a file, every field as UTF-8.
class TextRecords
{
public:
    std::size_t Count() const { return m_starts.empty() ? 0 : m_starts.size() - 1; }
    bool Empty() const { return Count() == 0; }
    /// Fields of record `r`.
    std::size_t Width(std::size_t r) const { return m_starts[r + 1] - m_starts[r]; }
    const std::string& Field(std::size_t r, std::size_t f) const
    {
        return m_fields[m_starts[r] + f];
    }
    /// The most fields any record has.
    std::size_t MaxWidth() const { return m_maxWidth; }
    void Add(std::vector<std::string>&& fields);
    void Reserve(std::size_t records, std::size_t fields);

private:
    std::vector<std::string> m_fields;
    std::vector<std::size_t> m_starts;
    std::size_t m_maxWidth = 0;
};

/// Parses text with the one CSV reader. The separator is detected from the first record as a
/// file's is, except that `tabbed` text (the clipboard's Unicode form, which spreadsheets also
/// write) is tab-separated whenever its first record holds a tab outside quotes: a cell's comma
/// must not outvote the tabs. `fromSystemCodePage`: the fields are converted from the system's
/// 8-bit code page to UTF-8.
TextRecords ParseDelimitedText(std::string_view text, bool tabbed, bool fromSystemCodePage);

/// What the clipboard holds as records: its Unicode text, or, when that is empty, its 8-bit
/// text (UTF-8 after a byte-order mark, else the system code page).
TextRecords ReadClipboardRecords(ost::Clipboard& clipboard);

/// The mapping dialog: which table column each clipboard column goes to.
struct PasteMappingRequest
{
    /// The command's caption; titles the dialog and its refusals.
    std::string title;
    /// The first record's fields (UTF-8), one per clipboard column; the names when `hasNames`.
    std::vector<std::string> clipboardColumns;
    /// The table's data columns' names (UTF-8): entry i is column i + 1.
    std::vector<std::string> tableColumns;
    /// "Clipboard contains column names": the first record is names, not data.
    bool hasNames = false;
    /// Per clipboard column, the table column it goes to (1-based); 0 for none.
    std::vector<int> mapping;
};

/// The mapping the dialog opens with: by name when the first record is names and any of them
/// is a table column's, otherwise in the clipboard's order.
void InitialMapping(PasteMappingRequest& request);
/// "Reset": no clipboard column goes anywhere.
void ResetMapping(PasteMappingRequest& request);
/// "Same Order": clipboard column i goes to table column i + 1 while there are table columns.
void SameOrderMapping(PasteMappingRequest& request);
/// The refusal the mapping's OK gets, or "" when it is acceptable.
std::string MappingRefusal(const PasteMappingRequest& request);

/// The insertion-place dialog of Paste Row(s).
enum PastePlace : int
{
    kPasteBeforeCurrent = 0,
    kPasteAfterCurrent = 1,
    kPasteAtBeginning = 2,
    kPasteAtEnd = 3,
};

struct PastePlaceRequest
{
    /// In: the last choice; out: the chosen place.
    int place = kPasteBeforeCurrent;
};

/// Copy Row(s) (`cut` false) and Cut Row(s) (`cut` true).
void CopyRowsCommand(ToolContext& context, bool cut);
/// Paste Row(s); `alwaysMap` shows the mapping dialog even when the names match.
void PasteRowsCommand(ToolContext& context, bool alwaysMap = false);

/// The records of the rows as the clipboard gets them: comma-separated CSV text (cells as
/// stored: 8-bit text, UTF-8 for a UTF-16 document) and tab-separated UTF-8 text. A names
/// record comes first when `names`. `rows` are storage indices.
struct RowTexts
{
    std::string csv;
    std::string tabbed;
};
RowTexts BuildRowTexts(TableDocument& document, const std::vector<int>& rows, bool names);
/// The same for some data columns only, in the order given.
RowTexts BuildRecordTexts(TableDocument& document, const std::vector<int>& rows,
                          const std::vector<int>& columns, bool names);
/// Puts the texts on the clipboard: the CSV form, the tab-separated form and, when the first
/// record is names, the marker. False when the clipboard refused.
bool WriteRecordTexts(ost::Clipboard& clipboard, RowTexts texts, bool names);

/// Inserts one row per record, from record `first` on, before storage index `at`, writing
/// record field i to table column mapping[i] (0: nowhere). Returns the rows inserted. Call
/// inside a change frame.
int InsertMappedRecords(TableDocument& document, const TextRecords& records, std::size_t first,
                        const std::vector<int>& mapping, int at);

/// The document's data column names as UTF-8.
std::vector<std::string> DataColumnNamesUtf8(TableDocument& document);

/// Shows the mapping dialog until the user gives an acceptable mapping (refusals are told in a
/// box titled as the request) or cancels: false.
bool AskMapping(ToolContext& context, PasteMappingRequest& request);

} // namespace quirnel
