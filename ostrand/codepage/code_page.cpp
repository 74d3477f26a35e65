#include "ostrand/codepage/code_page.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cerrno>
#include <cstdint>
#include <cstring>
#include <iconv.h>
#include <langinfo.h>

namespace ost {
namespace {

struct CodePageInfo
{
    unsigned codePage;
    /// iconv names to try in order; glibc builds differ in which aliases they carry.
    const char* names[2];
    const char* displayName;
    /// Whether character-set lists offer it: the Unicode forms are chosen by their own entries
    /// or make no sense for a file of 8-bit fields.
    bool listed;
};

// Ordered by number, which is the order of the character-set lists.
constexpr CodePageInfo kCodePages[] = {
    {437, {"CP437", "IBM437"}, "OEM United States (DOS-437)", true},
    {737, {"CP737", nullptr}, "Greek (DOS-737)", true},
    {775, {"CP775", "IBM775"}, "Baltic (DOS-775)", true},
    {850, {"CP850", "IBM850"}, "Western European (DOS-850)", true},
    {852, {"CP852", "IBM852"}, "Central European (DOS-852)", true},
    {855, {"CP855", "IBM855"}, "Cyrillic (DOS-855)", true},
    {857, {"CP857", "IBM857"}, "Turkish (DOS-857)", true},
    {858, {"CP858", "IBM858"}, "Western European (DOS-858)", true},
    {860, {"CP860", "IBM860"}, "Portuguese (DOS-860)", true},
    {861, {"CP861", "IBM861"}, "Icelandic (DOS-861)", true},
    {862, {"CP862", "IBM862"}, "Hebrew (DOS-862)", true},
    {863, {"CP863", "IBM863"}, "French Canadian (DOS-863)", true},
    {864, {"CP864", "IBM864"}, "Arabic (DOS-864)", true},
    {865, {"CP865", "IBM865"}, "Nordic (DOS-865)", true},
    {866, {"CP866", "IBM866"}, "Cyrillic (DOS-866)", true},
    {869, {"CP869", "IBM869"}, "Greek, Modern (DOS-869)", true},
    {874, {"CP874", "TIS-620"}, "Thai (Windows-874)", true},
    {932, {"CP932", "SHIFT_JIS"}, "Japanese (Shift-JIS)", true},
    {936, {"CP936", "GBK"}, "Chinese Simplified (GBK)", true},
    {949, {"CP949", "UHC"}, "Korean (Unified Hangul)", true},
    {950, {"CP950", "BIG5"}, "Chinese Traditional (Big5)", true},
    {1200, {"UTF-16LE", nullptr}, "Unicode (UTF-16)", false},
    {1201, {"UTF-16BE", nullptr}, "Unicode (UTF-16 Big-Endian)", false},
    {1250, {"CP1250", nullptr}, "Central European (Windows-1250)", true},
    {1251, {"CP1251", nullptr}, "Cyrillic (Windows-1251)", true},
    {1252, {"CP1252", nullptr}, "Western European (Windows-1252)", true},
    {1253, {"CP1253", nullptr}, "Greek (Windows-1253)", true},
    {1254, {"CP1254", nullptr}, "Turkish (Windows-1254)", true},
    {1255, {"CP1255", nullptr}, "Hebrew (Windows-1255)", true},
    {1256, {"CP1256", nullptr}, "Arabic (Windows-1256)", true},
    {1257, {"CP1257", nullptr}, "Baltic (Windows-1257)", true},
    {1258, {"CP1258", nullptr}, "Vietnamese (Windows-1258)", true},
    {1361, {"JOHAB", nullptr}, "Korean (Johab)", true},
    {10000, {"MACINTOSH", "MAC"}, "Western European (Mac)", true},
    {10007, {"MAC-CYRILLIC", "MACCYRILLIC"}, "Cyrillic (Mac)", true},
    {10029, {"MAC-CENTRALEUROPE", nullptr}, "Central European (Mac)", true},
    {12000, {"UTF-32LE", nullptr}, "Unicode (UTF-32)", false},
    {12001, {"UTF-32BE", nullptr}, "Unicode (UTF-32 Big-Endian)", false},
    {20127, {"ASCII", "US-ASCII"}, "US-ASCII", true},
    {20866, {"KOI8-R", nullptr}, "Cyrillic (KOI8-R)", true},
    {21866, {"KOI8-U", nullptr}, "Cyrillic (KOI8-U)", true},
    {28591, {"ISO-8859-1", nullptr}, "Western European (ISO-8859-1)", true},
    {28592, {"ISO-8859-2", nullptr}, "Central European (ISO-8859-2)", true},
    {28593, {"ISO-8859-3", nullptr}, "Latin 3 (ISO-8859-3)", true},
    {28594, {"ISO-8859-4", nullptr}, "Baltic (ISO-8859-4)", true},
    {28595, {"ISO-8859-5", nullptr}, "Cyrillic (ISO-8859-5)", true},
    {28596, {"ISO-8859-6", nullptr}, "Arabic (ISO-8859-6)", true},
    {28597, {"ISO-8859-7", nullptr}, "Greek (ISO-8859-7)", true},
    {28598, {"ISO-8859-8", nullptr}, "Hebrew (ISO-8859-8)", true},
    {28599, {"ISO-8859-9", nullptr}, "Turkish (ISO-8859-9)", true},
    {28600, {"ISO-8859-10", nullptr}, "Nordic (ISO-8859-10)", true},
    {28601, {"ISO-8859-11", nullptr}, "Thai (ISO-8859-11)", true},
    {28603, {"ISO-8859-13", nullptr}, "Estonian (ISO-8859-13)", true},
    {28604, {"ISO-8859-14", nullptr}, "Celtic (ISO-8859-14)", true},
    {28605, {"ISO-8859-15", nullptr}, "Latin 9 (ISO-8859-15)", true},
    {28606, {"ISO-8859-16", nullptr}, "South-Eastern European (ISO-8859-16)", true},
    {50220, {"ISO-2022-JP", nullptr}, "Japanese (JIS)", true},
    {50225, {"ISO-2022-KR", nullptr}, "Korean (ISO-2022-KR)", true},
    {51932, {"EUC-JP", nullptr}, "Japanese (EUC)", true},
    {51936, {"EUC-CN", "GB2312"}, "Chinese Simplified (EUC)", true},
    {51949, {"EUC-KR", nullptr}, "Korean (EUC)", true},
    {54936, {"GB18030", nullptr}, "Chinese Simplified (GB18030)", true},
    {65000, {"UTF-7", nullptr}, "Unicode (UTF-7)", false},
    {65001, {"UTF-8", nullptr}, "Unicode (UTF-8)", false},
};

const CodePageInfo* FindInfo(unsigned codePage)
{
    for (const CodePageInfo& info : kCodePages)
        if (info.codePage == codePage)
            return &info;
    return nullptr;
}

// char16_t in memory is the host's byte order, so iconv must produce exactly that.
constexpr const char* kUtf16Native =
    std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";

const iconv_t kNoIconv = reinterpret_cast<iconv_t>(-1);

bool SameCharsetName(const std::string& name, const char* wanted)
{
    if (name.size() != std::strlen(wanted))
        return false;
    for (size_t i = 0; i < name.size(); ++i) {
        char c = name[i];
        if (c >= 'a' && c <= 'z')
            c = static_cast<char>(c - 'a' + 'A');
        if (c != wanted[i])
            return false;
    }
    return true;
}

bool IsUtf8Name(const std::string& name)
{
    return SameCharsetName(name, "UTF-8") || SameCharsetName(name, "UTF8");
}

/// The iconv name that serves the code page here, or "" when none does.
std::string ResolveCharset(unsigned codePage)
{
    if (codePage == kCodePageSystem)
        return SystemCharset();
    const CodePageInfo* info = FindInfo(codePage);
    if (!info)
        return {};
    if (codePage == kCodePageUtf8)
        return "UTF-8";
    for (const char* name : info->names) {
        if (!name)
            continue;
        iconv_t probe = iconv_open(kUtf16Native, name);
        if (probe != kNoIconv) {
            iconv_close(probe);
            return name;
        }
    }
    return {};
}

bool IsAscii(std::string_view bytes)
{
    // Eight bytes at a time: the loader calls this for every field of a file.
    size_t i = 0;
    for (; i + 8 <= bytes.size(); i += 8) {
        std::uint64_t word;
        std::memcpy(&word, bytes.data() + i, 8);
        if (word & 0x8080808080808080ull)
            return false;
    }
    for (; i < bytes.size(); ++i)
        if (static_cast<unsigned char>(bytes[i]) >= 0x80)
            return false;
    return true;
}

void WidenAscii(std::string_view bytes, std::u16string& out)
{
    out.resize(bytes.size());
    char16_t* dst = out.data();
    for (char b : bytes)
        *dst++ = static_cast<char16_t>(b);
}

void DecodeUtf8(std::string_view bytes, std::u16string& out)
{
    out.resize(bytes.size());
    char16_t* dst = out.data();
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    const unsigned char* end = p + bytes.size();
    while (p < end) {
        unsigned c = *p;
        if (c < 0x80) {
            *dst++ = static_cast<char16_t>(c);
            ++p;
            continue;
        }
        // A malformed sequence yields one U+FFFD for its longest valid-looking prefix, so a
        // stray lead byte does not swallow the ASCII that follows it.
        unsigned need = 0;
        unsigned code = 0;
        unsigned char low = 0x80, high = 0xBF;
        if (c >= 0xC2 && c <= 0xDF) {
            need = 1;
            code = c & 0x1F;
        } else if (c >= 0xE0 && c <= 0xEF) {
            need = 2;
            code = c & 0x0F;
            if (c == 0xE0)
                low = 0xA0; // overlong below U+0800
            else if (c == 0xED)
                high = 0x9F; // surrogates are not characters
        } else if (c >= 0xF0 && c <= 0xF4) {
            need = 3;
            code = c & 0x07;
            if (c == 0xF0)
                low = 0x90; // overlong below U+10000
            else if (c == 0xF4)
                high = 0x8F; // above U+10FFFF
        } else {
            *dst++ = u'\uFFFD';
            ++p;
            continue;
        }
        ++p;
        unsigned got = 0;
        while (got < need && p < end) {
            unsigned char t = *p;
            if (t < low || t > high)
                break;
            code = (code << 6) | (t & 0x3F);
            low = 0x80;
            high = 0xBF;
            ++p;
            ++got;
        }
        if (got < need) {
            *dst++ = u'\uFFFD';
            continue;
        }
        if (code >= 0x10000) {
            // Four input bytes make two units, so the output never outgrows the input.
            code -= 0x10000;
            *dst++ = static_cast<char16_t>(0xD800 + (code >> 10));
            *dst++ = static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        } else {
            *dst++ = static_cast<char16_t>(code);
        }
    }
    out.resize(static_cast<size_t>(dst - out.data()));
}

/// Lone surrogates have no UTF-8 form; they become U+FFFD and count as replaced.
void EncodeUtf8(std::u16string_view text, std::string& out, bool* replaced)
{
    out.resize(text.size() * 3);
    char* dst = out.data();
    bool any = false;
    const size_t n = text.size();
    for (size_t i = 0; i < n; ++i) {
        unsigned c = text[i];
        if (c < 0x80) {
            *dst++ = static_cast<char>(c);
            continue;
        }
        if (c >= 0xD800 && c <= 0xDFFF) {
            if (c <= 0xDBFF && i + 1 < n && text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF) {
                unsigned code = 0x10000 + ((c - 0xD800) << 10) + (text[i + 1] - 0xDC00);
                ++i;
                *dst++ = static_cast<char>(0xF0 | (code >> 18));
                *dst++ = static_cast<char>(0x80 | ((code >> 12) & 0x3F));
                *dst++ = static_cast<char>(0x80 | ((code >> 6) & 0x3F));
                *dst++ = static_cast<char>(0x80 | (code & 0x3F));
                continue;
            }
            any = true;
            c = 0xFFFD;
        }
        if (c < 0x800) {
            *dst++ = static_cast<char>(0xC0 | (c >> 6));
            *dst++ = static_cast<char>(0x80 | (c & 0x3F));
        } else {
            *dst++ = static_cast<char>(0xE0 | (c >> 12));
            *dst++ = static_cast<char>(0x80 | ((c >> 6) & 0x3F));
            *dst++ = static_cast<char>(0x80 | (c & 0x3F));
        }
    }
    out.resize(static_cast<size_t>(dst - out.data()));
    if (replaced)
        *replaced = any;
}

bool IsHighSurrogate(char16_t c)
{
    return c >= 0xD800 && c <= 0xDBFF;
}

bool IsLowSurrogate(char16_t c)
{
    return c >= 0xDC00 && c <= 0xDFFF;
}

} // namespace

std::string SystemCharset()
{
    const char* name = nl_langinfo(CODESET);
    std::string charset = name ? name : "";
    // The plain C locale claims ASCII; treating that as UTF-8 keeps non-ASCII text intact
    // instead of turning every byte above 127 into a replacement.
    if (charset.empty() || SameCharsetName(charset, "ANSI_X3.4-1968") ||
        SameCharsetName(charset, "ASCII") || SameCharsetName(charset, "US-ASCII"))
        return "UTF-8";
    return charset;
}

bool IsKnownCodePage(unsigned codePage)
{
    if (codePage == kCodePageUtf8)
        return true;
    if (codePage == kCodePageSystem) {
        std::string charset = SystemCharset();
        if (IsUtf8Name(charset))
            return true;
        iconv_t probe = iconv_open(kUtf16Native, charset.c_str());
        if (probe == kNoIconv)
            return false;
        iconv_close(probe);
        return true;
    }
    // The answer cannot change while the program runs, and character-set lists ask often.
    static const std::vector<unsigned> known = [] {
        std::vector<unsigned> result;
        for (const CodePageInfo& info : kCodePages)
            if (!ResolveCharset(info.codePage).empty())
                result.push_back(info.codePage);
        return result;
    }();
    return std::find(known.begin(), known.end(), codePage) != known.end();
}

std::string CodePageDisplayName(unsigned codePage)
{
    if (codePage == kCodePageSystem)
        return "System Default (" + SystemCharset() + ")";
    const CodePageInfo* info = FindInfo(codePage);
    return info ? info->displayName : "";
}

std::vector<unsigned> AvailableCodePages()
{
    std::vector<unsigned> result;
    for (const CodePageInfo& info : kCodePages)
        if (info.listed && IsKnownCodePage(info.codePage))
            result.push_back(info.codePage);
    return result;
}

struct CodePageConverter::Impl
{
    enum class Kind
    {
        Invalid,
        Utf8,
        SingleByte,
        DoubleByte,
        Iconv
    };

