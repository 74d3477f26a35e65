#include "document/csv_saver.h"

#include "document/backup_file.h"
#include "document/csv_writer.h"
#include "document/file_system.h"
#include "document/table_document.h"
#include "ostrand/codepage/code_page.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <condition_variable>
#include <cstring>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace quirnel {

namespace {

/// Collects records and hands them to the file in large pieces. After the first failed write
/// nothing more is written, but every record still reports the failure.
class FileRecordSink : public RecordSink
{
public:
    FileRecordSink(FileSystem& files, FileSystem::Handle handle)
        : m_files(files), m_handle(handle), m_buffer(new char[kCapacity])
    {}

    bool Write(std::string_view text) override
    {
        if (m_failed)
            return false;
        if (text.size() > kCapacity - m_used && !Flush())
            return false;
        if (text.size() > kCapacity) {
            int error = 0;
            if (!m_files.Write(m_handle, text.data(), text.size(), error))
                m_failed = true;
            return !m_failed;
        }
        if (!text.empty())
            std::memcpy(m_buffer.get() + m_used, text.data(), text.size());
        m_used += text.size();
        return m_used < kFlushSize || Flush();
    }

    /// Room for `size` more bytes, to be given back with Commit; nullptr after a failure or
    /// when the buffer could never hold that many (Write takes such a record instead).
    char* Room(std::size_t size)
    {
        if (m_failed || size > kCapacity)
            return nullptr;
        if (size > kCapacity - m_used && !Flush())
            return nullptr;
        return m_buffer.get() + m_used;
    }

    bool Commit(const char* end)
    {
        m_used = static_cast<std::size_t>(end - m_buffer.get());
        return m_used < kFlushSize || Flush();
    }

    bool Flush()
    {
        if (m_failed)
            return false;
        int error = 0;
        if (m_used != 0 && !m_files.Write(m_handle, m_buffer.get(), m_used, error))
            m_failed = true;
        m_used = 0;
        return !m_failed;
    }

private:
    /// Pieces of a few megabytes keep the system calls few; the spare room above the flush
    /// size takes most records whole without a flush in the middle of one.
    static constexpr std::size_t kFlushSize = 4 << 20;
    static constexpr std::size_t kCapacity = 5 << 20;
    FileSystem& m_files;
    FileSystem::Handle m_handle;
    std::unique_ptr<char[]> m_buffer;
    std::size_t m_used = 0;
    bool m_failed = false;
};

/// Whether a file that begins with this text would be taken for a UTF-16 file, which is refused,
/// or for a UTF-8 file with its mark. A first field that begins so is quoted, as any other field
/// that could not be read back as it is.
bool StartsWithByteOrderMark(std::string_view text)
{
    return text.starts_with("\xFE\xFF") || text.starts_with("\xFF\xFE") ||
           text.starts_with("\xEF\xBB\xBF");
}

/// Copies 16-bit units into bytes and returns all their bits or-ed together. The pointers
/// never overlap; saying so lets the loop run on whole vectors.
unsigned NarrowUnits(const char16_t* __restrict in, std::size_t count, char* __restrict out)
{
    unsigned high = 0;
    for (std::size_t i = 0; i < count; ++i) {
        high |= in[i];
        out[i] = static_cast<char>(in[i]);
    }
    return high;
}

/// Turns the document's cells into the file's bytes, remembering whether any character could
/// not be represented.
class CellEncoder
{
public:
    explicit CellEncoder(std::uint32_t codePage) : m_codePage(codePage), m_converter(codePage)
    {
        std::u16string ascii(0x80, u'\0');
        for (char16_t c = 0; c < 0x80; ++c)
            ascii[c] = c;
        std::string probe;
        bool replaced = false;
        m_converter.FromUtf16(ascii, probe, '?', &replaced);
        m_asciiEncodes = !replaced && probe == std::string(ascii.begin(), ascii.end());
    }

    bool Lossy() const { return m_lossy; }

