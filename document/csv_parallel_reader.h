#pragma once
// Reads the data records of a file held in memory on several threads. The text is cut into
// pieces that end at record boundaries; worker threads read the pieces with the one record
// reader and hand them back in file order, so that the thread that owns the document stores
// them exactly as if it had read every record itself.
//
// Where a piece starts is a guess: the first line end after its cut that an even number of
// quote marks since the start of the data puts outside quotes. A guess is checked against
// where the piece before it really ended; a wrong one (a quote mark inside an unquoted field,
// a backslash before a line end, a comment line) costs that piece being read again from the
// right place, never a different result. Workers never write into the text.

#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace quirnel {

/// A record whose fields are not one per column, or that comment lines came before.
struct ParsedRecordNote
{
    std::uint32_t record = 0; ///< within its piece
    std::uint32_t fields = 0;
    bool commentsBefore = false;
    /// The fields past the last column, cleaned and joined with ", ".
    std::string extra;
};

/// The records of one piece, in order.
struct ParsedPiece
{
    /// Where its first record's read began and where the read after its last one ended.
    std::size_t start = 0;
    std::size_t end = 0;
    std::size_t records = 0;
    /// packed[c - 1][r]: the cell of record r in column c as TableControl::PackBorrowed makes
    /// it; 0 where the record has no such field.
    std::vector<std::vector<std::uint64_t>> packed;
    /// Cells packed as kUnpackedCell, to be set as text: cleaned, or `raw` fields whose
    /// cleaning rewrites them, left to the caller.
    struct Loose
    {
        std::uint32_t record;
        std::uint32_t column; ///< from 1
        std::string_view text;
        bool raw;
    };
    std::vector<Loose> loose;
    std::vector<ParsedRecordNote> notes;
    /// The longest cell per column, indexed from 1 like the table's columns.
    std::vector<int> longest;
    /// Where the next piece's own read begins: no worker reads the text before it any more,
    /// so the owner may clean the piece's raw fields that end there in place.
    std::size_t bound = 0;
};

struct ParallelReadSetup
{
    /// The text records are read from, and where the first data record's read begins.
    std::string_view data;
    std::size_t start = 0;
    unsigned flags = 0;
    char separator = ',';
    std::size_t columns = 1;
    /// The buffer the cells are packed for: the table's handle and its first byte.
    int buffer = -1;
    const char* bufferBase = nullptr;
    int threads = 2;
    std::size_t pieceBytes = 1 << 20;
};

class ParallelRecordReader
{
public:
    explicit ParallelRecordReader(const ParallelReadSetup& setup);
    /// Stops the workers and waits for them.
    ~ParallelRecordReader();
    ParallelRecordReader(const ParallelRecordReader&) = delete;
    ParallelRecordReader& operator=(const ParallelRecordReader&) = delete;

    /// The next piece in file order, valid until Done. `poll` is called now and then while
    /// waiting and may stop the read by answering false. nullptr at the end of the data or
    /// once stopped.
    const ParsedPiece* Next(const std::function<bool()>& poll);
    /// Gives the piece Next returned back, for a worker to fill again.
    void Done();
    /// How far the pieces handed out so far reach into the data.
    std::size_t Position() const { return m_expected; }

private:
    struct Slot;
    void Work();
    void CountQuotes(std::size_t piece);
    void PlaceStarts();
    /// Reads from `from` until a record's read ends at or past `bound`.
    void ReadPiece(std::size_t from, std::size_t bound, ParsedPiece& out) const;
    std::size_t SkipLineEnds(std::size_t position) const;
    void Stop();

    ParallelReadSetup m_setup;
    std::size_t m_pieceCount = 0;
    std::size_t m_window = 0;
    /// Quote marks in each cut piece, then each piece's guessed start (one more at the end).
    std::vector<std::size_t> m_quotes;
    std::vector<std::size_t> m_starts;
    std::vector<std::unique_ptr<Slot>> m_slots;

    std::mutex m_mutex;
    std::condition_variable m_workerWake;
    std::condition_variable m_mainWake;
    bool m_stop = false;
    bool m_startsPlaced = false;
    std::size_t m_nextCount = 0;
    std::size_t m_counted = 0;
    std::size_t m_nextRead = 0;
    /// Pieces handed back by Done; a worker may read piece k once k < m_joined + m_window.
    std::size_t m_joined = 0;
    /// The boundary the next piece must start at, line ends skipped.
    std::size_t m_expected = 0;
    std::vector<std::thread> m_threads;
};

} // namespace quirnel
