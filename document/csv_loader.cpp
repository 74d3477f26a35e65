#include "document/csv_loader.h"

#include "document/csv_parallel_reader.h"
#include "document/csv_record_reader.h"
#include "document/file_system.h"
#include "document/table_document.h"
#include "ostrand/codepage/code_page.h"
#include "ostrand/core/string.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>
#include <map>
#include <memory>
#include <thread>

#if defined(__linux__)
#include <sys/mman.h>
#include <unistd.h>
#endif

namespace quirnel {

namespace {

constexpr std::uint32_t kUtf16BigEndian = 1201;
constexpr std::uint32_t kUtf16LittleEndian = 1200;
constexpr std::uint32_t kUtf32LittleEndian = 12000;
constexpr std::uint32_t kUtf32BigEndian = 12001;

/// Records between two progress updates (and cancellation checks).
constexpr int kProgressInterval = 1024;

/// What one thread reads at a time: big enough that handing pieces over costs nothing, small
/// enough that the pieces waiting to be stored stay in the caches.
constexpr std::size_t kPieceBytes = 1 << 20;
/// Pieces read before the parallel load grows the table for the whole file.
constexpr std::size_t kEstimatePieces = 8;
/// At most this many reading threads, however many processors there are.
constexpr int kMaxThreads = 8;

bool IsUnicodeCodePage(std::uint32_t codePage)
{
    return codePage == kUtf16LittleEndian || codePage == kUtf16BigEndian ||
           codePage == kUtf32LittleEndian || codePage == kUtf32BigEndian;
}

/// A text length for the column widths, which only compare it with a few dozen characters.
int Length(std::size_t size)
{
    return static_cast<int>(std::min<std::size_t>(size, INT_MAX));
}

std::string Plural(std::size_t count)
{
    return count == 1 ? "" : "s";
}

/// Gives the whole pages of [data + from, data + to) back to the system once a stretch of
/// `kReleaseBytes` has been passed: they read as zeros afterwards. Returns where the next
/// release starts.
std::size_t ReleaseMemory(char* data, std::size_t from, std::size_t to)
{
    constexpr std::size_t kReleaseBytes = 32 << 20;
    if (to < from + kReleaseBytes)
        return from;
#if defined(__linux__)
    const auto page = static_cast<std::uintptr_t>(::sysconf(_SC_PAGESIZE));
    const auto begin = (reinterpret_cast<std::uintptr_t>(data + from) + page - 1) & ~(page - 1);
    const auto end = reinterpret_cast<std::uintptr_t>(data + to) & ~(page - 1);
    if (end > begin)
        ::madvise(reinterpret_cast<void*>(begin), end - begin, MADV_DONTNEED);
#else
    (void)data;
#endif
    return to;
}

/// Fails the load with a message unless the request is quiet.
bool Fail(TableDocument& document, const FileFormat& format, const std::string& title,
          const std::string& text)
{
    if (!format.quiet)
        document.Ui().Message(title, text, ost::MessageIcon::Error);
    return false;
}

/// Copies bytes into 16-bit units and returns all their bits or-ed together. The pointers never
/// overlap; saying so lets the loop run on whole vectors.
unsigned WidenBytes(const char* __restrict in, std::size_t count, char16_t* __restrict out)
{
    unsigned high = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const auto byte = static_cast<unsigned char>(in[i]);
        high |= byte;
        out[i] = byte;
    }
    return high;
}

/// Cells and names as the document holds them: the bytes as read in text mode 0, converted
/// from the code page in text mode 1.
class CellDecoder
{
public:
    CellDecoder(bool unicode, std::uint32_t codePage)
        : m_unicode(unicode), m_converter(unicode ? codePage : ost::kCodePageSystem)
    {
        std::u16string probe;
        const std::string_view ascii =
            " !\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJKLMNOPQRSTUVWXYZ"
            "[\\]^_`abcdefghijklmnopqrstuvwxyz{|}~\t\r\n";
        m_converter.ToUtf16(ascii, probe);
        m_asciiDecodes = probe == std::u16string(ascii.begin(), ascii.end());
    }

