#pragma once
// Conversion between 8-bit text in a Windows code page number and UTF-16. Files name their
// encoding by those numbers (1252, 65001, ...), so the rest of the program speaks in them too.

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace ost {

inline constexpr unsigned kCodePageSystem = 0;
inline constexpr unsigned kCodePageUtf8 = 65001;

/// The character set that code page 0 stands for on this machine (e.g. "UTF-8", "CP1252").
std::string SystemCharset();

/// True when text in this code page can be converted here.
bool IsKnownCodePage(unsigned codePage);

/// A display name for a code page ("Western European (Windows-1252)"); "" when unknown.
std::string CodePageDisplayName(unsigned codePage);

/// The code pages offered in character-set lists, in display order (0 and 65001 excluded).
std::vector<unsigned> AvailableCodePages();

/// One converter per code page, reused across many fields: opening a conversion is costly.
/// Not thread-safe; make one per thread.
class CodePageConverter
{
public:
    explicit CodePageConverter(unsigned codePage);
    ~CodePageConverter();
    CodePageConverter(const CodePageConverter&) = delete;
    CodePageConverter& operator=(const CodePageConverter&) = delete;

    /// False for an unknown code page; every conversion then fails.
    bool IsValid() const;
    unsigned CodePage() const;

    /// Bytes to UTF-16. Undecodable bytes become U+FFFD. False only when the converter is
    /// invalid. `out` is replaced, not appended to.
    bool ToUtf16(std::string_view bytes, std::u16string& out);

    /// UTF-16 to bytes. Characters the code page lacks become `replacement`; `*replaced`
    /// (when given) tells whether that happened. False only when the converter is invalid.
    bool FromUtf16(std::u16string_view text, std::string& out, char replacement,
                   bool* replaced = nullptr);

private:
    struct Impl;
    std::unique_ptr<Impl> m_impl;
};

} // namespace ost
