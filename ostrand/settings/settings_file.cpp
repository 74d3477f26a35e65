#include "ostrand/settings/settings_file.h"

#include "ostrand/core/link_target.h"
#include "ostrand/core/string.h"

#include <atomic>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace ost {
namespace {

// The test seam: which counted file call fails, how, and how many were counted.
std::atomic<int> g_failCall{0};
std::atomic<int> g_failError{0};
std::atomic<bool> g_failMidway{false};
std::atomic<int> g_calls{0};

/// Counts one file call of Load or Save; true, with errno set, when it is the one to fail.
bool Fails()
{
    const int call = ++g_calls;
    if (call != g_failCall.load())
        return false;
    errno = g_failError.load();
    return true;
}

constexpr char kHex[] = "0123456789ABCDEF";

void AppendHexByte(std::string& out, unsigned char byte)
{
    out += "\\x";
    out += kHex[byte >> 4];
    out += kHex[byte & 0xF];
}

int HexDigit(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return -1;
}

/// Length of the well-formed UTF-8 sequence at text[i], or 0 when there is none.
size_t Utf8SequenceLength(std::string_view text, size_t i, unsigned* codePoint = nullptr)
{
    auto byte = [&](size_t k) { return static_cast<unsigned char>(text[k]); };
    unsigned c = byte(i);
    size_t length;
    unsigned code;
    unsigned char low = 0x80, high = 0xBF;
    if (c < 0x80) {
        length = 1;
        code = c;
    } else if (c >= 0xC2 && c <= 0xDF) {
        length = 2;
        code = c & 0x1F;
    } else if (c >= 0xE0 && c <= 0xEF) {
        length = 3;
        code = c & 0x0F;
        low = c == 0xE0 ? 0xA0 : 0x80;
        high = c == 0xED ? 0x9F : 0xBF;
    } else if (c >= 0xF0 && c <= 0xF4) {
        length = 4;
        code = c & 0x07;
        low = c == 0xF0 ? 0x90 : 0x80;
        high = c == 0xF4 ? 0x8F : 0xBF;
    } else {
        return 0;
    }
    if (i + length > text.size())
        return 0;
    for (size_t k = 1; k < length; ++k) {
        unsigned char t = byte(i + k);
        if (t < low || t > high)
            return 0;
        low = 0x80;
        high = 0xBF;
        code = (code << 6) | (t & 0x3F);
    }
    if (codePoint)
        *codePoint = code;
    return length;
}

enum class Field
{
    Key,
    Section,
    Value
};

/// Escapes so that the line parses back to exactly these bytes and the file stays UTF-8.
std::string Escape(std::string_view text, Field field)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        auto c = static_cast<unsigned char>(text[i]);
        bool edge = i == 0 || i + 1 == text.size();
        if (c >= 0x80) {
            size_t length = Utf8SequenceLength(text, i);
            if (length == 0) {
                AppendHexByte(out, c);
                ++i;
            } else {
                out.append(text.substr(i, length));
                i += length;
            }
            continue;
        }
        ++i;
        if (c == '\\')
            out += "\\\\";
        else if (c == '\r')
            out += "\\r";
        else if (c == '\n')
            out += "\\n";
        else if (c == '\t')
            out += "\\t";
        else if (c < 0x20 || c == 0x7F)
            AppendHexByte(out, c);
        // Keys and section names are trimmed when read, and a few characters would end them
        // or make the line look like a comment or a section.
        else if (field == Field::Key &&
                 (c == '=' || (i == 1 && (c == '[' || c == ';' || c == '#'))))
            AppendHexByte(out, c);
        else if (field == Field::Section && c == ']')
            AppendHexByte(out, c);
        else if (field != Field::Value && c == ' ' && edge)
            AppendHexByte(out, c);
        else
            out += static_cast<char>(c);
    }
    return out;
}

std::string EscapeWide(std::u16string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        unsigned c = text[i];
        if (c >= 0xD800 && c <= 0xDFFF) {
            bool pair = c <= 0xDBFF && i + 1 < text.size() && text[i + 1] >= 0xDC00 &&
                        text[i + 1] <= 0xDFFF;
            if (!pair) {
                // A lone surrogate has no UTF-8 form, yet the text must come back unchanged.
                char buffer[8];
                std::snprintf(buffer, sizeof buffer, "\\u%04X", c);
                out += buffer;
                continue;
            }
            c = 0x10000 + ((c - 0xD800) << 10) + (text[++i] - 0xDC00);
        }
        if (c < 0x80) {
            char single = static_cast<char>(c);
            out += Escape(std::string_view(&single, 1), Field::Value);
        } else {
            AppendUtf8(static_cast<char32_t>(c), out);
        }
    }
    return out;
}

