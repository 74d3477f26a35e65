#include "view/table_storage.h"

#include "ostrand/core/fatal.h"

#include <algorithm>

namespace quirnel::detail {

struct TextPool::Chunk
{
    std::shared_ptr<const std::string> adopted;
    std::unique_ptr<char[]> bytes;
    std::unique_ptr<char16_t[]> units;
    std::size_t capacity = 0; ///< code units
    std::size_t used = 0;
    bool wide = false;
};

namespace {

// Arena blocks grow with the text already stored, so a small table stays small and a big
// converted file needs few blocks.
constexpr std::size_t kMinArenaUnits = 64 * 1024;
constexpr std::size_t kMaxArenaUnits = 64 * 1024 * 1024;

} // namespace

TextPool::TextPool()
{
    Clear();
}

TextPool::~TextPool() = default;

void TextPool::Clear()
{
    m_chunks.clear();
    m_bases.clear();
    // Chunk 0 means "no text"; it is never filled.
    m_chunks.emplace_back();
    m_bases.push_back(nullptr);
    m_arena8 = 0;
    m_arena16 = 0;
    m_arenaTotal = 0;
    m_long8.clear();
    m_long16.clear();
    m_freeIds.clear();
}

std::uint32_t TextPool::NewChunk()
{
    if (!m_freeIds.empty()) {
        std::uint32_t id = m_freeIds.back();
        m_freeIds.pop_back();
        return id;
    }
    if (m_chunks.size() > kLastTextChunk)
        ost::FatalError("The table holds more text chunks than it can address (%zu).",
                        m_chunks.size());
    m_chunks.emplace_back();
    m_bases.push_back(nullptr);
    return static_cast<std::uint32_t>(m_chunks.size() - 1);
}

std::uint32_t TextPool::ArenaWithRoom(bool wide, std::size_t units)
{
    std::uint32_t& current = wide ? m_arena16 : m_arena8;
    if (current != 0) {
        const Chunk& chunk = m_chunks[current];
        if (chunk.capacity - chunk.used >= units)
            return current;
    }
    std::size_t size = std::clamp(m_arenaTotal / 2, kMinArenaUnits, kMaxArenaUnits);
    size = std::max(size, units);
    std::uint32_t id = NewChunk();
    Chunk& chunk = m_chunks[id];
    chunk.wide = wide;
    chunk.capacity = size;
    if (wide) {
        chunk.units.reset(new char16_t[size]);
        m_bases[id] = chunk.units.get();
    } else {
        chunk.bytes.reset(new char[size]);
        m_bases[id] = chunk.bytes.get();
    }
    m_arenaTotal += size * (wide ? 2 : 1);
    current = id;
    return id;
}

std::uint64_t TextPool::Store8(std::string_view text)
{
    if (text.empty())
        return 0;
    if (text.size() > kLengthMask) {
        m_long8.emplace_back(text);
        return MakeRef(false, kLongChunk, m_long8.size() - 1, 0);
    }
    std::uint32_t id = ArenaWithRoom(false, text.size());
    Chunk& chunk = m_chunks[id];
    std::copy(text.begin(), text.end(), chunk.bytes.get() + chunk.used);
    std::uint64_t ref = MakeRef(false, id, chunk.used, text.size());
    chunk.used += text.size();
    return ref;
}

std::uint64_t TextPool::Store16(std::u16string_view text)
{
    if (text.empty())
        return kWideBit;
    if (text.size() > kLengthMask) {
        m_long16.emplace_back(text);
        return MakeRef(true, kLongChunk, m_long16.size() - 1, 0);
    }
    std::uint32_t id = ArenaWithRoom(true, text.size());
    Chunk& chunk = m_chunks[id];
    std::copy(text.begin(), text.end(), chunk.units.get() + chunk.used);
    std::uint64_t ref = MakeRef(true, id, chunk.used, text.size());
    chunk.used += text.size();
    return ref;
}

std::uint64_t TextPool::Allocate16(std::size_t units, char16_t*& out)
{
    out = nullptr;
    if (units == 0)
        return kWideBit;
    if (units > kLengthMask) {
        m_long16.emplace_back(units, u'\0');
        out = m_long16.back().data();
        return MakeRef(true, kLongChunk, m_long16.size() - 1, 0);
    }
    std::uint32_t id = ArenaWithRoom(true, units);
    Chunk& chunk = m_chunks[id];
    out = chunk.units.get() + chunk.used;
    std::uint64_t ref = MakeRef(true, id, chunk.used, units);
    chunk.used += units;
    return ref;
}

int TextPool::Adopt(std::shared_ptr<const std::string> buffer)
{
    if (!buffer)
        return -1;
    std::uint32_t id = NewChunk();
    Chunk& chunk = m_chunks[id];
    m_bases[id] = buffer->data();
    chunk.capacity = buffer->size();
    chunk.used = buffer->size();
    chunk.adopted = std::move(buffer);
    return static_cast<int>(id);
}

bool TextPool::AdoptedBuffer(int handle, const char*& base, std::size_t& size) const
{
    if (handle <= 0 || static_cast<std::size_t>(handle) >= m_chunks.size())
        return false;
    const Chunk& chunk = m_chunks[static_cast<std::size_t>(handle)];
    if (!chunk.adopted)
        return false;
    base = chunk.adopted->data();
    size = chunk.capacity;
    return true;
}

std::uint64_t TextPool::Borrow8(int handle, std::string_view text)
{
    if (text.empty())
        return 0;
    if (handle > 0 && static_cast<std::size_t>(handle) < m_chunks.size()) {
        const Chunk& chunk = m_chunks[static_cast<std::size_t>(handle)];
        if (chunk.adopted) {
            const char* base = chunk.adopted->data();
            // Compared as addresses, since the text may come from anywhere.
            auto begin = reinterpret_cast<std::uintptr_t>(base);
            auto start = reinterpret_cast<std::uintptr_t>(text.data());
            if (start >= begin && start - begin <= chunk.capacity &&
                text.size() <= chunk.capacity - (start - begin) && text.size() <= kLengthMask &&
                start - begin <= kOffsetMask)
                return MakeRef(false, static_cast<std::uint32_t>(handle), start - begin,
                               text.size());
        }
    }
    return Store8(text);
}

void TextPool::Reserve16(std::size_t units)
{
    std::uint32_t current = m_arena16;
    if (current != 0 && m_chunks[current].capacity - m_chunks[current].used >= units)
        return;
    // A block of exactly the asked size, since the caller knows the total; offsets past
    // 32 bits cannot be packed, so a larger total continues in further blocks.
    std::uint32_t id = NewChunk();
    Chunk& chunk = m_chunks[id];
    chunk.wide = true;
    chunk.capacity = std::clamp<std::size_t>(units, 1, kOffsetMask);
    chunk.units.reset(new char16_t[chunk.capacity]);
    m_bases[id] = chunk.units.get();
    m_arenaTotal += chunk.capacity * 2;
    m_arena16 = id;
}

void TextPool::Compact(std::vector<std::vector<std::uint64_t>>& cells)
{
    const std::size_t chunkCount = m_chunks.size();
    std::vector<std::size_t> live(chunkCount, 0);
    std::vector<std::uint8_t> long8Live(m_long8.size(), 0);
    std::vector<std::uint8_t> long16Live(m_long16.size(), 0);
    for (const std::vector<std::uint64_t>& column : cells) {
        for (std::uint64_t ref : column) {
            std::uint32_t chunk = ChunkOf(ref);
            if (chunk == kLongChunk)
                (IsWide(ref) ? long16Live : long8Live)[OffsetOf(ref)] = 1;
            else if (chunk != 0 && chunk != kValueChunk)
                live[chunk] += LengthOf(ref);
        }
    }
    // Arena blocks less than half alive are copied out; adopted buffers are never copied,
    // only dropped once no cell points into them.
    std::vector<std::uint8_t> move(chunkCount, 0);
    bool anyMove = false;
    for (std::size_t id = 1; id < chunkCount; ++id) {
        Chunk& chunk = m_chunks[id];
        if (!m_bases[id])
            continue;
        if (chunk.adopted) {
            if (live[id] == 0) {
                chunk = Chunk{};
                m_bases[id] = nullptr;
                m_freeIds.push_back(static_cast<std::uint32_t>(id));
            }
        } else if (live[id] * 2 < chunk.used) {
            move[id] = 1;
            anyMove = true;
        }
    }
    std::vector<std::uint64_t> long8Index(m_long8.size(), 0);
    std::vector<std::uint64_t> long16Index(m_long16.size(), 0);
    {
        std::vector<std::string> kept8;
        for (std::size_t i = 0; i < m_long8.size(); ++i)
            if (long8Live[i]) {
                long8Index[i] = kept8.size();
                kept8.push_back(std::move(m_long8[i]));
            }
        m_long8.swap(kept8);
        std::vector<std::u16string> kept16;
        for (std::size_t i = 0; i < m_long16.size(); ++i)
            if (long16Live[i]) {
                long16Index[i] = kept16.size();
                kept16.push_back(std::move(m_long16[i]));
            }
        m_long16.swap(kept16);
    }
    if (anyMove) {
        // New text must not land in a block being emptied.
        if (move[m_arena8])
            m_arena8 = 0;
        if (move[m_arena16])
            m_arena16 = 0;
    }
    for (std::vector<std::uint64_t>& column : cells) {
        for (std::uint64_t& ref : column) {
            const std::uint32_t chunk = ChunkOf(ref);
            const std::uint64_t keep = ref & kCheckedBit;
            if (chunk == kLongChunk) {
                std::uint64_t index =
                    IsWide(ref) ? long16Index[OffsetOf(ref)] : long8Index[OffsetOf(ref)];
                ref = keep | MakeRef(IsWide(ref), kLongChunk, index, 0);
            } else if (chunk != 0 && chunk != kValueChunk && move[chunk]) {
                ref = keep | (IsWide(ref) ? Store16(View16(ref)) : Store8(View8(ref)));
            }
        }
    }
    for (std::size_t id = 1; id < chunkCount; ++id) {
        if (!move[id])
            continue;
        m_arenaTotal -= m_chunks[id].capacity * (m_chunks[id].wide ? 2 : 1);
        m_chunks[id] = Chunk{};
        m_bases[id] = nullptr;
        m_freeIds.push_back(static_cast<std::uint32_t>(id));
    }
}

std::size_t TextPool::ArenaBytes() const
{
    return m_arenaTotal;
}

std::size_t TextPool::AdoptedBytes() const
{
    std::size_t total = 0;
    for (const Chunk& chunk : m_chunks)
        if (chunk.adopted)
            total += chunk.adopted->capacity();
    return total;
}

std::size_t TextPool::LongBytes() const
{
    std::size_t total = 0;
    for (const std::string& text : m_long8)
        total += text.capacity();
    for (const std::u16string& text : m_long16)
        total += text.capacity() * 2;
    return total + m_chunks.capacity() * sizeof(Chunk) + m_bases.capacity() * sizeof(void*);
}

} // namespace quirnel::detail
