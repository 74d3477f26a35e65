#pragma once
// The grid's cell store, private to view/: packed 64-bit cell references, one array per data
// column, into immutable text chunks, plus the per-row arrays (display order, positions, flags).
//
// A cell reference, from the top bit down:
//   63      text is UTF-16
//   62      checked (two-state cells)
//   61..50  chunk id: 0 none (empty text), kLongChunk a long text, kValueChunk an integer
//   49..18  offset in the chunk, in code units (for kLongChunk the long-text index, for
//           kValueChunk the 32-bit value)
//   17..0   length in code units
// So an empty 8-bit cell is 0, and copying a cell is copying its reference.

#include "view/table_control.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace quirnel::detail {

inline constexpr std::uint64_t kWideBit = 1ull << 63;
inline constexpr std::uint64_t kCheckedBit = 1ull << 62;
inline constexpr int kChunkShift = 50;
inline constexpr std::uint64_t kChunkMask = 0xFFF;
inline constexpr int kOffsetShift = 18;
inline constexpr std::uint64_t kOffsetMask = 0xFFFFFFFFull;
inline constexpr std::uint64_t kLengthMask = (1ull << 18) - 1;
inline constexpr std::uint32_t kLongChunk = 0xFFF;
inline constexpr std::uint32_t kValueChunk = 0xFFE;
inline constexpr std::uint32_t kLastTextChunk = 0xFFD;

inline constexpr std::uint8_t kRowSelected = 1;
inline constexpr std::uint8_t kRowHidden = 2;
inline constexpr std::uint8_t kRowDoomed = 0x80;

inline std::uint32_t ChunkOf(std::uint64_t ref)
{
    return static_cast<std::uint32_t>((ref >> kChunkShift) & kChunkMask);
}
inline std::uint64_t OffsetOf(std::uint64_t ref)
{
    return (ref >> kOffsetShift) & kOffsetMask;
}
inline std::size_t LengthOf(std::uint64_t ref)
{
    return static_cast<std::size_t>(ref & kLengthMask);
}
inline bool IsWide(std::uint64_t ref)
{
    return (ref & kWideBit) != 0;
}
inline std::uint64_t MakeRef(bool wide, std::uint32_t chunk, std::uint64_t offset,
                             std::uint64_t length)
{
    return (wide ? kWideBit : 0) | (static_cast<std::uint64_t>(chunk) << kChunkShift) |
           (offset << kOffsetShift) | length;
}

/// Immutable text chunks and the long-text side table. Text once stored never moves, so
/// views handed out stay valid until Clear().
class TextPool
{
public:
    TextPool();
    ~TextPool();

    std::uint64_t Store8(std::string_view text);
    std::uint64_t Store16(std::u16string_view text);
    /// Room for a new UTF-16 text of `units` units, which the caller fills through `out`
    /// before anything else is stored; Store16 without the copy.
    std::uint64_t Allocate16(std::size_t units, char16_t*& out);
    /// A reference into an adopted buffer, or a copy when the text lies outside it.
    std::uint64_t Borrow8(int handle, std::string_view text);
    int Adopt(std::shared_ptr<const std::string> buffer);
    /// The adopted buffer `handle` as [base, base + size); false for any other handle.
    bool AdoptedBuffer(int handle, const char*& base, std::size_t& size) const;
    void Reserve16(std::size_t units);
    void Clear();
    /// Lets go of text no cell refers to: buffers without cells, arena blocks that are mostly
    /// edited-over copies (their live text moves to new blocks) and dropped long texts.
    /// Rewrites the references in `cells`.
    void Compact(std::vector<std::vector<std::uint64_t>>& cells);

    std::string_view View8(std::uint64_t ref) const
    {
        std::uint32_t chunk = ChunkOf(ref);
        if (chunk == 0 || chunk == kValueChunk || IsWide(ref))
            return {};
        if (chunk == kLongChunk)
            return m_long8[OffsetOf(ref)];
        return {static_cast<const char*>(m_bases[chunk]) + OffsetOf(ref), LengthOf(ref)};
    }
    std::u16string_view View16(std::uint64_t ref) const
    {
        std::uint32_t chunk = ChunkOf(ref);
        if (chunk == 0 || chunk == kValueChunk || !IsWide(ref))
            return {};
        if (chunk == kLongChunk)
            return m_long16[OffsetOf(ref)];
        return {static_cast<const char16_t*>(m_bases[chunk]) + OffsetOf(ref), LengthOf(ref)};
    }

    std::size_t ArenaBytes() const;
    std::size_t AdoptedBytes() const;
    std::size_t LongBytes() const;

private:
    struct Chunk;
    std::uint32_t NewChunk();
    std::uint32_t ArenaWithRoom(bool wide, std::size_t units);

    std::vector<Chunk> m_chunks;
    /// m_bases[id] is chunk id's first byte; kept apart so a lookup touches one small array.
    std::vector<const void*> m_bases;
    std::uint32_t m_arena8 = 0;
    std::uint32_t m_arena16 = 0;
    std::size_t m_arenaTotal = 0;
    std::vector<std::string> m_long8;
    std::vector<std::u16string> m_long16;
    /// Ids of released chunks, reused before new ones are numbered.
    std::vector<std::uint32_t> m_freeIds;
};

} // namespace quirnel::detail

namespace quirnel {

struct TableControl::Storage
{
    /// cells[c - 1][row] for data column c.
    std::vector<std::vector<std::uint64_t>> cells;
    /// order[position] = row; position[row] = its display position.
    std::vector<std::int32_t> order;
    std::vector<std::int32_t> position;
    std::vector<std::uint8_t> flags;
    detail::TextPool pool;
    /// Rows were shown again on a sorted table while the redraw was deferred: they need a
    /// real sort to find their places.
    bool needsResort = false;
    bool orderDirty = false;
};

} // namespace quirnel
