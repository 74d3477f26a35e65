#include "document/csv_parallel_reader.h"

#include "document/csv_record_reader.h"
#include "view/table_control.h"

#include <algorithm>
#include <chrono>
#include <climits>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace quirnel {

namespace {

std::size_t CountQuoteMarks(const char* p, const char* end)
{
    std::size_t count = 0;
#if defined(__SSE2__)
    // Byte counters of matches, summed into the total before any of them can overflow.
    const __m128i quote = _mm_set1_epi8('"');
    while (end - p >= 16) {
        __m128i counters = _mm_setzero_si128();
        for (int round = 0; round < 255 && end - p >= 16; ++round, p += 16) {
            const __m128i block = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
            counters = _mm_sub_epi8(counters, _mm_cmpeq_epi8(block, quote));
        }
        const __m128i sums = _mm_sad_epu8(counters, _mm_setzero_si128());
        count += static_cast<std::size_t>(_mm_cvtsi128_si32(sums)) +
                 static_cast<std::size_t>(_mm_cvtsi128_si32(_mm_srli_si128(sums, 8)));
    }
#endif
    for (; p != end; ++p)
        count += *p == '"' ? 1 : 0;
    return count;
}

/// A text length for the column widths, which only compare it with a few dozen characters.
int Length(std::size_t size)
{
    return static_cast<int>(std::min<std::size_t>(size, INT_MAX));
}

} // namespace

struct ParallelRecordReader::Slot
{
    ParsedPiece piece;
    /// The piece it holds, once a worker has read it.
    std::size_t filled = SIZE_MAX;
};

ParallelRecordReader::ParallelRecordReader(const ParallelReadSetup& setup) : m_setup(setup)
{
    const std::size_t size = m_setup.data.size();
    m_setup.start = std::min(m_setup.start, size);
    m_setup.pieceBytes = std::max<std::size_t>(m_setup.pieceBytes, 1);
    m_setup.columns = std::max<std::size_t>(m_setup.columns, 1);
    const int threads = std::max(m_setup.threads, 1);
    const std::size_t span = size - m_setup.start;
    m_pieceCount = std::max<std::size_t>(1, (span + m_setup.pieceBytes - 1) / m_setup.pieceBytes);
    m_quotes.assign(m_pieceCount, 0);
    m_starts.assign(m_pieceCount + 1, size);
    // A few pieces ahead per worker keep them busy while the owner stores; more would only
    // hold memory.
    m_window = 2 * static_cast<std::size_t>(threads) + 2;
    for (std::size_t i = 0; i < m_window; ++i)
        m_slots.push_back(std::make_unique<Slot>());
    m_expected = SkipLineEnds(m_setup.start);
    m_threads.reserve(static_cast<std::size_t>(threads));
    for (int i = 0; i < threads; ++i)
        m_threads.emplace_back([this] { Work(); });
}

ParallelRecordReader::~ParallelRecordReader()
{
    Stop();
}

void ParallelRecordReader::Stop()
{
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_workerWake.notify_all();
    for (std::thread& thread : m_threads)
        if (thread.joinable())
            thread.join();
    m_threads.clear();
}

std::size_t ParallelRecordReader::SkipLineEnds(std::size_t position) const
{
    const std::string_view data = m_setup.data;
    while (position < data.size() && (data[position] == '\r' || data[position] == '\n'))
        ++position;
    return position;
}

void ParallelRecordReader::CountQuotes(std::size_t piece)
{
    const std::size_t from = m_setup.start + piece * m_setup.pieceBytes;
    const std::size_t to = std::min(from + m_setup.pieceBytes, m_setup.data.size());
    m_quotes[piece] = CountQuoteMarks(m_setup.data.data() + from, m_setup.data.data() + to);
}

void ParallelRecordReader::PlaceStarts()
{
    const std::string_view data = m_setup.data;
    std::vector<bool> quotedAtCut(m_pieceCount, false);
    bool quoted = false;
    for (std::size_t k = 0; k < m_pieceCount; ++k) {
        quotedAtCut[k] = quoted;
        quoted = quoted != (m_quotes[k] % 2 == 1);
    }
    // Each piece starts after the first line end past its cut that is outside quotes; a piece
    // without one is empty and starts where the next one does.
    m_starts[m_pieceCount] = data.size();
    for (std::size_t k = m_pieceCount - 1; k >= 1; --k) {
        const std::size_t cut = m_setup.start + k * m_setup.pieceBytes;
        const std::size_t next = std::min(cut + m_setup.pieceBytes, data.size());
        std::size_t start = m_starts[k + 1];
        bool inQuotes = quotedAtCut[k];
        for (std::size_t i = cut; i < next; ++i) {
            const char c = data[i];
            if (c == '"') {
                inQuotes = !inQuotes;
            } else if (!inQuotes && (c == '\r' || c == '\n')) {
                start = std::min(SkipLineEnds(i), start);
                break;
            }
        }
        m_starts[k] = start;
    }
    m_starts[0] = SkipLineEnds(m_setup.start);
}