/// Reads the escape at text[i] (just after the backslash); -1 when it is not one we write.
int UnescapeByte(std::string_view text, size_t& i)
{
    if (i >= text.size())
        return -1;
    char c = text[i++];
    switch (c) {
    case '\\':
        return '\\';
    case 'r':
        return '\r';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'x': {
        if (i + 2 > text.size())
            return -1;
        int high = HexDigit(text[i]);
        int low = HexDigit(text[i + 1]);
        if (high < 0 || low < 0)
            return -1;
        i += 2;
        return high * 16 + low;
    }
    default:
        return -1;
    }
}

/// Raw bytes are taken as they are, so a hand-edited file in another encoding still loads.
std::optional<std::string> Unescape(std::string_view text)
{
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        char c = text[i++];
        if (c != '\\') {
            out += c;
            continue;
        }
        int byte = UnescapeByte(text, i);
        if (byte < 0)
            return std::nullopt;
        out += static_cast<char>(byte);
    }
    return out;
}

std::optional<std::u16string> UnescapeWide(std::string_view text)
{
    std::u16string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size();) {
        auto c = static_cast<unsigned char>(text[i]);
        if (c == '\\') {
            ++i;
            if (i < text.size() && text[i] == 'u') {
                if (i + 5 > text.size())
                    return std::nullopt;
                unsigned unit = 0;
                for (size_t k = 1; k <= 4; ++k) {
                    int digit = HexDigit(text[i + k]);
                    if (digit < 0)
                        return std::nullopt;
                    unit = unit * 16 + static_cast<unsigned>(digit);
                }
                out += static_cast<char16_t>(unit);
                i += 5;
                continue;
            }
            int byte = UnescapeByte(text, i);
            if (byte < 0 || byte >= 0x80)
                return std::nullopt;
            out += static_cast<char16_t>(byte);
            continue;
        }
        unsigned code = 0;
        size_t length = Utf8SequenceLength(text, i, &code);
        if (length == 0)
            return std::nullopt;
        i += length;
        if (code >= 0x10000) {
            code -= 0x10000;
            out += static_cast<char16_t>(0xD800 + (code >> 10));
            out += static_cast<char16_t>(0xDC00 + (code & 0x3FF));
        } else {
            out += static_cast<char16_t>(code);
        }
    }
    return out;
}

std::string_view Trim(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    while (!text.empty() && (text.back() == ' ' || text.back() == '\t'))
        text.remove_suffix(1);
    return text;
}

template <typename Number> std::optional<Number> ParseNumber(std::string_view text)
{
    Number value{};
    const char* end = text.data() + text.size();
    auto result = std::from_chars(text.data(), end, value);
    if (result.ec != std::errc() || result.ptr != end || text.empty())
        return std::nullopt;
    return value;
}

std::optional<SettingsValue> ParseValue(char type, std::string_view text)
{
    switch (type) {
    case 'b':
        if (text == "1")
            return SettingsValue(true);
        if (text == "0")
            return SettingsValue(false);
        return std::nullopt;
    case 'i':
        if (auto value = ParseNumber<int>(text))
            return SettingsValue(*value);
        return std::nullopt;
    case 'd':
        if (auto value = ParseNumber<double>(text))
            return SettingsValue(*value);
        return std::nullopt;
    case 's':
        if (auto value = Unescape(text))
            return SettingsValue(std::move(*value));
        return std::nullopt;
    case 'w':
        if (auto value = UnescapeWide(text))
            return SettingsValue(std::move(*value));
        return std::nullopt;
    default:
        return std::nullopt;
    }
}

