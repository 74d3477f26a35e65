#include "editing/clipboard_rows.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/csv_record_reader.h"
#include "document/csv_writer.h"
#include "document/table_document.h"
#include "editing/change_frame.h"
#include "editing/row_commands.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "editing/utf8_cells.h"
#include "ostrand/core/clipboard.h"
#include "ostrand/core/string.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <memory>

namespace quirnel {

namespace {

constexpr std::string_view kNewline = "\r\n";
constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

void Tell(ToolContext& context, const std::string& title, const std::string& text, int id)
{
    InformUser(context, title, text, CommandIconName(id));
}

/// Whether the raw record holds a tab that no quote mark encloses.
bool HasUnquotedTab(std::string_view record)
{
    bool quoted = false;
    for (char c : record) {
        if (c == '"')
            quoted = !quoted;
        else if (c == '\t' && !quoted)
            return true;
    }
    return false;
}

/// Records as WriteRecord writes them, put straight into a buffer that grows by doubling: a
/// string would fill each record's room with zeros before the record is written over it.
class TextBuilder
{
public:
    void Append(const std::string_view* fields, std::size_t count, char separator)
    {
        const std::size_t bound = RecordBound(fields, count, kNewline);
        if (bound > m_capacity - m_size)
            Grow(m_size + bound);
        char* end = PutRecord(m_data.get() + m_size, 0, fields, count, separator, kNewline);
        m_size = static_cast<std::size_t>(end - m_data.get());
    }
    std::string Take() const { return std::string(m_data.get(), m_size); }

private:
    void Grow(std::size_t needed)
    {
        const std::size_t capacity = std::max({needed, m_capacity * 2, std::size_t{1} << 16});
        std::unique_ptr<char[]> data(new char[capacity]);
        if (m_size > 0)
            std::memcpy(data.get(), m_data.get(), m_size);
        m_data = std::move(data);
        m_capacity = capacity;
    }