    /// Valid until the next call.
    std::u16string_view Wide(std::string_view bytes)
    {
        // Most cells are ASCII in every code page we read: widen them in the same pass that
        // checks them, and leave everything else to the converter.
        if (m_wide.size() < bytes.size())
            m_wide.resize(bytes.size() + 64);
        if (WidenBytes(bytes.data(), bytes.size(), m_wide.data()) < 0x80 && m_asciiDecodes)
            return std::u16string_view(m_wide.data(), bytes.size());
        m_converter.ToUtf16(bytes, m_converted);
        return m_converted;
    }

    /// Whether the bytes are ASCII text that this code page reads unit for unit, so that
    /// widening them is their conversion.
    bool WidensAsIs(std::string_view bytes) const
    {
        if (!m_asciiDecodes)
            return false;
        // Whole words at a time; a short text as two overlapping words inside it.
        const char* data = bytes.data();
        const std::size_t size = bytes.size();
        auto word64 = [](const char* at) {
            std::uint64_t word = 0;
            std::memcpy(&word, at, sizeof word);
            return word;
        };
        auto word32 = [](const char* at) {
            std::uint32_t word = 0;
            std::memcpy(&word, at, sizeof word);
            return word;
        };
        if (size >= 8) {
            std::uint64_t high = word64(data + size - 8);
            for (std::size_t i = 0; i + 8 <= size; i += 8)
                high |= word64(data + i);
            return (high & 0x8080808080808080ull) == 0;
        }
        if (size >= 4)
            return ((word32(data) | word32(data + size - 4)) & 0x80808080u) == 0;
        unsigned high = 0;
        for (std::size_t i = 0; i < size; ++i)
            high |= static_cast<unsigned char>(data[i]);
        return high < 0x80;
    }

    /// The text as UTF-8 for warnings: 8-bit text stays as read.
    std::string ForMessage(std::string_view bytes)
    {
        if (!m_unicode)
            return std::string(bytes);
        return ost::Utf16ToUtf8(Wide(bytes));
    }

private:
    bool m_unicode;
    ost::CodePageConverter m_converter;
    /// Whether ASCII bytes stand for themselves in this code page (not so in EBCDIC pages).
    bool m_asciiDecodes = false;
    std::u16string m_wide;
    std::u16string m_converted;
};

} // namespace

std::string GeneratedColumnName(int n)
{
    std::string name(1, static_cast<char>('A' + n % 26));
    while (n > 25) {
        n = n / 26 - 1;
        name.insert(name.begin(), static_cast<char>('A' + n % 26));
    }
    return name;
}

std::string DetectNewline(std::string_view data)
{
    if (data.size() <= 1)
        return "\r\n";
    const char last = data[data.size() - 1];
    const char before = data[data.size() - 2];
    if (last == '\n')
        return before == '\r' ? "\r\n" : "\n";
    if (last == '\r')
        return before == '\n' ? "\n\r" : "\r";
    return "\r\n";
}