    unsigned codePage = 0;
    Kind kind = Kind::Invalid;
    iconv_t toWide = kNoIconv;
    iconv_t fromWide = kNoIconv;
    /// Every ASCII byte decodes to itself on its own; an all-ASCII field is then copied.
    bool asciiDecodes = false;
    /// Every ASCII character encodes to its own byte from the initial state.
    bool asciiEncodes = false;
    /// What each byte decodes to on its own (U+FFFD when nothing); exact for single-byte pages.
    std::array<char16_t, 256> decodeTable{};
    /// Double-byte pages: the bytes that only make a character together with the next one.
    std::array<bool, 256> leadByte{};
    /// Double-byte pages: lead (minus 0x80) * 256 + trail -> kPairUnit | unit, kPairOther, or 0
    /// while not yet asked. Filled as pairs turn up: most files use a few hundred of them.
    std::vector<std::uint32_t> pairCache;
    /// UTF-16 unit -> kEncodedBytes | length << 16 | first byte << 8 | second byte,
    /// kEncodedNone (the page lacks it), kEncodedLong, or 0 while not yet asked.
    std::vector<std::uint32_t> encodeCache;
    std::string scratch;

    static constexpr std::uint32_t kPairUnit = 1u << 16;
    static constexpr std::uint32_t kPairOther = 2u << 16;
    static constexpr std::uint32_t kEncodedBytes = 1u << 24;
    static constexpr std::uint32_t kEncodedNone = 2u << 24;
    static constexpr std::uint32_t kEncodedLong = 3u << 24;

