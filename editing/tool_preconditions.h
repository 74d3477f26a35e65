#pragma once
// The check every table-editing command runs before it touches the table: is a file open (and
// may one be opened or created now), has the table the columns, rows, current cell or row
// selection the command needs. The first failing test tells the user why and stops the command.

#include <string>
#include <string_view>

namespace quirnel {

struct ToolContext;

/// Flag bits of CheckToolPreconditions; any combination.
inline constexpr unsigned kToolNeedsCell = 0x01;        ///< a current data cell
inline constexpr unsigned kToolRefusesSelection = 0x02; ///< no selected rows
inline constexpr unsigned kToolCellOrSelection = 0x04;  ///< a current cell or a selection
inline constexpr unsigned kToolNeedsRows = 0x08;        ///< at least one row
inline constexpr unsigned kToolAllowsNoColumns = 0x10;  ///< runs without data columns
inline constexpr unsigned kToolNeedsColumn = 0x20;      ///< a current data column
inline constexpr unsigned kToolMayCreateFile = 0x40;    ///< offers New File besides Open File
inline constexpr unsigned kToolNeedsTwoRows = 0x80;     ///< at least two rows
inline constexpr unsigned kToolGoesOnAfterOpen = 0x100; ///< carries on once a file is open

/// True when the command must stop (the user has been told why); false when it may go on.
/// `title` is the command's caption and titles every box; `icon` is the command's image.
bool CheckToolPreconditions(ToolContext& context, unsigned flags, const std::string& title,
                            std::string_view icon);

/// An information box with only OK, titled with the command's caption and showing its image.
void InformUser(ToolContext& context, const std::string& title, std::string_view text,
                std::string_view icon);

} // namespace quirnel