bool LoadCsvFile(TableDocument& document, FileFormat& format, const std::string& title,
                 const LoadLimits& limits, const LoadThreads& threads)
{
    if (!document.QueryRelease())
        return false;

    auto buffer = std::make_shared<std::string>();
    int error = 0;
    if (!document.Files().ReadWholeFile(format.path, *buffer, error))
        return Fail(document, format, title,
                    "Failed to load the CSV file.\r\n\r\n" + SystemErrorText(error));

    const std::string_view whole(*buffer);
    if (whole.starts_with("\xFE\xFF") || whole.starts_with("\xFF\xFE") ||
        IsUnicodeCodePage(format.codePage))
        return Fail(document, format, title,
                    "The file is in unicode.  Sorry, unicode is not yet supported.");
    std::size_t offset = 0;
    if (whole.starts_with("\xEF\xBB\xBF")) {
        offset = 3;
        format.codePage = ost::kCodePageUtf8;
    }
    const bool unicode = format.codePage != ost::kCodePageSystem;

    if (!format.ignoreComments && whole.size() > offset && whole[offset] == '#') {
        // Asked even when quiet: the answer changes what is loaded.
        const int answer = document.Ui().Message(
            "Ignore Comments?",
            "The file appears to contain comments that begin with the '#' character.  Do you "
            "want to ignore these comments (recommended)?  Please note that if you save the "
            "file, the comments will be lost.",
            ost::MessageIcon::Question, ost::kButtonYes | ost::kButtonNo);
        if (answer == ost::kButtonYes)
            format.ignoreComments = true;
    }
    unsigned flags = 0;
    if (format.backslashEscape)
        flags |= CSV_BACKSLASH_ESCAPE;
    if (format.ignoreComments)
        flags |= CSV_IGNORE_COMMENTS;

    CsvRecordReader reader(whole.substr(offset));
    const std::size_t firstRecordStart = reader.Position();
    std::vector<std::string> firstFields;
    // Comment lines before the first line are lost on saving like any others, so they are
    // collected too and reported with the first data record.
    std::vector<std::string> comments;
    std::vector<std::string>* const commentSink = format.ignoreComments ? &comments : nullptr;
    bool haveFirst = false;
    if (format.separator != kSeparatorAuto) {
        haveFirst = reader.ReadFields(firstFields, flags, std::string_view(&format.separator, 1),
                                      commentSink);
    } else {
        char detected = ',';
        haveFirst = reader.ReadFirstRecordDetecting(firstFields, flags, detected, commentSink);
        format.separator = detected;
    }
    format.newline = DetectNewline(whole);

    if (format.noColumnNames) {
        // The first record is read again as data, with the comments before it.
        reader.Seek(firstRecordStart);
        comments.clear();
    }
    if (!haveFirst || firstFields.empty())
        return Fail(document, format, title,
                    "No column names were detected on the first line of the file.");
    for (const std::string& field : firstFields)
        if (field.find("\r\n") != std::string::npos)
            return Fail(document, format, title,
                        "The file does not appear to be in valid CSV format.");
    if (firstFields.size() > static_cast<std::size_t>(limits.maxColumns))
        return Fail(document, format, title,
                    "Failed to load the CSV file.\r\n\r\nThe first line has more than " +
                        std::to_string(limits.maxColumns) +
                        " fields, the most that a table can hold as columns.");

    ost::UserInterface& ui = document.Ui();
    TableControl& table = document.Table();
    ui.BeginProgress("Opening " + FileNameOf(format.path));
    document.Clear();
    document.SetTextMode(unicode);
    CellDecoder decoder(unicode, format.codePage);
    for (std::size_t i = 0; i < firstFields.size(); ++i) {
        const std::string name =
            format.noColumnNames ? GeneratedColumnName(static_cast<int>(i)) : firstFields[i];
        const int column =
            unicode ? document.AddColumn({}, decoder.Wide(name)) : document.AddColumn(name);
        // Columns start narrow: the widths below only ever widen them.
        table.MutableColumn(column).width = kMinColumnWidth;
    }

    if (!format.noColumnNames) {
        std::map<std::string, int> counts;
        for (const std::string& name : firstFields)
            ++counts[name];
        for (const std::string& name : firstFields) {
            auto found = counts.find(name);
            if (found->second > 1) {
                document.AddWarning(std::to_string(found->second) +
                                        " columns have the same name: " + decoder.ForMessage(name),
                                    -1);
                found->second = 0;
            }
        }
    }

    const std::size_t columns = firstFields.size();
    const std::size_t size = reader.Size();
    char* const base = buffer->data() + offset;
    const TextBufferHandle handle = unicode ? -1 : table.AdoptTextBuffer(buffer);
    if (unicode)
        table.ReserveTextWide(size);
    std::vector<int> longest(columns + 1, 0);
    std::vector<std::string_view> raw;
    std::vector<std::string_view> cells;
    const char separator = format.separator;
    const std::string_view separators(&separator, 1);
    int recordNumber = 0;

    auto tooManyRecords = [&] {
        ui.EndProgress();
        document.Release();
        return Fail(document, format, title,
                    "Failed to load the CSV file.\r\n\r\nThe file has more than " +
                        std::to_string(limits.maxRecords) +
                        " rows, the most that a table can hold.");
    };
    auto cancelled = [&] {
        ui.EndProgress();
        document.Release();
        return false;
    };
    auto progress = [&](std::size_t position) {
        return ui.UpdateProgress(static_cast<double>(position) /
                                 static_cast<double>(std::max<std::size_t>(size, 1)));
    };
    // Rows for `record` and, by the bytes read so far, for the records still to come.
    auto growRows = [&](int record, std::size_t bytesRead) {
        const std::size_t perRecord =
            std::max<std::size_t>(1, bytesRead / static_cast<std::size_t>(record + 1));
        std::size_t estimate = (size - std::min(bytesRead, size)) / perRecord;
        if (record == 0)
            estimate /= 4;
        // Every growth copies every column, so an estimate just short of the end must not
        // be followed by many small ones: a little extra room, and at least an eighth more
        // rows each time. The end trims what is left over.
        else
            estimate =
                std::max(estimate + estimate / 16 + 16, static_cast<std::size_t>(record) / 8);
        // At least two rows; never past the most a table can hold.
        const auto room = static_cast<std::size_t>(limits.maxRecords - record);
        estimate = std::clamp<std::size_t>(estimate, std::min<std::size_t>(2, room), room);
        table.SetRowCount(record + static_cast<int>(estimate));
    };
    auto tooFew = [&](int record, std::size_t fields) {
        document.AddWarning("Row " + std::to_string(record + 1) + " only contains " +
                                std::to_string(fields) + " column" + Plural(fields) + ".",
                            record);
    };
    auto tooMany = [&](int record, std::size_t fields, std::string extra) {
        const std::size_t extraCount = fields - columns;
        document.AddWarning("Row " + std::to_string(record + 1) + " has " +
                                std::to_string(extraCount) + " extra column" + Plural(extraCount) +
                                ": ",
                            record, std::move(extra));
    };
    const char* const commentsWarning =
        "Comments were detected.  They will be lost if you save the file.";

    const int threadCount =
        threads.threads > 0
            ? threads.threads
            : std::clamp(static_cast<int>(std::thread::hardware_concurrency()), 1, kMaxThreads);
    // Converted text goes through the one converter and the table's arena: read on this
    // thread.
    const std::size_t pieceBytes = threads.pieceBytes > 0 ? threads.pieceBytes : kPieceBytes;
    const std::size_t dataStart = reader.Position();
    if (!unicode && threadCount > 1 && size - dataStart >= 2 * pieceBytes) {
        ParallelReadSetup setup;
        setup.data = whole.substr(offset);
        setup.start = dataStart;
        setup.flags = flags;
        setup.separator = separator;
        setup.columns = columns;
        setup.buffer = handle;
        setup.bufferBase = buffer->data();
        setup.threads = threadCount;
        setup.pieceBytes = pieceBytes;
        ParallelRecordReader pieces(setup);
        bool commentsPending = !comments.empty();
        std::vector<const std::uint64_t*> packed;
        bool stopped = false;
        const auto poll = [&] {
            stopped = !progress(pieces.Position());
            return !stopped;
        };
        while (const ParsedPiece* piece = pieces.Next(poll)) {
            if (piece->records > static_cast<std::size_t>(limits.maxRecords - recordNumber))
                return tooManyRecords();
            const int needed = recordNumber + static_cast<int>(piece->records);
            if (table.RowCount() < needed) {
                // Rows are grown once by an estimate from the first pieces, with a small
                // margin: the rows of a big file are its largest part after its text, and
                // room grown ahead is memory held. Early growths copy little.
                std::size_t rows = static_cast<std::size_t>(needed) * 2;
                if (piece->end - dataStart >= kEstimatePieces * pieceBytes) {
                    const std::size_t perRecord =
                        std::max<std::size_t>(1, piece->end / static_cast<std::size_t>(needed));
                    const std::size_t estimate = (size - std::min(piece->end, size)) / perRecord;
                    rows = static_cast<std::size_t>(needed) + estimate + estimate / 64 + 64;
                }
                table.SetRowCount(static_cast<int>(
                    std::clamp<std::size_t>(rows, static_cast<std::size_t>(needed),
                                            static_cast<std::size_t>(limits.maxRecords))));
            }
            // Comment lines before the first data record (or before the column names) are
            // reported with it, once.
            bool reportedFirst = false;
            if (commentsPending && piece->records != 0) {
                document.AddWarning(commentsWarning, -1);
                commentsPending = false;
                reportedFirst = true;
            }
            for (const ParsedRecordNote& note : piece->notes) {
                const int record = recordNumber + static_cast<int>(note.record);
                if (note.commentsBefore && !(reportedFirst && note.record == 0))
                    document.AddWarning(commentsWarning, -1);
                if (note.fields < columns && document.WarnTooFew())
                    tooFew(record, note.fields);
                if (note.fields > columns)
                    tooMany(record, note.fields, note.extra);
            }
            if (piece->records != 0) {
                packed.clear();
                for (const std::vector<std::uint64_t>& column : piece->packed)
                    packed.push_back(column.data());
                table.SetRowsPacked(recordNumber, static_cast<int>(piece->records), packed);
                for (const ParsedPiece::Loose& cell : piece->loose) {
                    const int row = recordNumber + static_cast<int>(cell.record);
                    const int column = static_cast<int>(cell.column);
                    const auto at = static_cast<std::size_t>(cell.text.data() - whole.data());
                    if (!cell.raw) {
                        table.SetCellText8(row, column, cell.text);
                    } else if (at - offset + cell.text.size() <= piece->bound) {
                        // Cleaned where it lies, as on one thread: no worker reads there now.
                        table.SetCellText8Borrowed(
                            row, column,
                            CsvRecordReader::UnquoteInPlace(buffer->data() + at, cell.text.size(),
                                                            flags),
                            handle);
                    } else {
                        table.SetCellText8(row, column,
                                           CsvRecordReader::UnquoteField(cell.text, flags));
                    }
                }
            }
            recordNumber += static_cast<int>(piece->records);
            for (std::size_t c = 1; c <= columns; ++c)
                longest[c] = std::max(longest[c], piece->longest[c]);
            const std::size_t reached = piece->end;
            pieces.Done();
            if (!progress(reached))
                return cancelled();
        }
        if (stopped)
            return cancelled();
    } else {
        std::string_view record;
        std::size_t released = 0;
        while (reader.ReadRecordRaw(record, raw, flags, separators, commentSink)) {
            // Row indices are ints: a record past the last row a table can hold is refused
            // rather than dropped.
            if (recordNumber == limits.maxRecords)
                return tooManyRecords();
            if (!comments.empty()) {
                document.AddWarning(commentsWarning, -1);
                comments.clear();
            }
            if (table.RowCount() <= recordNumber)
                growRows(recordNumber, reader.Position());
            const std::size_t fields = raw.size();
            if (fields < columns && document.WarnTooFew())
                tooFew(recordNumber, fields);
            if (fields > columns) {
                std::string extra;
                for (std::size_t i = columns; i < fields; ++i) {
                    if (i > columns)
                        extra += ", ";
                    extra += decoder.ForMessage(CsvRecordReader::UnquoteField(raw[i], flags));
                }
                tooMany(recordNumber, fields, std::move(extra));
            }
            const int stored = static_cast<int>(std::min(fields, columns));
            cells.resize(static_cast<std::size_t>(stored));
            for (int i = 0; i < stored; ++i) {
                // The field is cleaned where it lies: cleaning only ever shortens the text, and
                // the reader has already passed it.
                char* text = base + (raw[i].data() - whole.data() - offset);
                const std::string_view cell =
                    CsvRecordReader::UnquoteInPlace(text, raw[i].size(), flags);
                int length = 0;
                if (unicode) {
                    if (cell.empty())
                        continue;
                    if (decoder.WidensAsIs(cell)) {
                        // Widened straight into the table's own memory.
                        if (char16_t* units = table.NewCellText16(recordNumber, i + 1, cell.size()))
                            WidenBytes(cell.data(), cell.size(), units);
                        length = Length(cell.size());
                    } else {
                        const std::u16string_view wide = decoder.Wide(cell);
                        table.SetCellText16(recordNumber, i + 1, wide);
                        length = Length(wide.size());
                    }
                } else {
                    cells[static_cast<std::size_t>(i)] = cell;
                    length = Length(cell.size());
                }
                if (length > longest[i + 1])
                    longest[i + 1] = length;
            }
            if (!unicode)
                table.SetRowText8Borrowed(recordNumber, cells.data(), stored, handle);
            if (recordNumber % kProgressInterval == 0) {
                if (!progress(reader.Position()))
                    return cancelled();
                // Converted cells live in the table's own memory: the text read so far is
                // not needed any more, and giving it back keeps the file and its UTF-16 copy
                // from being held whole at once.
                if (unicode)
                    released = ReleaseMemory(buffer->data(), released, offset + reader.Position());
            }
            ++recordNumber;
        }
    }
    table.SetRowCount(recordNumber);

    DocumentHooks& hooks = document.Hooks();
    table.ApplyInitialWidths(longest, hooks.ScreenWidth(), hooks.ViewWidth());
    hooks.RestoreFileProperties(document, format);
    ui.EndProgress();
    table.Redraw();
    document.StoreFormat(format);
    document.SetFileOpen(true);
    document.SetModified(false);
    hooks.WarningsChanged();
    return true;
}

} // namespace quirnel