    ~Impl()
    {
        if (toWide != kNoIconv)
            iconv_close(toWide);
        if (fromWide != kNoIconv)
            iconv_close(fromWide);
    }

    void Open(const std::string& charset)
    {
        if (charset.empty())
            return;
        if (IsUtf8Name(charset)) {
            kind = Kind::Utf8;
            asciiDecodes = asciiEncodes = true;
            return;
        }
        toWide = iconv_open(kUtf16Native, charset.c_str());
        fromWide = iconv_open(charset.c_str(), kUtf16Native);
        if (toWide == kNoIconv || fromWide == kNoIconv)
            return;
        kind = Kind::Iconv;
        Probe();
        if (asciiDecodes && asciiEncodes && kind == Kind::Iconv &&
            std::find(leadByte.begin(), leadByte.end(), true) != leadByte.end()) {
            // Shift-JIS, GBK, Big5 and kin: without shift states every character converts on
            // its own, so conversions can be remembered per character.
            kind = Kind::DoubleByte;
            pairCache.assign(128 * 256, 0);
            encodeCache.assign(0x10000, 0);
        }
    }

    /// Converts one byte alone; returns the units produced, or -1 when the byte needs more
    /// bytes or produced more than one unit (then it is no single-byte code page).
    int DecodeAlone(unsigned char byte, char16_t& unit)
    {
        iconv(toWide, nullptr, nullptr, nullptr, nullptr);
        char in = static_cast<char>(byte);
        char16_t buffer[4];
        char* inPtr = &in;
        size_t inLeft = 1;
        char* outPtr = reinterpret_cast<char*>(buffer);
        size_t outLeft = sizeof buffer;
        size_t result = iconv(toWide, &inPtr, &inLeft, &outPtr, &outLeft);
        int error = result == static_cast<size_t>(-1) ? errno : 0;
        iconv(toWide, nullptr, nullptr, &outPtr, &outLeft);
        iconv(toWide, nullptr, nullptr, nullptr, nullptr);
        size_t produced = (sizeof buffer - outLeft) / sizeof(char16_t);
        if (error == EILSEQ && produced == 0)
            return 0;
        if (error != 0 || produced != 1)
            return -1;
        unit = buffer[0];
        return 1;
    }

