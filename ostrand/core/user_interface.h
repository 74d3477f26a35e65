#pragma once
// How toolkit-free code talks to the person at the screen: message boxes, the warning sound and
// a progress display with cancel. The editor implements it with Qt; tests answer from a script.

#include <cstdint>
#include <string>
#include <vector>

namespace ost {

enum class MessageIcon
{
    None,
    Information,
    Warning,
    Error,
    Question
};

/// Standard buttons; a request may combine them. The pressed one comes back as its value.
enum StandardButton : unsigned
{
    kButtonNone = 0,
    kButtonOk = 1u << 0,
    kButtonCancel = 1u << 1,
    kButtonYes = 1u << 2,
    kButtonNo = 1u << 3,
    kButtonRetry = 1u << 4,
    kButtonAbort = 1u << 5,
    kButtonIgnore = 1u << 6,
};

/// Extra buttons answer with their id; ids start here so they never clash with the standard ones.
inline constexpr int kFirstExtraButtonId = 1000;

struct ExtraButton
{
    /// A leading backquote marks a framework button; it is not displayed.
    std::string caption;
    std::string tip;
    int id = kFirstExtraButtonId;
};

/// Texts are UTF-8.
struct MessageBoxRequest
{
    std::string title;
    std::string text;
    MessageIcon icon = MessageIcon::None;
    /// The image of the command that asks (its name in the command table); empty for none.
    std::string commandIcon;
    unsigned buttons = kButtonOk;
    std::vector<ExtraButton> extraButtons;
    /// Optional check box ("Don't ask again"); shown when the text is not empty, bound to *checked.
    std::string checkBoxText;
    bool* checked = nullptr;
    /// The check box's help text; empty for none.
    std::string checkBoxTip;
    /// The button (standard value or extra id) that Enter presses; 0 lets the toolkit choose.
    int defaultButton = 0;
};

/// Caption as displayed: without the framework's leading backquote marker.
std::string DisplayedCaption(const std::string& caption);

class UserInterface
{
public:
    virtual ~UserInterface() = default;

    /// Shows the box and returns the pressed button: a StandardButton value or an extra id.
    virtual int MessageBox(const MessageBoxRequest& request) = 0;
    /// The warning sound of an impossible move, when sound effects are on.
    virtual void Beep() = 0;

    /// Long work: Begin, then Update with the share done (0..1) which returns false when the
    /// user cancelled, then End. Nested use is not supported.
    virtual void BeginProgress(const std::string& text) = 0;
    virtual bool UpdateProgress(double fraction) = 0;
    virtual void EndProgress() = 0;

    /// Convenience wrappers for the common boxes.
    int Message(const std::string& title, const std::string& text,
                MessageIcon icon = MessageIcon::Information, unsigned buttons = kButtonOk);
};

} // namespace ost
