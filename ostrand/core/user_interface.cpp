#include "ostrand/core/user_interface.h"

namespace ost {

std::string DisplayedCaption(const std::string& caption)
{
    if (!caption.empty() && caption.front() == '`')
        return caption.substr(1);
    return caption;
}

int UserInterface::Message(const std::string& title, const std::string& text, MessageIcon icon,
                           unsigned buttons)
{
    MessageBoxRequest request;
    request.title = title;
    request.text = text;
    request.icon = icon;
    request.buttons = buttons;
    return MessageBox(request);
}

} // namespace ost
