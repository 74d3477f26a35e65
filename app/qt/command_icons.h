#pragma once
// The commands' images: small tiles drawn in code, coloured by the command's area (file,
// column, row, table, tools) with a symbol, so the set stays coherent and needs no files.

#include <QIcon>

#include <string_view>

namespace quirnel {

/// The image named in the command table; a null icon for an unknown or empty name.
QIcon CommandIcon(std::string_view name);

} // namespace quirnel