void ParallelRecordReader::Work()
{
    for (;;) {
        std::size_t piece = 0;
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            if (m_stop)
                return;
            if (m_nextCount >= m_pieceCount)
                break;
            piece = m_nextCount++;
        }
        CountQuotes(piece);
        std::lock_guard<std::mutex> lock(m_mutex);
        if (++m_counted == m_pieceCount) {
            PlaceStarts();
            m_startsPlaced = true;
            m_workerWake.notify_all();
        }
    }
    for (;;) {
        std::size_t piece = 0;
        Slot* slot = nullptr;
        {
            std::unique_lock<std::mutex> lock(m_mutex);
            m_workerWake.wait(lock, [&] { return m_stop || m_startsPlaced; });
            if (m_stop || m_nextRead >= m_pieceCount)
                return;
            piece = m_nextRead++;
            m_workerWake.wait(lock, [&] { return m_stop || piece < m_joined + m_window; });
            if (m_stop)
                return;
            slot = m_slots[piece % m_window].get();
        }
        ReadPiece(m_starts[piece], m_starts[piece + 1], slot->piece);
        {
            std::lock_guard<std::mutex> lock(m_mutex);
            slot->filled = piece;
        }
        m_mainWake.notify_one();
    }
}

const ParsedPiece* ParallelRecordReader::Next(const std::function<bool()>& poll)
{
    const std::size_t piece = m_joined;
    if (piece >= m_pieceCount)
        return nullptr;
    Slot& slot = *m_slots[piece % m_window];
    {
        std::unique_lock<std::mutex> lock(m_mutex);
        while (!m_stop && slot.filled != piece) {
            if (m_mainWake.wait_for(lock, std::chrono::milliseconds(40),
                                    [&] { return slot.filled == piece; }))
                break;
            lock.unlock();
            const bool goOn = poll();
            lock.lock();
            if (!goOn)
                m_stop = true;
        }
        if (m_stop) {
            lock.unlock();
            Stop();
            return nullptr;
        }
    }
    // The guess was wrong: the piece before ended elsewhere. Read it again from there.
    if (slot.piece.start != m_expected)
        ReadPiece(m_expected, m_starts[piece + 1], slot.piece);
    return &slot.piece;
}

void ParallelRecordReader::Done()
{
    Slot& slot = *m_slots[m_joined % m_window];
    m_expected = SkipLineEnds(slot.piece.end);
    {
        std::lock_guard<std::mutex> lock(m_mutex);
        slot.filled = SIZE_MAX;
        ++m_joined;
    }
    m_workerWake.notify_all();
}

void ParallelRecordReader::ReadPiece(std::size_t from, std::size_t bound, ParsedPiece& out) const
{
    const unsigned flags = m_setup.flags;
    const std::size_t columns = m_setup.columns;
    CsvRecordReader reader(m_setup.data);
    reader.Seek(from);
    out.start = from;
    out.records = 0;
    out.packed.resize(columns);
    for (std::vector<std::uint64_t>& column : out.packed)
        column.clear();
    out.loose.clear();
    out.notes.clear();
    out.longest.assign(columns + 1, 0);
    out.bound = bound;
    // Fields that cleaning rewrites are cleaned here only to measure them.
    std::string scratch;
    std::vector<std::string> comments;
    std::vector<std::string>* const commentSink =
        (flags & CSV_IGNORE_COMMENTS) ? &comments : nullptr;
    const std::string_view separators(&m_setup.separator, 1);
    std::vector<std::string_view> raw;
    std::string_view record;
    while (SkipLineEnds(reader.Position()) < bound &&
           reader.ReadRecordRaw(record, raw, flags, separators, commentSink)) {
        const auto number = static_cast<std::uint32_t>(out.records);
        const std::size_t fields = raw.size();
        if (!comments.empty() || fields != columns) {
            ParsedRecordNote note;
            note.record = number;
            note.fields = static_cast<std::uint32_t>(std::min<std::size_t>(fields, UINT32_MAX));
            note.commentsBefore = !comments.empty();
            for (std::size_t i = columns; i < fields; ++i) {
                if (i > columns)
                    note.extra += ", ";
                note.extra += CsvRecordReader::UnquoteField(raw[i], flags);
            }
            out.notes.push_back(std::move(note));
            comments.clear();
        }
        const std::size_t stored = std::min(fields, columns);
        for (std::size_t i = 0; i < stored; ++i) {
            std::string_view cell;
            std::uint64_t packed = 0;
            if (CsvRecordReader::CleanWithoutRewrite(raw[i], flags, cell)) {
                packed = TableControl::PackBorrowed(m_setup.buffer, m_setup.bufferBase, cell);
                if (packed == kUnpackedCell)
                    out.loose.push_back({number, static_cast<std::uint32_t>(i + 1), cell, false});
            } else {
                scratch.assign(raw[i]);
                cell = CsvRecordReader::UnquoteInPlace(scratch.data(), scratch.size(), flags);
                out.loose.push_back({number, static_cast<std::uint32_t>(i + 1), raw[i], true});
                packed = kUnpackedCell;
            }
            out.packed[i].push_back(packed);
            const int length = Length(cell.size());
            if (length > out.longest[i + 1])
                out.longest[i + 1] = length;
        }
        for (std::size_t i = stored; i < columns; ++i)
            out.packed[i].push_back(0);
        ++out.records;
    }
    out.end = reader.Position();
}

} // namespace quirnel
