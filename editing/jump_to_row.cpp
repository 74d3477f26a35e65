#include "editing/jump_to_row.h"

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
    std::string sentence = "Please enter a row number from 1 to ";
    sentence += std::to_string(rowCount);
    sentence += '.';
    return sentence;
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
        // Built in a local: `error` might be the request's own text as far as GCC 12 -O3 can
        // tell, and its -Wrestrict then reports the copy as overlapping.
        std::string message = "\"";
        message.append(Trimmed(request.rowText));
        message += "\" is not a row number.  ";
        message += RangeSentence(request.rowCount);
        error = std::move(message);
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
        std::string message = "There is no row ";
        message.append(text);
        message += ".  ";
        message += RangeSentence(request.rowCount);
        error = std::move(message);
        return std::nullopt;
    }
    return static_cast<int>(number - 1);
}

std::string JumpToHiddenRowMessage(int row)
{
    std::string message = "Row ";
    message += std::to_string(row + 1);
    message += " is hidden by the row filter.  Turn the filter off to see it.";
    return message;
}

} // namespace quirnel
