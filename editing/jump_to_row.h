#pragma once
// "Jump To Row": what the dialog asks for and how the typed answer becomes a row, apart from the
// dialog so that every answer a user can type is decided (and tested) without a widget.

#include <optional>
#include <string>

namespace quirnel {

/// The title of every box the command shows; the command's label.
inline constexpr const char* kJumpToRowTitle = "Jump To Row";

struct JumpToRowRequest
{
    /// What the user typed: a row number counted from 1, as the "#" column shows it.
    std::string rowText;
    /// Rows in the table; a number must lie in 1 .. rowCount.
    int rowCount = 0;
};

/// The dialog's starting text: the focus row's number, or empty when there is no focus row.
JumpToRowRequest MakeJumpToRowRequest(int focusRow, int rowCount);

/// The storage row (0-based) the answer names. When there is none, nullopt and `error` holds
/// the sentence to show the user.
std::optional<int> JumpToRowTarget(const JumpToRowRequest& request, std::string& error);

/// What the user is told when the named row is hidden by the row filter.
std::string JumpToHiddenRowMessage(int row);

} // namespace quirnel
