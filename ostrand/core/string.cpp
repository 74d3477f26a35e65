#include "ostrand/core/string.h"

#include "ostrand/core/fatal.h"
#include "ostrand/core/out_of_memory.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace ost {

String::String(std::u16string_view text)
{
    Append(text);
}

String::String(const String& other)
{
    Append(other.View());
}

String::String(String&& other) noexcept
    : m_buffer(other.m_buffer), m_usedBytes(other.m_usedBytes),
      m_allocatedBytes(other.m_allocatedBytes)
{
    other.m_buffer = nullptr;
    other.m_usedBytes = 0;
    other.m_allocatedBytes = 0;
}

String& String::operator=(const String& other)
{
    if (this != &other) {
        Clear();
        Append(other.View());
    }
    return *this;
}

String& String::operator=(String&& other) noexcept
{
    if (this != &other) {
        std::free(m_buffer);
        m_buffer = other.m_buffer;
        m_usedBytes = other.m_usedBytes;
        m_allocatedBytes = other.m_allocatedBytes;
        other.m_buffer = nullptr;
        other.m_usedBytes = 0;
        other.m_allocatedBytes = 0;
    }
    return *this;
}

String::~String()
{
    std::free(m_buffer);
}

String String::FromUtf8(std::string_view utf8)
{
    return String(Utf8ToUtf16(utf8));
}

std::string String::ToUtf8() const
{
    return Utf16ToUtf8(View());
}

char16_t String::operator[](int index) const
{
    if (index < 0 || index >= Length())
        FatalError("String[%d]\r\nmax_index = %d", index, Length() - 1);
    return m_buffer[index];
}

void String::Reserve(std::int32_t allocatedBytes)
{
    if (allocatedBytes <= m_allocatedBytes)
        return;
    void* grown = std::realloc(m_buffer, static_cast<std::size_t>(allocatedBytes));
    if (!grown)
        OutOfMemory(static_cast<std::size_t>(allocatedBytes));
    m_buffer = static_cast<char16_t*>(grown);
    if (m_allocatedBytes == 0)
        m_buffer[0] = 0;
    m_allocatedBytes = allocatedBytes;
}

String& String::Append(std::u16string_view text)
{
    if (text.empty())
        return *this;
    const std::int64_t needed =
        static_cast<std::int64_t>(m_usedBytes) + static_cast<std::int64_t>(text.size()) * 2 + 2;
    if (needed > INT32_MAX)
        OutOfMemory(static_cast<std::size_t>(needed));
    if (needed > m_allocatedBytes) {
        // Grow by half again so that repeated appends stay linear.
        std::int64_t grown =
            std::max<std::int64_t>(needed, m_allocatedBytes + m_allocatedBytes / 2);
        Reserve(static_cast<std::int32_t>(std::min<std::int64_t>(grown, INT32_MAX - 1) & ~1));
    }
    std::memcpy(reinterpret_cast<char*>(m_buffer) + m_usedBytes, text.data(), text.size() * 2);
    m_usedBytes += static_cast<std::int32_t>(text.size() * 2);
    m_buffer[m_usedBytes / 2] = 0;
    return *this;
}

void String::Clear()
{
    if (m_buffer) {
        m_usedBytes = 0;
        m_buffer[0] = 0;
    }
}

int String::CheckRaw(const char16_t* buffer, std::int32_t usedBytes, std::int32_t allocatedBytes)
{
    if (usedBytes < 0)
        return 1;
    if (allocatedBytes < 0)
        return 2;
    if (buffer) {
        if (usedBytes > allocatedBytes - 2)
            return 5;
        if (buffer[usedBytes / 2] != 0)
            return 6;
        return 0;
    }
    if (usedBytes != 0)
        return 3;
    if (allocatedBytes != 0)
        return 4;
    return 0;
}

void String::ReportDamage(int code, std::int32_t usedBytes, std::int32_t allocatedBytes)
{
    FatalError("Damaged String (%d):\r\nused length=%d\r\nallocated length=%d", code, usedBytes,
               allocatedBytes);
}

void String::CheckOrDie() const
{
    if (const int code = Check())
        ReportDamage(code, m_usedBytes, m_allocatedBytes);
}

std::u16string Utf8ToUtf16(std::string_view in)
{
    std::u16string out;
    out.reserve(in.size());
    std::size_t i = 0;
    while (i < in.size()) {
        const unsigned char c = static_cast<unsigned char>(in[i]);
        if (c < 0x80) {
            out.push_back(c);
            ++i;
            continue;
        }
        int extra = 0;
        char32_t cp = 0;
        if ((c & 0xE0) == 0xC0) {
            extra = 1;
            cp = c & 0x1F;
        } else if ((c & 0xF0) == 0xE0) {
            extra = 2;
            cp = c & 0x0F;
        } else if ((c & 0xF8) == 0xF0) {
            extra = 3;
            cp = c & 0x07;
        } else {
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        if (i + extra >= in.size()) {
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        bool ok = true;
        for (int k = 1; k <= extra; ++k) {
            const unsigned char cc = static_cast<unsigned char>(in[i + k]);
            if ((cc & 0xC0) != 0x80) {
                ok = false;
                break;
            }
            cp = (cp << 6) | (cc & 0x3F);
        }
        const char32_t minimum[] = {0, 0x80, 0x800, 0x10000};
        if (!ok || cp < minimum[extra] || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) {
            out.push_back(0xFFFD);
            ++i;
            continue;
        }
        if (cp >= 0x10000) {
            cp -= 0x10000;
            out.push_back(static_cast<char16_t>(0xD800 + (cp >> 10)));
            out.push_back(static_cast<char16_t>(0xDC00 + (cp & 0x3FF)));
        } else {
            out.push_back(static_cast<char16_t>(cp));
        }
        i += extra + 1;
    }
    return out;
}

std::string Utf16ToUtf8(std::u16string_view in)
{
    std::string out;
    out.reserve(in.size());
    for (std::size_t i = 0; i < in.size(); ++i) {
        char32_t cp = in[i];
        if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < in.size() && in[i + 1] >= 0xDC00 &&
            in[i + 1] <= 0xDFFF) {
            cp = 0x10000 + ((cp - 0xD800) << 10) + (in[i + 1] - 0xDC00);
            ++i;
        } else if (cp >= 0xD800 && cp <= 0xDFFF) {
            cp = 0xFFFD;
        }
        AppendUtf8(static_cast<char32_t>(cp), out);
    }
    return out;
}

void AppendUtf8(char32_t c, std::string& out)
{
    if (c < 0x80) {
        out += static_cast<char>(c);
    } else if (c < 0x800) {
        out += static_cast<char>(0xC0 | (c >> 6));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else if (c < 0x10000) {
        out += static_cast<char>(0xE0 | (c >> 12));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    } else {
        out += static_cast<char>(0xF0 | (c >> 18));
        out += static_cast<char>(0x80 | ((c >> 12) & 0x3F));
        out += static_cast<char>(0x80 | ((c >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (c & 0x3F));
    }
}

} // namespace ost