    std::unique_ptr<char[]> m_data;
    std::size_t m_size = 0;
    std::size_t m_capacity = 0;
};

/// The first record's fields, one per clipboard column (as many as the widest record has).
std::vector<std::string> FirstRecordColumns(const TextRecords& records)
{
    std::vector<std::string> columns(records.MaxWidth());
    for (std::size_t f = 0; f < records.Width(0); ++f)
        columns[f] = records.Field(0, f);
    return columns;
}

} // namespace

void TextRecords::Add(std::vector<std::string>&& fields)
{
    if (m_starts.empty())
        m_starts.push_back(0);
    m_maxWidth = std::max(m_maxWidth, fields.size());
    for (std::string& field : fields)
        m_fields.push_back(std::move(field));
    m_starts.push_back(m_fields.size());
}

void TextRecords::Reserve(std::size_t records, std::size_t fields)
{
    m_starts.reserve(records + 1);
    m_fields.reserve(fields);
}

TextRecords ParseDelimitedText(std::string_view text, bool tabbed, bool fromSystemCodePage)
{
    TextRecords out;
    CsvRecordReader reader(text);
    std::string_view first;
    if (!reader.ReadRecord(first, 0, {}, nullptr))
        return out;
    const char separator =
        tabbed && HasUnquotedTab(first) ? '\t' : CsvRecordReader::DetectSeparator(first, 0);
    reader.Seek(0);
    const std::string_view separators(&separator, 1);
    ost::CodePageConverter system(ost::kCodePageSystem);
    const bool convert = fromSystemCodePage && ost::SystemCharset() != "UTF-8";
    std::u16string wide;
    std::vector<std::string> fields;
    while (reader.ReadFields(fields, 0, separators, nullptr)) {
        if (convert) {
            for (std::string& field : fields) {
                system.ToUtf16(field, wide);
                field = ost::Utf16ToUtf8(wide);
            }
        }
        out.Add(std::move(fields));
        fields = {};
    }
    return out;
}

TextRecords ReadClipboardRecords(ost::Clipboard& clipboard)
{
    const std::optional<std::string> unicode = clipboard.Read(ost::kClipboardPlainText);
    if (unicode && !unicode->empty())
        return ParseDelimitedText(*unicode, true, false);
    const std::optional<std::string> bytes = clipboard.Read(ost::kClipboardCsv);
    if (!bytes || bytes->empty())
        return {};
    std::string_view text = *bytes;
    if (text.starts_with(kUtf8Mark))
        return ParseDelimitedText(text.substr(kUtf8Mark.size()), false, false);
    return ParseDelimitedText(text, false, true);
}

void ResetMapping(PasteMappingRequest& request)
{
    request.mapping.assign(request.clipboardColumns.size(), 0);
}

void SameOrderMapping(PasteMappingRequest& request)
{
    ResetMapping(request);
    const std::size_t n = std::min(request.mapping.size(), request.tableColumns.size());
    for (std::size_t c = 0; c < n; ++c)
        request.mapping[c] = static_cast<int>(c) + 1;
}

std::string MappingRefusal(const PasteMappingRequest& request)
{
    std::vector<int> used;
    for (int column : request.mapping) {
        if (column <= 0)
            continue;
        if (std::find(used.begin(), used.end(), column) != used.end())
            return "Two Clipboard Columns cannot map to the same Table Column.";
        used.push_back(column);
    }
    if (used.empty())
        return "You must choose at least one column to import.";
    return {};
}

void InitialMapping(PasteMappingRequest& request)
{
    ResetMapping(request);
    bool matched = false;
    if (request.hasNames) {
        for (std::size_t c = 0; c < request.clipboardColumns.size(); ++c) {
            const auto found = std::find(request.tableColumns.begin(), request.tableColumns.end(),
                                         request.clipboardColumns[c]);
            if (found == request.tableColumns.end())
                continue;
            const int column = static_cast<int>(found - request.tableColumns.begin()) + 1;
            if (std::find(request.mapping.begin(), request.mapping.end(), column) !=
                request.mapping.end())
                continue;
            request.mapping[c] = column;
            matched = true;
        }
    }
    if (!matched)
        SameOrderMapping(request);
}

bool AskMapping(ToolContext& context, PasteMappingRequest& request)
{
    for (;;) {
        if (!context.dialogs.PasteMapping(request))
            return false;
        const std::string refusal = MappingRefusal(request);
        if (refusal.empty())
            return true;
        Tell(context, request.title, refusal, cmd::kPasteRows);
    }
}

std::vector<std::string> DataColumnNamesUtf8(TableDocument& document)
{
    Utf8Cells cells(document);
    std::vector<std::string> names;
    for (int column = 1; column < document.ColumnCount(); ++column)
        names.push_back(cells.Name(column));
    return names;
}

RowTexts BuildRowTexts(TableDocument& document, const std::vector<int>& rows, bool names)
{
    std::vector<int> columns;
    for (int column = 1; column < document.ColumnCount(); ++column)
        columns.push_back(column);
    return BuildRecordTexts(document, rows, columns, names);
}

RowTexts BuildRecordTexts(TableDocument& document, const std::vector<int>& rows,
                          const std::vector<int>& columns, bool names)
{
    RowTexts out;
    TextBuilder csv;
    TextBuilder tabbed;
    const TableControl& table = document.Table();
    const std::size_t n = columns.size();
    for (int column : columns)
        if (column < 1 || column >= table.ColumnCount())
            return out;
    if (n == 0)
        return out;
    Utf8Cells cells(document);
    const bool unicode = document.IsUnicode();
    // Whole rows of an 8-bit table are fetched at once: copying every row of a large file
    // spends its time here.
    const bool wholeRows = !unicode && n == static_cast<std::size_t>(table.ColumnCount() - 1);
    std::vector<std::string_view> stored(n);
    std::vector<std::string_view> utf8(n);
    std::vector<std::string> scratch(n);
    std::vector<std::string> storedNames(n);
    if (names) {
        for (std::size_t c = 0; c < n; ++c) {
            scratch[c] = cells.Name(columns[c]);
            storedNames[c] = unicode ? scratch[c] : document.ColumnName(columns[c]);
            stored[c] = storedNames[c];
            utf8[c] = scratch[c];
        }
        csv.Append(stored.data(), n, ',');
        tabbed.Append(utf8.data(), n, '\t');
    }
    for (int row : rows) {
        if (row < 0 || row >= table.RowCount())
            continue;
        if (unicode) {
            for (std::size_t c = 0; c < n; ++c)
                utf8[c] = cells.Get(row, columns[c], scratch[c]);
            csv.Append(utf8.data(), n, ',');
        } else {
            if (wholeRows) {
                table.RowText8(row, stored.data());
            } else {
                for (std::size_t c = 0; c < n; ++c)
                    stored[c] = table.CellText8(row, columns[c]);
            }
            for (std::size_t c = 0; c < n; ++c)
                utf8[c] = cells.FromSystem(stored[c], scratch[c]);
            csv.Append(stored.data(), n, ',');
        }
        tabbed.Append(utf8.data(), n, '\t');
    }
    out.csv = csv.Take();
    out.tabbed = tabbed.Take();
    return out;
}

bool WriteRecordTexts(ost::Clipboard& clipboard, RowTexts texts, bool names)
{
    // The 8-bit CSV form first, then the Unicode tab-separated one, then the marker that says
    // the first record is names written by this program.
    std::vector<ost::ClipboardItem> items;
    items.push_back({std::string(ost::kClipboardCsv), std::move(texts.csv)});
    items.push_back({std::string(ost::kClipboardPlainText), std::move(texts.tabbed)});
    if (names)
        items.push_back({std::string(ost::kClipboardCsvMarker), "1"});
    return clipboard.Write(items);
}

int InsertMappedRecords(TableDocument& document, const TextRecords& records, std::size_t first,
                        const std::vector<int>& mapping, int at)
{
    TableControl& table = document.Table();
    if (first >= records.Count())
        return 0;
    const std::size_t wanted = records.Count() - first;
    if (wanted > static_cast<std::size_t>(INT_MAX - table.RowCount()))
        return 0;
    const int count = static_cast<int>(wanted);
    at = std::clamp(at, 0, table.RowCount());
    if (!table.InsertRows(at, count))
        return 0;
    Utf8Cells cells(document);
    const int columns = table.ColumnCount();
    for (int i = 0; i < count; ++i) {
        const std::size_t r = first + static_cast<std::size_t>(i);
        const std::size_t width = std::min(records.Width(r), mapping.size());
        for (std::size_t f = 0; f < width; ++f) {
            const int column = mapping[f];
            if (column >= 1 && column < columns)
                cells.Put(at + i, column, records.Field(r, f));
        }
    }
    return count;
}

void CopyRowsCommand(ToolContext& context, bool cut)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const bool several = table.SelectedRowCount() >= 2;
    const int id = cut ? cmd::kCutRows : cmd::kCopyRows;
    const std::string title = std::string(cut ? "Cut " : "Copy ") + (several ? "Rows" : "Row");
    if (CheckToolPreconditions(context, kToolCellOrSelection, title, CommandIconName(id)))
        return;
    context.host.CommitCellEdit();
    std::vector<int> rows;
    if (table.SelectedRowCount() > 0)
        rows = table.SelectedRows();
    else if (table.FocusRow() >= 0 && table.FocusRow() < table.RowCount())
        rows.push_back(table.FocusRow());
    if (rows.empty())
        return;
    // The marker goes with every copy: with the names left out it still says the rows came
    // from here, and Paste Row(s) then offers the box checked.
    RowTexts texts = BuildRowTexts(document, rows, !context.prefs.copyRowsNoColumnNames);
    // Rows are only cut once they are safely on the clipboard.
    if (!WriteRecordTexts(context.clipboard, std::move(texts), true) || !cut)
        return;
    const bool ask = context.prefs.noConfirmDeleteRow;
    context.prefs.noConfirmDeleteRow = true;
    DeleteRowsCommand(context);
    context.prefs.noConfirmDeleteRow = ask;
}