    void Probe()
    {
        bool singleByte = true;
        asciiDecodes = true;
        for (unsigned b = 0; b < 256; ++b) {
            char16_t unit = 0;
            int got = DecodeAlone(static_cast<unsigned char>(b), unit);
            if (got < 0)
                singleByte = false;
            leadByte[b] = got < 0 && b >= 0x80;
            if (b < 0x80 && (got != 1 || unit != b))
                asciiDecodes = false;
            decodeTable[b] = got == 1 ? unit : u'\uFFFD';
        }
        asciiEncodes = true;
        for (char16_t c = 0; c < 0x80 && asciiEncodes; ++c) {
            std::string bytes;
            bool replaced = false;
            IconvFromUtf16(std::u16string_view(&c, 1), bytes, '?', replaced);
            asciiEncodes = !replaced && bytes.size() == 1 && bytes[0] == static_cast<char>(c);
        }
        if (!singleByte)
            return;
        kind = Kind::SingleByte;
        encodeCache.assign(0x10000, 0);
        // Walk backwards so that when two bytes share a character the lower byte wins.
        for (unsigned b = 256; b-- > 0;)
            if (decodeTable[b] != u'\uFFFD')
                encodeCache[decodeTable[b]] = kEncodedBytes | (1u << 16) | (b << 8);
    }

