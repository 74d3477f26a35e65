#pragma once
// One routine per object both reads and writes its settings: it names a section, then passes
// each of its variables key by key, in a fixed order, to an exchange that either fills them
// from the settings file or stores them into it.
//
//     void MainWindow::ExchangeSettings(ost::SettingsExchange& ex)
//     {
//         ex.Section("Settings");
//         ex.Bool("NoConfirmDeleteRow", m_noConfirmDeleteRow);
//         ex.Int("Charset", m_charset);
//     }

#include <optional>
#include <string>
#include <string_view>

namespace ost {

class SettingsFile;

enum class SettingsDirection
{
    Read,
    Write
};

class SettingsExchange
{
public:
    /// The file must outlive the exchange. Until Section() is called the section is "".
    SettingsExchange(SettingsFile& file, SettingsDirection direction);

    bool IsReading() const { return m_direction == SettingsDirection::Read; }
    SettingsFile& File() { return m_file; }

    /// Selects the section for the keys that follow.
    void Section(std::string_view name);
    const std::string& CurrentSection() const { return m_section; }

    /// Reading sets the variable only when the key is present with this type, so the
    /// variable's prior value is the default; writing stores it. Double also reads an integer.
    void Bool(std::string_view key, bool& value);
    void Int(std::string_view key, int& value);
    void Double(std::string_view key, double& value);
    /// 8-bit text, any bytes.
    void Text(std::string_view key, std::string& value);
    void Wide(std::string_view key, std::u16string& value);

    /// Direct access to an 8-bit text value of the current section, in either direction, for
    /// values whose text the owner formats and parses itself (a grid's view state).
    std::optional<std::string> ReadText(std::string_view key) const;
    void WriteText(std::string_view key, std::string_view text);
    /// Drops a key of the current section (a value that is no longer worth keeping).
    void Remove(std::string_view key);

private:
    SettingsFile& m_file;
    SettingsDirection m_direction;
    std::string m_section;
};

} // namespace ost
