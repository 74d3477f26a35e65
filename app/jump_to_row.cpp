#include "app/jump_to_row.h"

#include <string_view>

namespace quirnel {

namespace {

std::string_view Trimmed(std::string_view text)
{
    const auto blank = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
    while (!text.empty() && blank(text.front()))
        text.remove_prefix(1);
    while (!text.empty() && blank(text.back()))
        text.remove_suffix(1);
    return text;
}

std::string RangeSentence(int rowCount)
{
    return "Please enter a row number from 1 to " + std::to_string(rowCount) + ".";
}

} // namespace

JumpToRowRequest MakeJumpToRowRequest(int focusRow, int rowCount)
{
    JumpToRowRequest request;
    request.rowCount = rowCount;
    if (focusRow >= 0 && focusRow < rowCount)
        request.rowText = std::to_string(focusRow + 1);
    return request;
}

std::optional<int> JumpToRowTarget(const JumpToRowRequest& request, std::string& error)
{
    error.clear();
    if (request.rowCount < 1) {
        error = "This tool cannot run on an empty table.";
        return std::nullopt;
    }
    std::string_view text = Trimmed(request.rowText);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    bool digits = !text.empty();
    for (char c : text)
        digits = digits && c >= '0' && c <= '9';
    if (!digits) {
        error = "\"" + std::string(Trimmed(request.rowText)) + "\" is not a row number.  " +
                RangeSentence(request.rowCount);
        return std::nullopt;
    }
    while (text.size() > 1 && text.front() == '0')
        text.remove_prefix(1);
    // Accumulated in 64 bits and stopped past the table, so a long run of digits cannot
    // overflow into a row that exists.
    long long number = 0;
    for (char c : text) {
        number = number * 10 + (c - '0');
        if (number > request.rowCount)
            break;
    }
    if (number < 1 || number > request.rowCount) {
        error = "There is no row " + std::string(text) + ".  " + RangeSentence(request.rowCount);
        return std::nullopt;
    }
    return static_cast<int>(number - 1);
}

std::string JumpToHiddenRowMessage(int row)
{
    return "Row " + std::to_string(row + 1) +
           " is hidden by the row filter.  Turn the filter off to see it.";
}

} // namespace quirnel