    /// The pair's character, or -1 when the pair is not exactly one character.
    int DecodePair(unsigned char lead, unsigned char trail)
    {
        std::uint32_t& entry = pairCache[(lead - 0x80u) * 256u + trail];
        if (entry == 0) {
            const char pair[2] = {static_cast<char>(lead), static_cast<char>(trail)};
            std::u16string units;
            IconvToUtf16(std::string_view(pair, 2), units);
            bool clean = units.size() == 1 && units[0] != u'\uFFFD';
            entry = clean ? kPairUnit | units[0] : kPairOther;
        }
        return entry & kPairUnit ? static_cast<int>(entry & 0xFFFF) : -1;
    }

    std::uint32_t EncodeEntry(char16_t c)
    {
        std::uint32_t& entry = encodeCache[c];
        if (entry == 0) {
            scratch.clear();
            bool lacking = false;
            IconvFromUtf16(std::u16string_view(&c, 1), scratch, '?', lacking);
            if (lacking)
                entry = kEncodedNone;
            else if (scratch.size() == 1)
                entry = kEncodedBytes | (1u << 16) |
                        (static_cast<std::uint32_t>(static_cast<unsigned char>(scratch[0])) << 8);
            else if (scratch.size() == 2)
                entry = kEncodedBytes | (2u << 16) |
                        (static_cast<std::uint32_t>(static_cast<unsigned char>(scratch[0])) << 8) |
                        static_cast<unsigned char>(scratch[1]);
            else
                entry = kEncodedLong;
        }
        return entry;
    }

