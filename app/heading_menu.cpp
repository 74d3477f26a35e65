#include "app/heading_menu.h"

#include "app/command_ids.h"

namespace quirnel {

void AddHeadingColumnEntries(int column, bool columnSearch, std::vector<MenuEntry>& entries)
{
    if (column < 1)
        return;
    struct Item
    {
        int id;
        const char* text;
        bool search;
    };
    static const Item kItems[] = {
        {cmd::kHeadingCombineColumns, "Combine columns", false},
        {cmd::kHeadingCopyColumn, "Copy column", false},
        {cmd::kHeadingDeleteColumn, "Delete column", false},
        {cmd::kHeadingInsertColumnAfter, "Insert column after", false},
        {cmd::kHeadingInsertColumnBefore, "Insert column before", false},
        {cmd::kHeadingMoveColumnLeft, "Move column left", false},
        {cmd::kHeadingMoveColumnRight, "Move column right", false},
        {cmd::kHeadingRenameColumn, "Rename column", false},
        {cmd::kHeadingSearchColumn, "Search column\tCtrl+Shift+N", true},
        {cmd::kHeadingSearchColumnContinue, "Search column/continue\tCtrl+N", true},
    };
    for (const Item& item : kItems) {
        if (item.search && !columnSearch)
            continue;
        MenuEntry entry;
        entry.text = item.text;
        entry.command = item.id;
        entries.push_back(std::move(entry));
    }
}

} // namespace quirnel
