#include "view/graph_window_settings.h"

#include "ostrand/core/text_file.h"

#include <charconv>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <system_error>

namespace quirnel {

namespace {

constexpr std::size_t kMaxFileBytes = 64 * 1024;

std::string Escape(std::string_view text)
{
    std::string out;
    for (char c : text) {
        switch (c) {
        case '&':
            out += "&amp;";
            break;
        case '<':
            out += "&lt;";
            break;
        case '>':
            out += "&gt;";
            break;
        case '"':
            out += "&quot;";
            break;
        default:
            out += c;
        }
    }
    return out;
}

std::string Unescape(std::string_view text)
{
    static const struct
    {
        std::string_view entity;
        char c;
    } kEntities[] = {
        {"&amp;", '&'}, {"&lt;", '<'}, {"&gt;", '>'}, {"&quot;", '"'}, {"&apos;", '\''}};
    std::string out;
    for (std::size_t i = 0; i < text.size();) {
        bool matched = false;
        for (const auto& e : kEntities) {
            if (text.substr(i, e.entity.size()) == e.entity) {
                out += e.c;
                i += e.entity.size();
                matched = true;
                break;
            }
        }
        if (!matched)
            out += text[i++];
    }
    return out;
}

/// The value of attribute `name` inside one tag's text; nullopt when absent or unquoted.
std::optional<std::string> Attribute(std::string_view tag, std::string_view name)
{
    for (std::size_t at = tag.find(name); at != std::string_view::npos;
         at = tag.find(name, at + 1)) {
        const bool startsWord = at > 0 && (tag[at - 1] == ' ' || tag[at - 1] == '\t' ||
                                           tag[at - 1] == '\n' || tag[at - 1] == '\r');
        std::size_t i = at + name.size();
        while (i < tag.size() && tag[i] == ' ')
            ++i;
        if (!startsWord || i >= tag.size() || tag[i] != '=')
            continue;
        ++i;
        while (i < tag.size() && tag[i] == ' ')
            ++i;
        if (i >= tag.size() || (tag[i] != '"' && tag[i] != '\''))
            return std::nullopt;
        const char quote = tag[i];
        const std::size_t end = tag.find(quote, i + 1);
        if (end == std::string_view::npos)
            return std::nullopt;
        return Unescape(tag.substr(i + 1, end - i - 1));
    }
    return std::nullopt;
}

std::optional<bool> ParseBool(const std::string& text)
{
    if (text == "1" || text == "true")
        return true;
    if (text == "0" || text == "false")
        return false;
    return std::nullopt;
}

bool ParsePosition(const std::string& text, GraphWindowSettings& settings)
{
    int numbers[4];
    const char* at = text.data();
    const char* end = text.data() + text.size();
    for (int i = 0; i < 4; ++i) {
        auto [next, error] = std::from_chars(at, end, numbers[i]);
        if (error != std::errc())
            return false;
        at = next;
        if (i < 3) {
            if (at == end || *at != ',')
                return false;
            ++at;
        }
    }
    if (at != end || numbers[2] <= 0 || numbers[3] <= 0)
        return false;
    settings.hasPosition = true;
    settings.left = numbers[0];
    settings.top = numbers[1];
    settings.width = numbers[2];
    settings.height = numbers[3];
    return true;
}

} // namespace

std::string FormatGraphWindowSettings(const GraphWindowSettings& s)
{
    auto setting = [](std::string_view name, const std::string& value) {
        return "  <Setting name=\"" + Escape(name) + "\" value=\"" + Escape(value) + "\"/>\n";
    };
    std::string xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<GraphNode>\n";
    xml += setting("DrawHorizontalLines", s.horizontalLines ? "1" : "0");
    xml += setting("DrawVerticalLines", s.verticalLines ? "1" : "0");
    xml += setting("Style", s.style == kGraphStyleRibbon ? "Ribbon" : "Line");
    if (s.hasPosition)
        xml +=
            setting("WindowPosition", std::to_string(s.left) + "," + std::to_string(s.top) + "," +
                                          std::to_string(s.width) + "," + std::to_string(s.height));
    xml += "</GraphNode>\n";
    return xml;
}

GraphWindowSettings ParseGraphWindowSettings(std::string_view xml)
{
    GraphWindowSettings settings;
    constexpr std::string_view kOpen = "<Setting";
    for (std::size_t at = xml.find(kOpen); at != std::string_view::npos;
         at = xml.find(kOpen, at + kOpen.size())) {
        const std::size_t close = xml.find('>', at);
        if (close == std::string_view::npos)
            break;
        const std::string_view tag = xml.substr(at + kOpen.size(), close - at - kOpen.size());
        const std::optional<std::string> name = Attribute(tag, "name");
        const std::optional<std::string> value = Attribute(tag, "value");
        if (!name || !value)
            continue;
        if (*name == "DrawHorizontalLines") {
            if (auto on = ParseBool(*value))
                settings.horizontalLines = *on;
        } else if (*name == "DrawVerticalLines") {
            if (auto on = ParseBool(*value))
                settings.verticalLines = *on;
        } else if (*name == "Style") {
            if (*value == "Line")
                settings.style = kGraphStyleLine;
            else if (*value == "Ribbon")
                settings.style = kGraphStyleRibbon;
        } else if (*name == "WindowPosition") {
            GraphWindowSettings placed = settings;
            if (ParsePosition(*value, placed))
                settings = placed;
        }
    }
    return settings;
}

GraphWindowSettings LoadGraphWindowSettings(const std::filesystem::path& path)
{
    std::ifstream in(path, std::ios::binary);
    if (!in)
        return GraphWindowSettings();
    // The file is a handful of lines; anything much bigger is not ours.
    std::string text(kMaxFileBytes, '\0');
    in.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(in.gcount()));
    return ParseGraphWindowSettings(text);
}

bool SaveGraphWindowSettings(const GraphWindowSettings& settings, const std::filesystem::path& path)
{
    return ost::ReplaceTextFile(path, FormatGraphWindowSettings(settings));
}

} // namespace quirnel
