#pragma once
// Small settings-style files written whole: the new text goes to a temporary file beside the
// target, which then replaces it, so that a failed write never leaves half a file behind.

#include <filesystem>
#include <string_view>

namespace ost {

/// Writes `text` to `path` through "<path>.tmp". False, with the old file untouched and no
/// temporary file left, when anything failed. The folder must exist.
bool ReplaceTextFile(const std::filesystem::path& path, std::string_view text);

} // namespace ost
