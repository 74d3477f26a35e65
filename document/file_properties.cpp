#include "document/file_properties.h"

#include "document/table_document.h"
#include "ostrand/codepage/code_page.h"
#include "view/table_control.h"

#include <charconv>
#include <cstdio>

namespace quirnel {

namespace {

template <typename Get> std::string JoinColumns(const TableControl& table, Get get)
{
    std::string text;
    for (int column = 0; column < table.ColumnCount(); ++column) {
        if (column > 0)
            text += ',';
        text += std::to_string(get(column));
    }
    return text;
}

int AlignmentNumber(Alignment alignment)
{
    switch (alignment) {
    case Alignment::Center:
        return 1;
    case Alignment::Right:
        return 2;
    case Alignment::Left:
        break;
    }
    return 0;
}

std::optional<int> ParseInt(std::string_view text)
{
    int value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

} // namespace

std::string FormatWidths(const TableControl& table)
{
    return JoinColumns(table, [&](int c) { return table.Column(c).width; });
}

std::string FormatSortMethods(const TableControl& table)
{
    return JoinColumns(table, [&](int c) { return table.Column(c).sortMethod; });
}

std::string FormatAlignments(const TableControl& table)
{
    return JoinColumns(table, [&](int c) { return AlignmentNumber(table.ColumnAlignment(c)); });
}

std::optional<std::vector<int>> ParseNumberList(std::string_view text)
{
    std::vector<int> numbers;
    if (text.empty())
        return numbers;
    while (true) {
        std::size_t comma = text.find(',');
        std::optional<int> number = ParseInt(text.substr(0, comma));
        if (!number)
            return std::nullopt;
        numbers.push_back(*number);
        if (comma == std::string_view::npos)
            break;
        text.remove_prefix(comma + 1);
    }
    return numbers;
}

FileRecord MakeFileRecord(const TableControl& table, const FileFormat& format, bool cellEditorMode)
{
    FileRecord record;
    record.Set("Widths", FormatWidths(table));
    record.Set("SortMethods", FormatSortMethods(table));
    record.Set("SortColumn", std::to_string(table.SortColumn()));
    record.Set("Align", FormatAlignments(table));
    // UTF-8 files carry a byte-order mark once saved, so the reader finds them without help.
    if (format.codePage != ost::kCodePageSystem && format.codePage != ost::kCodePageUtf8)
        record.Set("CodePage", std::to_string(format.codePage));
    if (table.FocusRow() >= 0 && table.FocusColumn() >= 0) {
        char focus[32];
        std::snprintf(focus, sizeof focus, "%d,%d", table.FocusRow(), table.FocusColumn());
        record.Set("FocusCell", focus);
    }
    int flags = 0;
    if (cellEditorMode)
        flags |= kFilePropertyCellEditor;
    if (format.delimitAllCells)
        flags |= kFilePropertyDelimitAll;
    if (table.SortColumn() >= 0 && !table.SortAscending())
        flags |= kFilePropertySortDescending;
    record.Set("Flags", std::to_string(flags));
    return record;
}

void ApplyFileRecord(const FileRecord& record, FilePropertiesTarget target)
{
    TableControl& table = target.table;
    if (const std::string* widths = record.Find("Widths")) {
        if (auto list = ParseNumberList(*widths)) {
            for (int c = 0; c < table.ColumnCount() && c < static_cast<int>(list->size()); ++c)
                table.MutableColumn(c).width = std::max((*list)[c], kMinColumnWidth);
        }
    }
    if (const std::string* methods = record.Find("SortMethods")) {
        if (auto list = ParseNumberList(*methods)) {
            for (int c = 0; c < table.ColumnCount() && c < static_cast<int>(list->size()); ++c)
                if ((*list)[c] >= kSortTextNoCase && (*list)[c] <= kSortStoredValue)
                    table.SetColumnSortMethod(c, (*list)[c]);
        }
    }
    int flags = 0;
    if (const std::string* text = record.Find("Flags"))
        flags = ParseInt(*text).value_or(0);
    if (flags & kFilePropertyDelimitAll)
        target.format.delimitAllCells = true;
    if (const std::string* text = record.Find("SortColumn")) {
        std::optional<int> column = ParseInt(*text);
        if (column && *column >= 0 && *column < table.ColumnCount())
            table.SetSort(*column, (flags & kFilePropertySortDescending) == 0);
    }
    if (const std::string* text = record.Find("FocusCell")) {
        if (auto cell = ParseNumberList(*text); cell && cell->size() == 2)
            table.SetFocusCell((*cell)[0], (*cell)[1]);
    }
    if (const std::string* align = record.Find("Align")) {
        if (auto list = ParseNumberList(*align)) {
            for (int c = 1; c < table.ColumnCount() && c < static_cast<int>(list->size()); ++c) {
                int a = (*list)[c];
                table.SetColumnAlignment(c, a == 1   ? Alignment::Center
                                            : a == 2 ? Alignment::Right
                                                     : Alignment::Left);
            }
        }
    }
    if ((flags & kFilePropertyCellEditor) && table.FocusRow() >= 0 && table.FocusColumn() >= 0)
        target.cellEditorMode = true;
}

void StoreFileProperties(FileHistory& history, const TableControl& table, const FileFormat& format,
                         bool cellEditorMode)
{
    if (format.path.empty())
        return;
    history.Put(format.path, MakeFileRecord(table, format, cellEditorMode));
    history.Trim(FileHistory::kMaxEntries);
}

bool RestoreFileProperties(const FileHistory& history, FilePropertiesTarget target)
{
    const FileRecord* record = history.Find(target.format.path);
    if (!record)
        return false;
    ApplyFileRecord(*record, target);
    return true;
}

void StoreFileProperties(FileHistory& history, const TableDocument& document, bool cellEditorMode)
{
    StoreFileProperties(history, document.Table(), document.Format(), cellEditorMode);
}

bool RestoreFileProperties(const FileHistory& history, TableDocument& document, FileFormat& format,
                           bool& cellEditorMode)
{
    return RestoreFileProperties(history, {document.Table(), format, cellEditorMode});
}

std::optional<std::uint32_t> RememberedCodePage(const FileHistory& history, std::string_view path)
{
    const FileRecord* record = history.Find(path);
    if (!record)
        return std::nullopt;
    const std::string* text = record->Find("CodePage");
    if (!text)
        return std::nullopt;
    std::optional<int> codePage = ParseInt(*text);
    if (!codePage || *codePage < 0)
        return std::nullopt;
    return static_cast<std::uint32_t>(*codePage);
}

std::vector<LabelledValue> CharacterSetChoices()
{
    std::vector<LabelledValue> choices{{"8-bit ASCII (System Default)", 0},
                                       {"UTF-8 (Unicode)", 65001}};
    for (unsigned codePage : ost::AvailableCodePages()) {
        if (codePage == 0 || codePage == 65001 || codePage == 65000)
            continue;
        std::string name = ost::CodePageDisplayName(codePage);
        if (name.empty())
            name = std::to_string(codePage);
        choices.push_back({name, static_cast<int>(codePage)});
    }
    return choices;
}

std::vector<LabelledValue> SeparatorChoices()
{
    return {{",", 44}, {";", 59}, {"|", 124}, {"tab", 9}};
}

FilePropertiesRequest MakeFilePropertiesRequest(const FileFormat& format)
{
    FilePropertiesRequest request;
    request.codePage = format.codePage;
    request.separator = ',';
    for (const LabelledValue& choice : SeparatorChoices())
        if (choice.value == static_cast<unsigned char>(format.separator))
            request.separator = choice.value;
    request.newline = 0;
    for (int i = 0; i < static_cast<int>(std::size(kNewlineChoices)); ++i)
        if (format.newline == kNewlineChoices[i].newline)
            request.newline = i;
    request.noColumnNames = format.noColumnNames;
    request.delimitAllCells = format.delimitAllCells;
    return request;
}

int ApplyFilePropertiesRequest(const FilePropertiesRequest& request, FileFormat& format,
                               int textMode, TableControl& table)
{
    format.separator = static_cast<char>(request.separator);
    format.noColumnNames = request.noColumnNames;
    format.delimitAllCells = request.delimitAllCells;
    if (request.newline >= 0 && request.newline < static_cast<int>(std::size(kNewlineChoices)))
        format.newline = kNewlineChoices[request.newline].newline;
    format.codePage = request.codePage;
    const int newMode = request.codePage != ost::kCodePageSystem ? 1 : 0;
    if (newMode != textMode)
        ConvertTextMode(table, textMode, newMode, request.codePage);
    return newMode;
}

void ConvertTextMode(TableControl& table, int fromTextMode, int toTextMode, std::uint32_t codePage)
{
    if (fromTextMode == toTextMode)
        return;
    // Going wide, the 8-bit cells are read as the chosen code page: the user is saying what the
    // file's bytes really are. Going narrow, the cells take the system code page, the only one
    // 8-bit cells are ever in.
    const bool toWide = toTextMode != 0;
    ost::CodePageConverter converter(toWide ? codePage : ost::kCodePageSystem);
    std::u16string wide;
    std::string narrow;
    for (int c = 1; c < table.ColumnCount(); ++c) {
        TableColumn& column = table.MutableColumn(c);
        if (toWide) {
            converter.ToUtf16(column.headerText, wide);
            column.headerTextWide = wide;
            column.headerText.clear();
            column.wide = true;
        } else {
            converter.FromUtf16(column.headerTextWide, narrow, '?');
            column.headerText = narrow;
            column.headerTextWide.clear();
            column.wide = false;
        }
        for (int row = 0; row < table.RowCount(); ++row) {
            if (toWide) {
                converter.ToUtf16(table.CellText8(row, c), wide);
                table.SetCellText16(row, c, wide);
            } else {
                converter.FromUtf16(table.CellText16(row, c), narrow, '?');
                table.SetCellText8(row, c, narrow);
            }
        }
    }
    table.Redraw();
}

std::vector<LabelledValue> NewFileSeparatorChoices()
{
    return {{"Commas", 44}, {"Tabs", 9}, {"Semi-colons", 59}, {"Vertical bars", 124}};
}

std::vector<LabelledValue> NewFileEncodingChoices()
{
    return {{"ASCII (8-bit characters)", 0}, {"UTF-8 (16-bit characters)", 1}};
}

FileFormat NewFileFormat(const NewFileRequest& request)
{
    FileFormat format;
    format.codePage = ost::kCodePageSystem;
    format.quiet = false;
    format.noColumnNames = false;
    format.backslashEscape = false;
    format.ignoreComments = false;
    format.delimitAllCells = false;
    format.newline = "\r\n";
    format.separator = static_cast<char>(request.separator);
    return format;
}

} // namespace quirnel