    /// False when the field needs iconv as a whole (an invalid or longer sequence).
    bool DecodeDoubleByte(std::string_view bytes, std::u16string& out)
    {
        out.resize(bytes.size());
        char16_t* dst = out.data();
        const size_t n = bytes.size();
        for (size_t i = 0; i < n; ++i) {
            auto b = static_cast<unsigned char>(bytes[i]);
            if (b < 0x80) {
                *dst++ = b;
            } else if (leadByte[b]) {
                if (i + 1 == n)
                    return false;
                int unit = DecodePair(b, static_cast<unsigned char>(bytes[++i]));
                if (unit < 0)
                    return false;
                *dst++ = static_cast<char16_t>(unit);
            } else if (decodeTable[b] != u'\uFFFD') {
                *dst++ = decodeTable[b];
            } else {
                return false;
            }
        }
        out.resize(static_cast<size_t>(dst - out.data()));
        return true;
    }

    /// Appends the conversion of `bytes`; undecodable bytes become U+FFFD one by one.
    void IconvToUtf16(std::string_view bytes, std::u16string& out)
    {
        iconv(toWide, nullptr, nullptr, nullptr, nullptr);
        size_t used = out.size();
        out.resize(used + bytes.size() + 16);
        char* inPtr = const_cast<char*>(bytes.data());
        size_t inLeft = bytes.size();
        bool flushing = false;
        for (;;) {
            char* outStart = reinterpret_cast<char*>(out.data() + used);
            char* outPtr = outStart;
            size_t outLeft = (out.size() - used) * sizeof(char16_t);
            size_t result = flushing ? iconv(toWide, nullptr, nullptr, &outPtr, &outLeft)
                                     : iconv(toWide, &inPtr, &inLeft, &outPtr, &outLeft);
            int error = result == static_cast<size_t>(-1) ? errno : 0;
            used += static_cast<size_t>(outPtr - outStart) / sizeof(char16_t);
            if (error == E2BIG) {
                out.resize(out.size() * 2 + 16);
                continue;
            }
            if (error == EILSEQ || error == EINVAL) {
                // Flush what the converter holds back (a base letter waiting for an accent)
                // before the replacement, then go on after the bad byte.
                char* flushStart = reinterpret_cast<char*>(out.data() + used);
                char* flushPtr = flushStart;
                size_t flushLeft = (out.size() - used) * sizeof(char16_t);
                if (iconv(toWide, nullptr, nullptr, &flushPtr, &flushLeft) ==
                    static_cast<size_t>(-1)) {
                    out.resize(out.size() * 2 + 16);
                    continue;
                }
                used += static_cast<size_t>(flushPtr - flushStart) / sizeof(char16_t);
                if (used == out.size())
                    out.resize(out.size() * 2 + 16);
                out[used++] = u'\uFFFD';
                ++inPtr;
                --inLeft;
                continue;
            }
            if (error != 0)
                break; // no other errors are documented; keep what was converted
            if (flushing)
                break;
            flushing = true;
        }
        out.resize(used);
    }

