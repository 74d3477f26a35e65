#include "editing/csv_file_transfer.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/csv_loader.h"
#include "document/csv_saver.h"
#include "document/table_document.h"
#include "editing/change_frame.h"
#include "editing/clipboard_rows.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "editing/utf8_cells.h"

#include <algorithm>
#include <numeric>

namespace quirnel {

namespace {

/// The folder of the open file, where a file dialog starts.
std::string FolderOfDocument(const TableDocument& document)
{
    const std::string& path = document.Path();
    const std::size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash);
}

/// The loaded file's names record and rows as UTF-8 records.
TextRecords RecordsOf(TableDocument& source)
{
    TextRecords records;
    const int columns = source.ColumnCount();
    const int rows = source.RowCount();
    records.Reserve(static_cast<std::size_t>(rows) + 1,
                    (static_cast<std::size_t>(rows) + 1) * static_cast<std::size_t>(columns));
    records.Add(DataColumnNamesUtf8(source));
    Utf8Cells cells(source);
    std::string scratch;
    for (int row = 0; row < rows; ++row) {
        std::vector<std::string> fields;
        fields.reserve(static_cast<std::size_t>(columns));
        for (int column = 1; column < columns; ++column)
            fields.emplace_back(cells.Get(row, column, scratch));
        records.Add(std::move(fields));
    }
    return records;
}

} // namespace

void ImportCsvFileCommand(ToolContext& context)
{
    TableDocument& document = context.document;
    TableControl& table = document.Table();
    const int id = cmd::kImportCsvFile;
    const std::string title(CommandLabel(id));
    if (CheckToolPreconditions(context, 0, title, CommandIconName(id)))
        return;
    context.host.CommitCellEdit();
    CsvFileRequest file;
    file.title = title;
    file.path = FolderOfDocument(document);
    if (!context.dialogs.ChooseCsvFile(file) || file.path.empty())
        return;

    // The file is read exactly as Open reads it, into a document of its own, so that the
    // table is untouched when the file cannot be read.
    TableDocument source(context.ui);
    source.SetFileSystem(document.Files());
    source.SetWarnTooFew(false);
    FileFormat format;
    format.path = file.path;
    if (!LoadCsvFile(source, format, title))
        return;
    const TextRecords records = RecordsOf(source);
    source.Clear();

    PasteMappingRequest mapping;
    mapping.title = title;
    mapping.tableColumns = DataColumnNamesUtf8(document);
    mapping.clipboardColumns.assign(records.MaxWidth(), std::string());
    for (std::size_t f = 0; f < records.Width(0); ++f)
        mapping.clipboardColumns[f] = records.Field(0, f);
    mapping.hasNames = true;
    if (mapping.clipboardColumns == mapping.tableColumns) {
        SameOrderMapping(mapping);
    } else {
        InitialMapping(mapping);
        if (!AskMapping(context, mapping))
            return;
    }
    const int at = table.RowCount();
    ChangeFrame frame(context);
    if (InsertMappedRecords(document, records, mapping.hasNames ? 1 : 0, mapping.mapping, at) == 0)
        return;
    frame.Done(0, at);
}

void ExportCsvFileCommand(ToolContext& context)
{
    TableDocument& document = context.document;
    const TableControl& table = document.Table();
    const std::string title = kExportCsvTitle;
    if (CheckToolPreconditions(context, 0, title, CommandIconName(cmd::kSaveFileAs)))
        return;
    context.host.CommitCellEdit();
    CsvFileRequest file;
    file.title = title;
    file.save = true;
    file.path = FolderOfDocument(document);
    if (!context.dialogs.ChooseCsvFile(file) || file.path.empty())
        return;

    // What is shown goes into a document of its own, which the saver then writes as any file:
    // temporary file, backups of a file that was there, replace.
    TableDocument target(context.ui);
    target.SetFileSystem(document.Files());
    target.SetBackupLevels(document.BackupLevels());
    FileFormat format = document.Format();
    format.path = file.path;
    format.noColumnNames = false;
    target.StoreFormat(format);
    const bool unicode = document.IsUnicode();
    target.SetTextMode(unicode);
    std::vector<int> columns;
    for (int column = 1; column < table.ColumnCount(); ++column) {
        if (table.Column(column).hidden)
            continue;
        columns.push_back(column);
        if (unicode)
            target.AddColumn({}, document.ColumnNameWide(column));
        else
            target.AddColumn(document.ColumnName(column));
    }
    const int rows = table.VisibleRowCount();
    target.SetRowCount(rows);
    for (int i = 0; i < rows; ++i) {
        const int row = table.RowAtViewIndex(i);
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const int to = static_cast<int>(c) + 1;
            if (unicode)
                target.SetCellText16(i, to, table.CellText16(row, columns[c]));
            else
                target.SetCellText8(i, to, table.CellText8(row, columns[c]));
        }
    }
    target.SetFileOpen(true);
    SaveCsvFile(target, file.path, title);
}

} // namespace quirnel
