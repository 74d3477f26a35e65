#include "ostrand/settings/settings_exchange.h"

#include "ostrand/settings/settings_file.h"

namespace ost {
namespace {

template <typename T>
void Exchange(SettingsFile& file, SettingsDirection direction, const std::string& section,
              std::string_view key, T& value)
{
    if (direction == SettingsDirection::Write) {
        file.Set(section, key, SettingsValue(value));
        return;
    }
    const SettingsValue* stored = file.Find(section, key);
    if (stored && std::holds_alternative<T>(*stored))
        value = std::get<T>(*stored);
}

} // namespace

SettingsExchange::SettingsExchange(SettingsFile& file, SettingsDirection direction)
    : m_file(file), m_direction(direction)
{}

void SettingsExchange::Section(std::string_view name)
{
    m_section.assign(name);
}

void SettingsExchange::Bool(std::string_view key, bool& value)
{
    Exchange(m_file, m_direction, m_section, key, value);
}

void SettingsExchange::Int(std::string_view key, int& value)
{
    Exchange(m_file, m_direction, m_section, key, value);
}

void SettingsExchange::Double(std::string_view key, double& value)
{
    if (IsReading()) {
        // A number typed by hand without a decimal point is still the number meant.
        const SettingsValue* stored = m_file.Find(m_section, key);
        if (stored && std::holds_alternative<int>(*stored)) {
            value = std::get<int>(*stored);
            return;
        }
    }
    Exchange(m_file, m_direction, m_section, key, value);
}

void SettingsExchange::Text(std::string_view key, std::string& value)
{
    Exchange(m_file, m_direction, m_section, key, value);
}

void SettingsExchange::Wide(std::string_view key, std::u16string& value)
{
    Exchange(m_file, m_direction, m_section, key, value);
}

std::optional<std::string> SettingsExchange::ReadText(std::string_view key) const
{
    return m_file.GetText(m_section, key);
}

void SettingsExchange::WriteText(std::string_view key, std::string_view text)
{
    m_file.SetText(m_section, key, text);
}

void SettingsExchange::Remove(std::string_view key)
{
    m_file.Remove(m_section, key);
}

} // namespace ost
