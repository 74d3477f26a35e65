#pragma once
// The main window's keyboard accelerators as data: rows of (key code, modifier mask, command
// id). The Qt side binds each row; the core decides which rows exist and how they read.

#include <optional>
#include <string>
#include <vector>

namespace quirnel {

/// Modifier mask bits of an accelerator.
inline constexpr int kModShift = 1;
inline constexpr int kModCtrl = 2;
inline constexpr int kModAlt = 4;

/// Key codes: letters and digits are their upper-case ASCII codes; the rest follow the
/// virtual-key numbering, so codes stay stable if accelerators are ever persisted.
namespace key {
inline constexpr int kReturn = 0x0D;
inline constexpr int kPageUp = 0x21;
inline constexpr int kPageDown = 0x22;
inline constexpr int kUp = 0x26;
inline constexpr int kDown = 0x28;
inline constexpr int kInsert = 0x2D;
inline constexpr int kDelete = 0x2E;
inline constexpr int kF1 = 0x70;
inline constexpr int kF2 = 0x71;
inline constexpr int kF4 = 0x73;
inline constexpr int kF12 = 0x7B;
} // namespace key

/// The command ids an accelerator may carry.
inline constexpr int kFirstAcceleratorId = 1;
inline constexpr int kLastAcceleratorId = 18025;

struct Accelerator
{
    int keyCode = 0;
    int modifiers = 0;
    int id = 0;
};

class AcceleratorTable
{
public:
    /// False, and nothing registered, when the id lies outside 1..18025, the mask has bits
    /// other than Shift/Ctrl/Alt, the key is unknown, or the keys are already bound.
    bool RegisterAccelerator(int keyCode, int modifiers, int id);

    const std::vector<Accelerator>& Entries() const { return m_entries; }
    /// The command bound to these keys.
    std::optional<int> Find(int keyCode, int modifiers) const;

private:
    std::vector<Accelerator> m_entries;
};

/// Registers the main window's accelerators, the framework's Ctrl+O and Ctrl+S included.
void BuildMainAccelerators(AcceleratorTable& table);

/// "Ctrl+Shift+Alt+V", "Alt+PageUp", "F2": the form tool tips and menus show; empty for an
/// unknown key.
std::string ShortcutText(int keyCode, int modifiers);

} // namespace quirnel