void PasteRowsCommand(ToolContext& context, bool alwaysMap)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const int id = cmd::kPasteRows;
    const std::string title = std::string(CommandLabel(id));
    if (CheckToolPreconditions(context, 0, title, CommandIconName(id)))
        return;
    context.host.CommitCellEdit();
    const TextRecords records = ReadClipboardRecords(context.clipboard);
    if (records.Empty()) {
        Tell(context, title, "The clipboard does not contain CSV records.", id);
        return;
    }
    const std::vector<std::string> names = DataColumnNamesUtf8(document);
    bool namesMatch = records.Width(0) == names.size();
    for (std::size_t f = 0; namesMatch && f < names.size(); ++f)
        namesMatch = records.Field(0, f) == names[f];
    const int current = table.FocusRow();
    const bool hasCurrent = current >= 0 && current < table.RowCount();

    PasteMappingRequest mapping;
    mapping.title = title;
    mapping.tableColumns = names;
    mapping.clipboardColumns = FirstRecordColumns(records);
    if (namesMatch && !alwaysMap) {
        mapping.hasNames = true;
        SameOrderMapping(mapping);
    } else {
        mapping.hasNames =
            context.clipboard.Read(ost::kClipboardCsvMarker).value_or("") == "1" && hasCurrent;
        InitialMapping(mapping);
        if (!AskMapping(context, mapping))
            return;
    }

    int at = table.RowCount();
    if (hasCurrent) {
        PastePlaceRequest place;
        place.place = std::clamp(context.prefs.pasteRowsLocation, 0, 3);
        if (!context.dialogs.PastePlace(place))
            return;
        place.place = std::clamp(place.place, 0, 3);
        context.prefs.pasteRowsLocation = place.place;
        at = place.place == kPasteBeforeCurrent  ? current
             : place.place == kPasteAfterCurrent ? current + 1
             : place.place == kPasteAtBeginning  ? 0
                                                 : table.RowCount();
    }
    ChangeFrame frame(context);
    if (InsertMappedRecords(document, records, mapping.hasNames ? 1 : 0, mapping.mapping, at) == 0)
        return;
    frame.Done(0, at);
}

} // namespace quirnel
