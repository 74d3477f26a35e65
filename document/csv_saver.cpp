#include "document/csv_saver.h"

#include "document/backup_file.h"
#include "document/csv_writer.h"
#include "document/file_system.h"
#include "document/table_document.h"
#include "ostrand/codepage/code_page.h"
#include "ostrand/core/user_interface.h"

#include <vector>

namespace quirnel {

namespace {

/// Collects records and hands them to the file in large pieces. After the first failed write
/// nothing more is written, but every record still reports the failure.
class FileRecordSink : public RecordSink
{
public:
    FileRecordSink(FileSystem& files, FileSystem::Handle handle) : m_files(files), m_handle(handle)
    {
        m_buffer.reserve(kFlushSize + 4096);
    }

    bool Write(std::string_view text) override
    {
        if (m_failed)
            return false;
        m_buffer.append(text);
        if (m_buffer.size() >= kFlushSize)
            return Flush();
        return true;
    }

    bool Flush()
    {
        if (m_failed)
            return false;
        int error = 0;
        if (!m_buffer.empty() && !m_files.Write(m_handle, m_buffer.data(), m_buffer.size(), error))
            m_failed = true;
        m_buffer.clear();
        return !m_failed;
    }

private:
    static constexpr std::size_t kFlushSize = 1 << 20;
    FileSystem& m_files;
    FileSystem::Handle m_handle;
    std::string m_buffer;
    bool m_failed = false;
};

/// Turns the document's cells into the file's bytes, remembering whether any character could
/// not be represented.
class CellEncoder
{
public:
    explicit CellEncoder(std::uint32_t codePage) : m_codePage(codePage), m_converter(codePage) {}

    bool Lossy() const { return m_lossy; }

    /// Converts one more text of the current record.
    void Add(std::u16string_view text)
    {
        if (m_codePage == ost::kCodePageUtf8) {
            m_converter.FromUtf16(text, m_piece, '?');
        } else {
            // Converted first with a byte that never appears in text, so that a loss shows in
            // the result; then again with the question mark the user will see.
            m_converter.FromUtf16(text, m_piece, '\x08');
            if (m_piece.find('\x08') != std::string::npos) {
                m_lossy = true;
                m_converter.FromUtf16(text, m_piece, '?');
            }
        }
        m_bytes += m_piece;
        m_ends.push_back(m_bytes.size());
    }

    /// The converted texts of the record, in order; valid until the next Add.
    void Fields(std::vector<std::string_view>& fields) const
    {
        fields.clear();
        std::size_t start = 0;
        for (std::size_t end : m_ends) {
            fields.emplace_back(m_bytes.data() + start, end - start);
            start = end;
        }
    }

    void NextRecord()
    {
        m_bytes.clear();
        m_ends.clear();
    }

private:
    std::uint32_t m_codePage;
    ost::CodePageConverter m_converter;
    /// One record's converted texts back to back; reused, so saving allocates little.
    std::string m_bytes;
    std::vector<std::size_t> m_ends;
    std::string m_piece;
    bool m_lossy = false;
};

} // namespace

bool SaveCsvFile(TableDocument& document, const std::string& path, const std::string& title)
{
    document.Hooks().CommitCellEdit();
    ost::UserInterface& ui = document.Ui();
    FileSystem& files = document.Files();

    std::string temporary;
    FileSystem::Handle handle = -1;
    int error = 0;
    if (!files.CreateTempFile(FolderOf(path), temporary, handle, error)) {
        ui.Message(title, "Failed to create the CSV file.\r\n\r\n" + SystemErrorText(error),
                   ost::MessageIcon::Error);
        return false;
    }
    if (document.Separator() == kSeparatorAuto)
        document.SetSeparator(',');
    const FileFormat& format = document.Format();
    const char separator = format.separator;
    const std::string newline = format.newline;
    unsigned flags = 0;
    if (format.backslashEscape)
        flags |= CSV_BACKSLASH_ESCAPE;
    if (format.delimitAllCells)
        flags |= CSV_QUOTE_ALL;

    FileRecordSink sink(files, handle);
    bool ok = true;
    if (format.codePage == ost::kCodePageUtf8)
        ok = sink.Write("\xEF\xBB\xBF");

    const bool unicode = document.IsUnicode();
    CellEncoder encoder(format.codePage);
    const TableControl& table = document.Table();
    const int columns = table.ColumnCount();
    std::vector<std::string_view> fields;
    fields.reserve(static_cast<std::size_t>(columns));
    if (!format.noColumnNames && columns > 1) {
        fields.clear();
        for (int column = 1; column < columns; ++column) {
            const TableColumn& c = table.Column(column);
            if (unicode)
                encoder.Add(c.wide ? std::u16string_view(c.headerTextWide) : std::u16string_view());
            else
                fields.push_back(c.headerText);
        }
        if (unicode)
            encoder.Fields(fields);
        ok = WriteRecord(sink, flags, fields, separator, newline) && ok;
        encoder.NextRecord();
    }
    // Rows go out in file order. Sorting and filtering only change how rows are shown; writing
    // the shown order would reorder the user's file and push filtered-out rows to its end.
    const int rows = table.RowCount();
    for (int row = 0; row < rows; ++row) {
        fields.clear();
        for (int column = 1; column < columns; ++column) {
            if (unicode)
                encoder.Add(table.CellText16(row, column));
            else
                fields.push_back(table.CellText8(row, column));
        }
        if (unicode)
            encoder.Fields(fields);
        ok = WriteRecord(sink, flags, fields, separator, newline) && ok;
        encoder.NextRecord();
    }
    ok = sink.Flush() && ok;
    ok = files.Close(handle, error) && ok;
    if (!ok) {
        ui.Message(title, "Failed to write the CSV file.", ost::MessageIcon::Error);
        files.Remove(temporary, error);
        return false;
    }

    // The new file takes the place of the old one, so it keeps the old one's permissions: a
    // private file must not become readable by others by being saved.
    FileInfo existing;
    if (files.Stat(path, existing, error) && existing.exists)
        files.CopyPermissions(path, temporary, error);

    // A failed backup does not stop the save; the backups are then as they were.
    BackupFile(files, path, "", document.BackupLevels(), 0, nullptr, nullptr, nullptr);

    std::string replaceError;
    if (!ReplaceFile(files, path, temporary, replaceError, 0)) {
        files.Remove(temporary, error);
        ui.Message(title, "Failed to replace the file.\r\n\r\n" + replaceError,
                   ost::MessageIcon::Error);
        return false;
    }
    document.SetPath(path);
    document.SetModified(false);
    if (encoder.Lossy())
        ui.Message("Warning",
                   "The file was saved successfully.  However, some unicode characters were "
                   "outside the file's character set and could not be converted.  Recommend you "
                   "choose \"File Properties\" from the File menu, change the Character Set to "
                   "\"UTF-8\", and re-save the file.",
                   ost::MessageIcon::Warning);
    return true;
}

} // namespace quirnel