template <typename Number> void AppendNumber(std::string& out, Number value)
{
    char buffer[64];
    // to_chars gives the shortest text that reads back to the same double, whatever the locale.
    auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

void AppendValue(std::string& out, const SettingsValue& value)
{
    switch (value.index()) {
    case 0:
        out += std::get<bool>(value) ? "b:1" : "b:0";
        break;
    case 1:
        out += "i:";
        AppendNumber(out, std::get<int>(value));
        break;
    case 2:
        out += "d:";
        AppendNumber(out, std::get<double>(value));
        break;
    case 3:
        out += "s:";
        out += Escape(std::get<std::string>(value), Field::Value);
        break;
    case 4:
        out += "w:";
        out += EscapeWide(std::get<std::u16string>(value));
        break;
    }
}

bool WriteAll(int fd, std::string_view data)
{
    if (Fails()) {
        const int error = errno;
        if (g_failMidway.load())
            (void)!::write(fd, data.data(), data.size() / 2);
        errno = error;
        return false;
    }
    while (!data.empty()) {
        ssize_t written = ::write(fd, data.data(), data.size());
        if (written < 0) {
            if (errno == EINTR)
                continue;
            return false;
        }
        data.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}

bool SamePath(const std::filesystem::path& a, const std::filesystem::path& b)
{
    std::error_code error;
    return a.lexically_normal() == b.lexically_normal() || std::filesystem::equivalent(a, b, error);
}

} // namespace

void SettingsFile::FailCallForTest(int call, int error, bool midway)
{
    g_failCall.store(call);
    g_failError.store(error);
    g_failMidway.store(midway);
    g_calls.store(0);
}

int SettingsFile::CallsForTest()
{
    return g_calls.load();
}

SettingsLoadStatus SettingsFile::Load(const std::filesystem::path& path)
{
    Clear();
    m_unreadable.clear();
    m_loadError = 0;
    m_loadStatus = ReadAndParse(path);
    if (m_loadStatus == SettingsLoadStatus::Unreadable) {
        m_loadError = errno;
        m_unreadable = path;
    }
    return m_loadStatus;
}

SettingsLoadStatus SettingsFile::ReadAndParse(const std::filesystem::path& path)
{
    int fd = Fails() ? -1 : ::open(path.c_str(), O_RDONLY | O_CLOEXEC);
    if (fd < 0)
        return errno == ENOENT ? SettingsLoadStatus::FirstRun : SettingsLoadStatus::Unreadable;
    std::string data;
    char buffer[65536];
    bool failed = false;
    for (;;) {
        ssize_t got = Fails() ? -1 : ::read(fd, buffer, sizeof buffer);
        if (got < 0) {
            if (errno == EINTR)
                continue;
            failed = true;
            break;
        }
        if (got == 0)
            break;
        data.append(buffer, static_cast<size_t>(got));
    }
    const int error = errno;
    ::close(fd);
    if (failed) {
        errno = error;
        return SettingsLoadStatus::Unreadable;
    }
    return Parse(data);
}

SettingsLoadStatus SettingsFile::Parse(std::string_view text)
{
    Clear();
    if (text.substr(0, 3) == "\xEF\xBB\xBF")
        text.remove_prefix(3);
    Section* current = nullptr;
    while (!text.empty()) {
        size_t end = text.find('\n');
        std::string_view line = text.substr(0, end);
        text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
        // A raw CR can only be a line end written on another system: values escape theirs.
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        if (!ParseLine(line, current))
            ++m_damagedLines;
    }
    return m_damagedLines ? SettingsLoadStatus::Damaged : SettingsLoadStatus::Loaded;
}

bool SettingsFile::ParseLine(std::string_view line, Section*& current)
{
    std::string_view trimmed = Trim(line);
    if (trimmed.empty() || trimmed.front() == ';' || trimmed.front() == '#')
        return true;
    if (trimmed.front() == '[') {
        // Keys under a header we cannot read must not land in the previous section.
        current = nullptr;
        if (trimmed.size() < 2 || trimmed.back() != ']')
            return false;
        auto name = Unescape(Trim(trimmed.substr(1, trimmed.size() - 2)));
        if (!name)
            return false;
        current = FindSection(*name);
        if (!current) {
            m_sections.push_back(Section{std::move(*name), {}});
            current = &m_sections.back();
        }
        return true;
    }
    if (!current)
        return false;
    size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return false;
    auto key = Unescape(Trim(line.substr(0, equals)));
    if (!key)
        return false;
    std::string_view rest = line.substr(equals + 1);
    while (!rest.empty() && (rest.front() == ' ' || rest.front() == '\t'))
        rest.remove_prefix(1);
    if (rest.size() < 2 || rest[1] != ':')
        return false;
    auto value = ParseValue(rest[0], rest.substr(2));
    if (!value)
        return false;
    // A repeated key keeps its first place and its last value, as setting it twice would.
    for (Entry& entry : current->entries) {
        if (entry.key == *key) {
            entry.value = std::move(*value);
            return true;
        }
    }
    current->entries.push_back(Entry{std::move(*key), std::move(*value)});
    return true;
}

std::string SettingsFile::Serialize() const
{
    std::string out;
    for (const Section& section : m_sections) {
        if (!out.empty())
            out += '\n';
        out += '[';
        out += Escape(section.name, Field::Section);
        out += "]\n";
        for (const Entry& entry : section.entries) {
            out += Escape(entry.key, Field::Key);
            out += '=';
            AppendValue(out, entry.value);
            out += '\n';
        }
    }
    return out;
}

bool SettingsFile::Save(const std::filesystem::path& path) const
{
    // A file that is there but could not be read holds settings that were never seen: writing
    // these over it would lose them.
    if (!m_unreadable.empty() && SamePath(path, m_unreadable)) {
        errno = m_loadError;
        return false;
    }
    const std::string data = Serialize();
    // A settings file that is a link (kept with the user's other configuration files, say)
    // stays one: the file it names is rewritten.
    std::string target;
    int error = 0;
    if (Fails() || !ResolveLinkTarget(path.string(), target, error)) {
        if (error)
            errno = error;
        return false;
    }
    std::string pattern = target + ".XXXXXX";
    int fd = Fails() ? -1 : ::mkstemp(pattern.data());
    if (fd < 0)
        return false;
    // Keep the permissions a user gave the old file; a new one stays private to its owner.
    struct stat old;
    bool ok = true;
    if (Fails() || ::stat(target.c_str(), &old) != 0)
        ok = errno == ENOENT;
    else
        ok = !Fails() && ::fchmod(fd, old.st_mode & 07777) == 0;
    ok = ok && WriteAll(fd, data);
    // Without the sync a crash soon after the rename can leave an empty file in its place.
    ok = ok && !Fails() && ::fsync(fd) == 0;
    if (Fails()) {
        const int failure = errno;
        ::close(fd);
        errno = failure;
        ok = false;
    } else if (::close(fd) != 0) {
        ok = false;
    }
    ok = ok && !Fails() && ::rename(pattern.c_str(), target.c_str()) == 0;
    if (!ok) {
        const int failure = errno;
        ::unlink(pattern.c_str());
        errno = failure;
        return false;
    }
    std::filesystem::path folder = std::filesystem::path(target).parent_path();
    int folderFd =
        Fails() ? -1
                : ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folderFd >= 0) {
        // Makes the rename itself durable; the save stands either way.
        (void)(Fails() || ::fsync(folderFd) == 0);
        ::close(folderFd);
    }
    return true;
}

