#pragma once
// The graph window's own settings, kept in "graph.xml" in the settings folder: grid lines,
// drawing style and where the window was. A missing or damaged file gives the defaults.

#include <filesystem>
#include <string>
#include <string_view>

namespace quirnel {

inline constexpr int kGraphStyleLine = 0;
inline constexpr int kGraphStyleRibbon = 1;

struct GraphWindowSettings
{
    bool horizontalLines = true;
    bool verticalLines = false;
    int style = kGraphStyleLine;
    /// "WindowPosition": set once the window was placed.
    bool hasPosition = false;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
};

/// The file's name in the settings folder.
inline constexpr std::string_view kGraphSettingsFile = "graph.xml";

std::string FormatGraphWindowSettings(const GraphWindowSettings& settings);
/// Reads what it can: unknown or malformed entries keep their defaults.
GraphWindowSettings ParseGraphWindowSettings(std::string_view xml);

GraphWindowSettings LoadGraphWindowSettings(const std::filesystem::path& path);
/// Through a temporary file beside it; false when it could not be written.
bool SaveGraphWindowSettings(const GraphWindowSettings& settings,
                             const std::filesystem::path& path);

} // namespace quirnel
