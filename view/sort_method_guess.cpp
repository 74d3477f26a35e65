#include "view/sort_method_guess.h"

#include "view/table_control.h"
#include "view/value_readers.h"

namespace quirnel {

namespace {

enum : unsigned
{
    kMaybeNumber = 1,
    kMaybeDate = 2,
    kMaybeMemory = 4,
};

template <class Text> unsigned Candidates(Text text, unsigned still, bool dayFirst)
{
    unsigned result = 0;
    const bool number = IsWholeNumber(text);
    if ((still & kMaybeNumber) && number)
        result |= kMaybeNumber;
    if ((still & kMaybeDate) && ReadDateTime(text, dayFirst))
        result |= kMaybeDate;
    // A plain number reads as a size in bytes; only a unit makes a text a memory size.
    if ((still & kMaybeMemory) && !number && ReadMemorySize(text))
        result |= kMaybeMemory;
    return result;
}

bool Blank(std::string_view text)
{
    return text.find_first_not_of(" \t") == std::string_view::npos;
}

bool Blank(std::u16string_view text)
{
    return text.find_first_not_of(u" \t") == std::u16string_view::npos;
}

} // namespace

int GuessSortMethod(const TableControl& table, int column, bool dayFirst)
{
    if (column < 1 || column >= table.ColumnCount())
        return kSortTextNoCase;
    const int rows = table.RowCount();
    unsigned still = kMaybeNumber | kMaybeDate | kMaybeMemory;
    bool seen = false;
    auto look = [&](int row) {
        const TableCell cell = table.Cell(row, column);
        if (cell.flags & CELL_WIDE) {
            if (Blank(cell.textWide))
                return;
            still = Candidates(cell.textWide, still, dayFirst);
        } else {
            if (Blank(cell.text))
                return;
            still = Candidates(cell.text, still, dayFirst);
        }
        seen = true;
    };
    const int head = rows < kSortGuessSample ? rows : kSortGuessSample;
    for (int row = 0; row < head && still; ++row)
        look(row);
    const long long rest = rows - head;
    for (int k = 0; k < kSortGuessSample && rest > 0 && still; ++k)
        look(head + static_cast<int>(rest * k / kSortGuessSample));
    if (!seen || !still)
        return kSortTextNoCase;
    if (still & kMaybeNumber)
        return kSortNumeric;
    if (still & kMaybeDate)
        return kSortDateTime;
    return kSortMemory;
}

void GuessSortMethods(TableControl& table)
{
    const bool dayFirst = table.DayFirst();
    for (int column = 1; column < table.ColumnCount(); ++column)
        table.SetColumnSortMethod(column, GuessSortMethod(table, column, dayFirst));
}

} // namespace quirnel