std::string UnreadableSettingsMessage(const std::filesystem::path& file, int error)
{
    return "The settings file \"" + file.string() +
           "\" could not be read.  Until it can, the program uses its default settings and "
           "leaves the file as it is.\r\n\r\n" +
           std::strerror(error);
}

SettingsFile::Section* SettingsFile::FindSection(std::string_view name)
{
    for (Section& section : m_sections)
        if (section.name == name)
            return &section;
    return nullptr;
}

const SettingsFile::Section* SettingsFile::FindSection(std::string_view name) const
{
    for (const Section& section : m_sections)
        if (section.name == name)
            return &section;
    return nullptr;
}

const SettingsValue* SettingsFile::Find(std::string_view section, std::string_view key) const
{
    const Section* found = FindSection(section);
    if (!found)
        return nullptr;
    for (const Entry& entry : found->entries)
        if (entry.key == key)
            return &entry.value;
    return nullptr;
}

void SettingsFile::Set(std::string_view section, std::string_view key, SettingsValue value)
{
    Section* found = FindSection(section);
    if (!found) {
        m_sections.push_back(Section{std::string(section), {}});
        found = &m_sections.back();
    }
    for (Entry& entry : found->entries) {
        if (entry.key == key) {
            entry.value = std::move(value);
            return;
        }
    }
    found->entries.push_back(Entry{std::string(key), std::move(value)});
}

bool SettingsFile::Remove(std::string_view section, std::string_view key)
{
    Section* found = FindSection(section);
    if (!found)
        return false;
    for (auto it = found->entries.begin(); it != found->entries.end(); ++it) {
        if (it->key == key) {
            found->entries.erase(it);
            return true;
        }
    }
    return false;
}

bool SettingsFile::RemoveSection(std::string_view section)
{
    for (auto it = m_sections.begin(); it != m_sections.end(); ++it) {
        if (it->name == section) {
            m_sections.erase(it);
            return true;
        }
    }
    return false;
}

void SettingsFile::Clear()
{
    m_sections.clear();
    m_damagedLines = 0;
}

std::optional<std::string> SettingsFile::GetText(std::string_view section,
                                                 std::string_view key) const
{
    const SettingsValue* value = Find(section, key);
    if (!value || !std::holds_alternative<std::string>(*value))
        return std::nullopt;
    return std::get<std::string>(*value);
}

void SettingsFile::SetText(std::string_view section, std::string_view key, std::string_view text)
{
    Set(section, key, SettingsValue(std::string(text)));
}

std::vector<std::string> SettingsFile::Sections() const
{
    std::vector<std::string> names;
    for (const Section& section : m_sections)
        names.push_back(section.name);
    return names;
}

std::vector<std::string> SettingsFile::Keys(std::string_view section) const
{
    std::vector<std::string> keys;
    if (const Section* found = FindSection(section))
        for (const Entry& entry : found->entries)
            keys.push_back(entry.key);
    return keys;
}

} // namespace ost
