#include "ostrand/core/out_of_memory.h"

#include "ostrand/core/fatal.h"

#include <atomic>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <new>

namespace ost {
namespace {

std::atomic<bool> g_installed{false};
// A fixed buffer: when memory has run out, building the advice must not allocate.
char g_advice[512] = "";

constexpr int kDumpWords = 80;

// Reads the words above the two markers, which lie in the callers' frames. The sanitizers
// would call that an overflow of the local array, so they are told to look away here.
__attribute__((noinline, no_sanitize("address", "undefined"))) void
DumpStackWords(std::uint32_t* out)
{
    volatile std::uint32_t markers[2] = {0x11223344u, 0x55667788u};
    const volatile std::uint32_t* word = &markers[0];
    for (int i = 0; i < kDumpWords; ++i)
        out[i] = word[i];
}

} // namespace

void SetOutOfMemoryAdvice(std::string advice)
{
    std::snprintf(g_advice, sizeof g_advice, "%s", advice.c_str());
}

std::string FormatOutOfMemoryMessage(std::size_t requestedSize)
{
    char text[kFatalMessageCapacity];
    int used = std::snprintf(
        text, sizeof text,
        "%s.\r\nAdvice: %s\r\nRequested size = %u (0x%08X)\r\n\r\nStack contents:", "Out Of Memory",
        g_advice, static_cast<unsigned>(requestedSize), static_cast<unsigned>(requestedSize));
    std::uint32_t words[kDumpWords];
    DumpStackWords(words);
    for (int i = 0; i < kDumpWords && used > 0 && used < static_cast<int>(sizeof text); ++i) {
        // Ten lines of eight: a lone CR starts each line, a space separates the words.
        const char separator = (i % 8 == 0) ? '\r' : ' ';
        used += std::snprintf(text + used, sizeof text - used, "%c%08X", separator,
                              static_cast<unsigned>(words[i]));
    }
    return text;
}

void OutOfMemory(std::size_t requestedSize)
{
    const std::string message = FormatOutOfMemoryMessage(requestedSize);
    FatalError("%s", message.c_str());
}

void InstallOutOfMemoryHandler()
{
    g_installed = true;
}
bool OutOfMemoryHandlerInstalled()
{
    return g_installed;
}

} // namespace ost

// The allocator's failure path. std::set_new_handler is not told the size, so the
// replaceable global allocation functions are the place that knows it.
void* operator new(std::size_t size)
{
    if (void* p = std::malloc(size ? size : 1))
        return p;
    if (ost::OutOfMemoryHandlerInstalled())
        ost::OutOfMemory(size);
    throw std::bad_alloc();
}

void* operator new[](std::size_t size)
{
    return ::operator new(size);
}
void operator delete(void* p) noexcept
{
    std::free(p);
}
void operator delete[](void* p) noexcept
{
    std::free(p);
}
void operator delete(void* p, std::size_t) noexcept
{
    std::free(p);
}
void operator delete[](void* p, std::size_t) noexcept
{
    std::free(p);
}

// The nothrow forms come from the same heap as the deletes above: the standard library takes
// its temporary buffers (std::stable_sort) through them and gives them back through delete. A
// failure is theirs to handle, so they only return null.
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return std::malloc(size ? size : 1);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return std::malloc(size ? size : 1);
}
void operator delete(void* p, const std::nothrow_t&) noexcept
{
    std::free(p);
}
void operator delete[](void* p, const std::nothrow_t&) noexcept
{
    std::free(p);
}
