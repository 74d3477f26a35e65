#pragma once
// The framework's wide text string: UTF-16, with its lengths kept in bytes so that a damaged
// string can be recognised (the integrity check) before it is trusted.

#include <cstdint>
#include <string>
#include <string_view>

namespace ost {

class String
{
public:
    String() = default;
    String(std::u16string_view text);
    String(const char16_t* text) : String(std::u16string_view(text ? text : u"")) {}
    String(const String& other);
    String(String&& other) noexcept;
    String& operator=(const String& other);
    String& operator=(String&& other) noexcept;
    ~String();

    /// Converts UTF-8 to UTF-16; malformed bytes become U+FFFD.
    static String FromUtf8(std::string_view utf8);
    std::string ToUtf8() const;

    /// Characters (UTF-16 units), not bytes.
    int Length() const { return m_usedBytes / 2; }
    bool IsEmpty() const { return m_usedBytes == 0; }
    /// Never null: a string without a buffer reads as "".
    const char16_t* Data() const { return m_buffer ? m_buffer : u""; }
    std::u16string_view View() const { return {Data(), static_cast<std::size_t>(Length())}; }
    char16_t operator[](int index) const;

    String& Append(std::u16string_view text);
    String& operator+=(std::u16string_view text) { return Append(text); }
    void Clear();
    /// Grows the allocation to at least this many bytes (terminator included).
    void Reserve(std::int32_t allocatedBytes);

    bool operator==(const String& other) const { return View() == other.View(); }

    /// 0 when sound, else the damage code of the first broken invariant.
    int Check() const { return CheckRaw(m_buffer, m_usedBytes, m_allocatedBytes); }
    /// Fatal "Damaged String" report when Check() is not 0.
    void CheckOrDie() const;

    /// The integrity rules on raw fields, in the order they are checked: 1 used < 0,
    /// 2 allocated < 0, 5 no room for the terminator, 6 terminator missing, 3 no buffer but a
    /// used length, 4 no buffer but an allocated length.
    static int CheckRaw(const char16_t* buffer, std::int32_t usedBytes,
                        std::int32_t allocatedBytes);
    [[noreturn]] static void ReportDamage(int code, std::int32_t usedBytes,
                                          std::int32_t allocatedBytes);

private:
    char16_t* m_buffer = nullptr;
    std::int32_t m_usedBytes = 0;
    std::int32_t m_allocatedBytes = 0;
};

/// UTF-8 <-> UTF-16 without a code page; invalid input becomes U+FFFD.
std::u16string Utf8ToUtf16(std::string_view utf8);
std::string Utf16ToUtf8(std::u16string_view utf16);
/// Appends one code point (at most U+10FFFF, not a surrogate) as UTF-8.
void AppendUtf8(char32_t c, std::string& out);

} // namespace ost