    /// Converts one more text of the current record.
    void Add(std::u16string_view text)
    {
        if (m_asciiEncodes) {
            // Most cells are ASCII, which such a code page writes unit for unit and never
            // loses: narrow them in the pass that checks them, and convert only the rest.
            const std::size_t start = m_bytes.size();
            m_bytes.resize(start + text.size());
            if (NarrowUnits(text.data(), text.size(), m_bytes.data() + start) < 0x80) {
                m_ends.push_back(m_bytes.size());
                return;
            }
            m_bytes.resize(start);
        }
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
    /// Whether every ASCII character is written as its own byte (not so in EBCDIC pages).
    bool m_asciiEncodes = false;
};

/// Rows from this many up are built on every processor.
constexpr int kParallelSaveRows = 100000;
constexpr int kBlockRows = 8192;

/// A byte buffer that grows without clearing what it adds.
class ByteBlock
{
public:
    char* Room(std::size_t size)
    {
        if (m_capacity - m_used < size) {
            const std::size_t capacity = std::max(m_capacity * 2, m_used + size);
            std::unique_ptr<char[]> bigger(new char[capacity]);
            if (m_used)
                std::memcpy(bigger.get(), m_bytes.get(), m_used);
            m_bytes = std::move(bigger);
            m_capacity = capacity;
        }
        return m_bytes.get() + m_used;
    }
    void Commit(const char* end) { m_used = static_cast<std::size_t>(end - m_bytes.get()); }
    void Clear() { m_used = 0; }
    std::string_view Bytes() const { return {m_bytes.get(), m_used}; }

private:
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_capacity = 0;
    std::size_t m_used = 0;
};

/// Writes the rows of an 8-bit table in order, their records built in blocks of rows by
/// `threads` threads while this one hands the finished blocks to the sink. False when a write
/// failed.
bool WriteRowsInParallel(const TableControl& table, RecordSink& sink, int threads, int blockRows,
                         unsigned flags, unsigned firstRowFlags, char separator,
                         const std::string& newline)
{
    const int rows = table.RowCount();
    const auto cellCount = static_cast<std::size_t>(table.ColumnCount() - 1);
    const int blocks = (rows + blockRows - 1) / blockRows;
    // A few blocks ahead per thread; more would only hold memory.
    const int window = 2 * threads + 2;
    std::vector<ByteBlock> slots(static_cast<std::size_t>(window));
    std::vector<int> filled(static_cast<std::size_t>(window), -1);
    std::mutex mutex;
    std::condition_variable workerWake;
    std::condition_variable mainWake;
    int next = 0;
    int written = 0;
    auto work = [&] {
        std::vector<std::string_view> cells(cellCount);
        for (;;) {
            int block = 0;
            {
                std::unique_lock<std::mutex> lock(mutex);
                if (next >= blocks)
                    return;
                block = next++;
                workerWake.wait(lock, [&] { return block < written + window; });
            }
            ByteBlock& bytes = slots[static_cast<std::size_t>(block % window)];
            bytes.Clear();
            const int last = std::min(rows, (block + 1) * blockRows);
            for (int row = block * blockRows; row < last; ++row) {
                table.RowText8(row, cells.data());
                const std::size_t bound = RecordBound(cells.data(), cellCount, newline);
                bytes.Commit(PutRecord(bytes.Room(bound), row == 0 ? firstRowFlags : flags,
                                       cells.data(), cellCount, separator, newline));
            }
            {
                std::lock_guard<std::mutex> lock(mutex);
                filled[static_cast<std::size_t>(block % window)] = block;
            }
            mainWake.notify_one();
        }
    };
    std::vector<std::thread> workers;
    for (int i = 0; i < threads; ++i)
        workers.emplace_back(work);
    bool ok = true;
    for (int block = 0; block < blocks; ++block) {
        const auto slot = static_cast<std::size_t>(block % window);
        {
            std::unique_lock<std::mutex> lock(mutex);
            mainWake.wait(lock, [&] { return filled[slot] == block; });
        }
        ok = sink.Write(slots[slot].Bytes()) && ok;
        {
            std::lock_guard<std::mutex> lock(mutex);
            filled[slot] = -1;
            ++written;
        }
        workerWake.notify_all();
    }
    for (std::thread& worker : workers)
        worker.join();
    return ok;
}

} // namespace

bool SaveCsvFile(TableDocument& document, const std::string& path, const std::string& title,
                 const SaveThreads& threads)
{
    document.Hooks().CommitCellEdit();
    ost::UserInterface& ui = document.Ui();
    FileSystem& files = document.Files();

    std::string temporary;
    FileSystem::Handle handle = -1;
    int error = 0;
    // A link stays a link: the file it names is the one replaced, and its backups lie beside
    // that file.
    std::string target;
    bool created = files.ResolveLink(path, target, error) &&
                   files.CreateTempFile(FolderOf(target), temporary, handle, error);
    // The new file takes the place of the old one, so it has the old one's permissions from
    // the start: a private file must not become readable by others by being saved, not even
    // while it is written. A file saved for the first time keeps the default ones.
    if (created && !files.GivePermissions(handle, target, error) &&
        ClassifyError(error) != kErrorFileNotFound) {
        int ignored = 0;
        files.Close(handle, ignored);
        files.Remove(temporary, ignored);
        created = false;
    }
    if (!created) {
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
    // The file's first record decides how the file's first bytes are taken when it is read.
    bool firstRecord = format.codePage != ost::kCodePageUtf8;
    auto recordFlags = [&](const std::string_view* fields, std::size_t count) {
        if (!firstRecord || count == 0)
            return flags;
        firstRecord = false;
        return StartsWithByteOrderMark(fields[0]) ? flags | CSV_QUOTE_ALL : flags;
    };

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
        ok = WriteRecord(sink, recordFlags(fields.data(), fields.size()), fields, separator,
                         newline) &&
             ok;
        encoder.NextRecord();
    }
    // Rows go out in file order. Sorting and filtering only change how rows are shown; writing
    // the shown order would reorder the user's file and push filtered-out rows to its end.
    const int rows = table.RowCount();
    const int threadCount =
        threads.threads > 0 ? threads.threads
        : rows < kParallelSaveRows
            ? 1
            : std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, 8);
    if (!unicode && columns > 1 && threadCount > 1 && rows > 0) {
        std::vector<std::string_view> first(static_cast<std::size_t>(columns - 1));
        table.RowText8(0, first.data());
        const unsigned firstRowFlags = recordFlags(first.data(), first.size());
        ok = WriteRowsInParallel(table, sink, threadCount,
                                 threads.blockRows > 0 ? threads.blockRows : kBlockRows, flags,
                                 firstRowFlags, separator, newline) &&
             ok;
    } else if (!unicode && columns > 1) {
        // Each record is put straight into the sink's buffer; only one too large for it goes
        // through WriteRecord.
        std::vector<std::string_view> cells(static_cast<std::size_t>(columns - 1));
        for (int row = 0; row < rows; ++row) {
            table.RowText8(row, cells.data());
            const unsigned rowFlags = recordFlags(cells.data(), cells.size());
            const std::size_t bound = RecordBound(cells.data(), cells.size(), newline);
            if (char* room = sink.Room(bound)) {
                ok = sink.Commit(PutRecord(room, rowFlags, cells.data(), cells.size(), separator,
                                           newline)) &&
                     ok;
            } else {
                ok = WriteRecord(sink, rowFlags, cells, separator, newline) && ok;
            }
        }
    }
    for (int row = 0; row < rows && (unicode || columns <= 1); ++row) {
        fields.clear();
        for (int column = 1; column < columns; ++column) {
            if (unicode)
                encoder.Add(table.CellText16(row, column));
            else
                fields.push_back(table.CellText8(row, column));
        }
        if (unicode)
            encoder.Fields(fields);
        ok = WriteRecord(sink, recordFlags(fields.data(), fields.size()), fields, separator,
                         newline) &&
             ok;
        encoder.NextRecord();
    }
    ok = sink.Flush() && ok;
    ok = files.Close(handle, error) && ok;
    if (!ok) {
        ui.Message(title, "Failed to write the CSV file.", ost::MessageIcon::Error);
        files.Remove(temporary, error);
        return false;
    }

    // A failed backup does not stop the save; the backups are then as they were.
    BackupFile(files, target, "", document.BackupLevels(), 0, nullptr, nullptr, nullptr);

    std::string replaceError;
    if (!ReplaceFile(files, target, temporary, replaceError, 0)) {
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
