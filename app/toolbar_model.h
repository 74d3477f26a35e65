#pragma once
// The main toolbar as data: the registered entries with their defaults, the user's
// customisation (visible, last in group, appearance, size, tips) and its persisted form under
// the "Toolbar" section. The Qt toolbar only mirrors Layout().

#include "app/command_table.h"

#include <string>
#include <string_view>
#include <vector>

namespace ost {
class SettingsExchange;
} // namespace ost

namespace quirnel {

enum class ToolbarAppearance
{
    IconsOnly = 0,
    IconsAndLabel = 1,
};

struct ToolbarEntry
{
    CommandKind kind = CommandKind::Button;
    int id = 0;
    std::string icon;
    std::string description;
    std::string label;
    std::string caption;
    std::string shortcut;
    bool defaultVisible = true;
    bool defaultLastInGroup = false;
    bool visible = true;
    bool lastInGroup = false;
};

/// One place on the bar: an entry (index into Entries()) or a gap.
struct ToolbarSlot
{
    bool gap = false;
    int entry = -1;
};

struct ToolbarSizeChoice
{
    int pixels;
    std::string_view name;
};

/// Icon sizes offered under "Size: " and "Toolbar size", smallest first.
inline constexpr ToolbarSizeChoice kToolbarSizes[] = {
    {16, "Small"},
    {24, "Medium"},
    {32, "Large"},
};
inline constexpr int kDefaultToolbarSize = 24;

inline constexpr std::string_view kToolbarSection = "Toolbar";

class ToolbarModel
{
public:
    /// Appends a command button; false, and nothing added, when the icon is empty or the id
    /// is already on the bar.
    bool RegisterCommand(std::string_view icon, int id, std::string_view description,
                         std::string_view label, bool hiddenByDefault, std::string_view caption,
                         std::string_view shortcut, bool lastInGroup = false);
    void AddToolbarGroupLabel(std::string_view caption, bool hiddenByDefault);

    const std::vector<ToolbarEntry>& Entries() const { return m_entries; }
    /// Index into Entries() of the button with this id, or -1.
    int IndexOf(int id) const;

    /// Out-of-range indexes are ignored.
    void SetVisible(int index, bool visible);
    void SetLastInGroup(int index, bool lastInGroup);
    /// Every entry back to its registered defaults; appearance, size and tips stay.
    void Reset();

    ToolbarAppearance Appearance() const { return m_appearance; }
    void SetAppearance(ToolbarAppearance appearance) { m_appearance = appearance; }
    /// Icon size in pixels, one of kToolbarSizes.
    int Size() const { return m_size; }
    /// False for a size that is not offered.
    bool SetSize(int pixels);
    bool NoTips() const { return m_noTips; }
    void SetNoTips(bool noTips) { m_noTips = noTips; }
    bool Shown() const { return m_shown; }
    void SetShown(bool shown) { m_shown = shown; }

    /// The visible entries in order with the gaps between groups. A gap owed by a hidden
    /// last-in-group entry still separates the groups; no gap leads or doubles.
    std::vector<ToolbarSlot> Layout() const;

    /// The per-entry customisation as text: "v1" then ";key:VL" per entry, key being the
    /// command id or "g" + the group caption's ordinal, V and L "0"/"1". Keyed rather than
    /// positional, so a later table with more or fewer entries keeps what still matches.
    std::string CustomizationRecord() const;
    /// Applies a record; unknown keys and malformed pieces are skipped, entries the record
    /// does not name keep their current state. False when the text is not such a record.
    bool ApplyCustomizationRecord(std::string_view record);

    /// Reads or writes "ToolbarShown", "Size", "Appearance", "NoTips" and "Custm" under
    /// "Toolbar". Missing or damaged values keep the current ones.
    void Exchange(ost::SettingsExchange& exchange);

private:
    std::vector<ToolbarEntry> m_entries;
    ToolbarAppearance m_appearance = ToolbarAppearance::IconsAndLabel;
    int m_size = kDefaultToolbarSize;
    bool m_noTips = false;
    bool m_shown = true;
};

/// Registers every button and group caption of the command table, in its order.
void BuildMainToolbar(ToolbarModel& toolbar);

} // namespace quirnel