    /// Appends the conversion of `text`; characters without a form become `replacement`.
    void IconvFromUtf16(std::u16string_view text, std::string& out, char replacement,
                        bool& replaced)
    {
        iconv(fromWide, nullptr, nullptr, nullptr, nullptr);
        size_t used = out.size();
        out.resize(used + text.size() * 2 + 16);
        char* inPtr = reinterpret_cast<char*>(const_cast<char16_t*>(text.data()));
        size_t inLeft = text.size() * sizeof(char16_t);
        bool flushing = false;
        for (;;) {
            char* outStart = out.data() + used;
            char* outPtr = outStart;
            size_t outLeft = out.size() - used;
            size_t result = flushing ? iconv(fromWide, nullptr, nullptr, &outPtr, &outLeft)
                                     : iconv(fromWide, &inPtr, &inLeft, &outPtr, &outLeft);
            int error = result == static_cast<size_t>(-1) ? errno : 0;
            used += static_cast<size_t>(outPtr - outStart);
            if (error == E2BIG) {
                out.resize(out.size() * 2 + 16);
                continue;
            }
            if (error == EILSEQ || error == EINVAL) {
                // Back to the initial shift state so that the replacement byte reads as itself.
                char* flushStart = out.data() + used;
                char* flushPtr = flushStart;
                size_t flushLeft = out.size() - used;
                if (iconv(fromWide, nullptr, nullptr, &flushPtr, &flushLeft) ==
                    static_cast<size_t>(-1)) {
                    out.resize(out.size() * 2 + 16);
                    continue;
                }
                used += static_cast<size_t>(flushPtr - flushStart);
                if (used == out.size())
                    out.resize(out.size() * 2 + 16);
                out[used++] = replacement;
                replaced = true;
                // A surrogate pair is one character and gets one replacement.
                const auto* unit = reinterpret_cast<const char16_t*>(inPtr);
                size_t skip = 1;
                if (inLeft >= 2 * sizeof(char16_t) && IsHighSurrogate(unit[0]) &&
                    IsLowSurrogate(unit[1]))
                    skip = 2;
                inPtr += skip * sizeof(char16_t);
                inLeft -= skip * sizeof(char16_t);
                continue;
            }
            if (error != 0)
                break;
            if (flushing)
                break;
            flushing = true;
        }
        out.resize(used);
    }

