#include "app/toolbar_model.h"

#include "ostrand/settings/settings_exchange.h"

#include <charconv>

namespace quirnel {
namespace {

std::optional<int> ParseInt(std::string_view text)
{
    int value = 0;
    const char* end = text.data() + text.size();
    const auto [ptr, ec] = std::from_chars(text.data(), end, value);
    if (ec != std::errc() || ptr != end || text.empty()) {
        return std::nullopt;
    }
    return value;
}

std::optional<bool> ParseBool(std::string_view text)
{
    if (text == "1") {
        return true;
    }
    if (text == "0") {
        return false;
    }
    return std::nullopt;
}

constexpr std::string_view kRecordVersion = "v1";

} // namespace

bool ToolbarModel::RegisterCommand(std::string_view icon, int id, std::string_view description,
                                   std::string_view label, bool hiddenByDefault,
                                   std::string_view caption, std::string_view shortcut,
                                   bool lastInGroup)
{
    if (icon.empty() || id == 0 || IndexOf(id) >= 0) {
        return false;
    }
    ToolbarEntry entry;
    entry.kind = CommandKind::Button;
    entry.id = id;
    entry.icon = icon;
    entry.description = description;
    entry.label = label;
    entry.caption = caption;
    entry.shortcut = shortcut;
    entry.defaultVisible = entry.visible = !hiddenByDefault;
    entry.defaultLastInGroup = entry.lastInGroup = lastInGroup;
    m_entries.push_back(std::move(entry));
    return true;
}

void ToolbarModel::AddToolbarGroupLabel(std::string_view caption, bool hiddenByDefault)
{
    ToolbarEntry entry;
    entry.kind = CommandKind::GroupCaption;
    entry.label = caption;
    entry.caption = caption;
    entry.defaultVisible = entry.visible = !hiddenByDefault;
    m_entries.push_back(std::move(entry));
}

int ToolbarModel::IndexOf(int id) const
{
    if (id == 0) {
        return -1;
    }
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].id == id) {
            return static_cast<int>(i);
        }
    }
    return -1;
}

void ToolbarModel::SetVisible(int index, bool visible)
{
    if (index >= 0 && index < static_cast<int>(m_entries.size())) {
        m_entries[static_cast<std::size_t>(index)].visible = visible;
    }
}

void ToolbarModel::SetLastInGroup(int index, bool lastInGroup)
{
    if (index >= 0 && index < static_cast<int>(m_entries.size())) {
        m_entries[static_cast<std::size_t>(index)].lastInGroup = lastInGroup;
    }
}

void ToolbarModel::Reset()
{
    for (ToolbarEntry& entry : m_entries) {
        entry.visible = entry.defaultVisible;
        entry.lastInGroup = entry.defaultLastInGroup;
    }
}

bool ToolbarModel::SetSize(int pixels)
{
    for (const ToolbarSizeChoice& choice : kToolbarSizes) {
        if (choice.pixels == pixels) {
            m_size = pixels;
            return true;
        }
    }
    return false;
}

std::vector<ToolbarSlot> ToolbarModel::Layout() const
{
    std::vector<ToolbarSlot> slots;
    bool gapOwed = false;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        const ToolbarEntry& entry = m_entries[i];
        if (entry.visible) {
            if (gapOwed && !slots.empty()) {
                slots.push_back({true, -1});
            }
            gapOwed = false;
            slots.push_back({false, static_cast<int>(i)});
        }
        gapOwed = gapOwed || entry.lastInGroup;
    }
    return slots;
}

std::string ToolbarModel::CustomizationRecord() const
{
    std::string record(kRecordVersion);
    int group = 0;
    for (const ToolbarEntry& entry : m_entries) {
        record += ';';
        if (entry.kind == CommandKind::GroupCaption) {
            record += 'g' + std::to_string(group++);
        } else {
            record += std::to_string(entry.id);
        }
        record += ':';
        record += entry.visible ? '1' : '0';
        record += entry.lastInGroup ? '1' : '0';
    }
    return record;
}

bool ToolbarModel::ApplyCustomizationRecord(std::string_view record)
{
    const std::size_t head = record.find(';');
    if (record.substr(0, head) != kRecordVersion) {
        return false;
    }
    std::vector<int> groupIndexes;
    for (std::size_t i = 0; i < m_entries.size(); ++i) {
        if (m_entries[i].kind == CommandKind::GroupCaption) {
            groupIndexes.push_back(static_cast<int>(i));
        }
    }
    std::size_t pos = head;
    while (pos != std::string_view::npos && pos < record.size()) {
        const std::size_t start = pos + 1;
        pos = record.find(';', start);
        const std::string_view piece = record.substr(
            start, pos == std::string_view::npos ? std::string_view::npos : pos - start);
        const std::size_t colon = piece.find(':');
        if (colon == std::string_view::npos || piece.size() != colon + 3) {
            continue;
        }
        const std::string_view key = piece.substr(0, colon);
        const std::optional<bool> visible = ParseBool(piece.substr(colon + 1, 1));
        const std::optional<bool> last = ParseBool(piece.substr(colon + 2, 1));
        if (!visible || !last || key.empty()) {
            continue;
        }
        int index = -1;
        if (key[0] == 'g') {
            const std::optional<int> ordinal = ParseInt(key.substr(1));
            if (ordinal && *ordinal >= 0 && *ordinal < static_cast<int>(groupIndexes.size())) {
                index = groupIndexes[static_cast<std::size_t>(*ordinal)];
            }
        } else if (const std::optional<int> id = ParseInt(key)) {
            index = IndexOf(*id);
        }
        if (index >= 0) {
            SetVisible(index, *visible);
            SetLastInGroup(index, *last);
        }
    }
    return true;
}

void ToolbarModel::Exchange(ost::SettingsExchange& exchange)
{
    exchange.Section(kToolbarSection);
    exchange.Bool("ToolbarShown", m_shown);
    int size = m_size;
    exchange.Int("Size", size);
    int appearance = static_cast<int>(m_appearance);
    exchange.Int("Appearance", appearance);
    exchange.Bool("NoTips", m_noTips);
    std::string record = CustomizationRecord();
    exchange.Text("Custm", record);
    if (exchange.IsReading()) {
        SetSize(size);
        if (appearance == 0 || appearance == 1) {
            m_appearance = static_cast<ToolbarAppearance>(appearance);
        }
        ApplyCustomizationRecord(record);
    }
}

void BuildMainToolbar(ToolbarModel& toolbar)
{
    for (const CommandSpec& command : CommandTable()) {
        if (command.kind == CommandKind::Button) {
            toolbar.RegisterCommand(command.icon, command.id, command.description, command.label,
                                    command.hiddenByDefault, command.caption, command.shortcut,
                                    command.lastInGroup);
        } else if (command.kind == CommandKind::GroupCaption) {
            toolbar.AddToolbarGroupLabel(command.caption, command.hiddenByDefault);
        }
    }
}

} // namespace quirnel