    void ToUtf16(std::string_view bytes, std::u16string& out)
    {
        switch (kind) {
        case Kind::Invalid:
            out.clear();
            return;
        case Kind::Utf8:
            DecodeUtf8(bytes, out);
            return;
        case Kind::SingleByte: {
            out.resize(bytes.size());
            char16_t* dst = out.data();
            for (char b : bytes)
                *dst++ = decodeTable[static_cast<unsigned char>(b)];
            return;
        }
        case Kind::DoubleByte:
            if (DecodeDoubleByte(bytes, out))
                return;
            break;
        case Kind::Iconv:
            break;
        }
        out.clear();
        if (!asciiDecodes) {
            IconvToUtf16(bytes, out);
            return;
        }
        // An ASCII prefix stands for itself; after the first high byte the rest must go through
        // iconv whole, because trail bytes of double-byte characters may look like ASCII.
        size_t prefix = 0;
        while (prefix < bytes.size() && static_cast<unsigned char>(bytes[prefix]) < 0x80)
            ++prefix;
        WidenAscii(bytes.substr(0, prefix), out);
        if (prefix < bytes.size())
            IconvToUtf16(bytes.substr(prefix), out);
    }

    void FromUtf16(std::u16string_view text, std::string& out, char replacement, bool& replaced)
    {
        out.clear();
        replaced = false;
        if (kind == Kind::Utf8) {
            EncodeUtf8(text, out, &replaced);
            return;
        }
        if (!asciiEncodes) {
            IconvFromUtf16(text, out, replacement, replaced);
            return;
        }
        out.reserve(text.size());
        const size_t n = text.size();
        size_t i = 0;
        if (encodeCache.empty()) {
            // ASCII is written directly; the stretches between go through iconv, each ending in
            // the initial shift state so that the ASCII after it reads as itself.
            while (i < n) {
                if (text[i] < 0x80) {
                    out.push_back(static_cast<char>(text[i++]));
                    continue;
                }
                size_t start = i;
                while (i < n && text[i] >= 0x80)
                    ++i;
                IconvFromUtf16(text.substr(start, i - start), out, replacement, replaced);
            }
            return;
        }
        for (; i < n; ++i) {
            char16_t c = text[i];
            if (c < 0x80) {
                out.push_back(static_cast<char>(c));
                continue;
            }
            if (IsHighSurrogate(c) || IsLowSurrogate(c)) {
                size_t length =
                    IsHighSurrogate(c) && i + 1 < n && IsLowSurrogate(text[i + 1]) ? 2 : 1;
                IconvFromUtf16(text.substr(i, length), out, replacement, replaced);
                i += length - 1;
                continue;
            }
            std::uint32_t entry = EncodeEntry(c);
            if (entry == kEncodedNone) {
                out.push_back(replacement);
                replaced = true;
            } else if (entry == kEncodedLong) {
                IconvFromUtf16(text.substr(i, 1), out, replacement, replaced);
            } else {
                out.push_back(static_cast<char>((entry >> 8) & 0xFF));
                if (((entry >> 16) & 0xFF) == 2)
                    out.push_back(static_cast<char>(entry & 0xFF));
            }
        }
    }
};

CodePageConverter::CodePageConverter(unsigned codePage) : m_impl(std::make_unique<Impl>())
{
    m_impl->codePage = codePage;
    m_impl->Open(ResolveCharset(codePage));
}

CodePageConverter::~CodePageConverter() = default;

bool CodePageConverter::IsValid() const
{
    return m_impl->kind != Impl::Kind::Invalid;
}

unsigned CodePageConverter::CodePage() const
{
    return m_impl->codePage;
}

bool CodePageConverter::ToUtf16(std::string_view bytes, std::u16string& out)
{
    if (!IsValid()) {
        out.clear();
        return false;
    }
    // Single-byte tables and the UTF-8 decoder are as quick on ASCII as a plain copy.
    if (m_impl->kind == Impl::Kind::Iconv && m_impl->asciiDecodes && IsAscii(bytes)) {
        WidenAscii(bytes, out);
        return true;
    }
    m_impl->ToUtf16(bytes, out);
    return true;
}

bool CodePageConverter::FromUtf16(std::u16string_view text, std::string& out, char replacement,
                                  bool* replaced)
{
    bool any = false;
    if (!IsValid()) {
        out.clear();
        if (replaced)
            *replaced = false;
        return false;
    }
    m_impl->FromUtf16(text, out, replacement, any);
    if (replaced)
        *replaced = any;
    return true;
}

} // namespace ost
