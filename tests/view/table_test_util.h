#pragma once
// Small tables built in code for the grid tests, and the invariants every operation keeps.

#include "view/table_control.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace quirnel::test {

/// View state kept in memory, remembering the order keys were written in.
class MapStore : public ViewStateStore
{
public:
    std::optional<std::string> ReadText(const std::string& key) override
    {
        auto it = values.find(key);
        return it == values.end() ? std::nullopt : std::optional<std::string>(it->second);
    }
    void WriteText(const std::string& key, const std::string& value) override
    {
        values[key] = value;
        written.push_back(key);
    }
    std::map<std::string, std::string> values;
    std::vector<std::string> written;
};

/// A table with the given data-column names and rows of 8-bit cells.
inline void Fill(TableControl& table, std::initializer_list<const char*> columns,
                 std::initializer_list<std::initializer_list<const char*>> rows)
{
    for (const char* name : columns) {
        TableColumn column;
        column.headerText = name;
        table.AddColumn(column);
    }
    table.SetRowCount(static_cast<int>(rows.size()));
    int r = 0;
    for (const auto& row : rows) {
        int c = 1;
        for (const char* text : row)
            table.SetCellText8(r, c++, text);
        ++r;
    }
}

/// The texts of one column in display order.
inline std::vector<std::string> ColumnInDisplayOrder(const TableControl& table, int column)
{
    std::vector<std::string> texts;
    for (int p = 0; p < table.RowCount(); ++p)
        texts.emplace_back(table.CellText8(table.RowAtDisplayPosition(p), column));
    return texts;
}

/// Display order is a permutation, positions agree with it, and hidden rows come after the
/// visible ones (a trailing row last of all).
inline void ExpectOrderInvariants(const TableControl& table)
{
    const int count = table.RowCount();
    std::vector<int> seen(static_cast<std::size_t>(count), 0);
    int visible = 0;
    for (int p = 0; p < count; ++p) {
        int row = table.RowAtDisplayPosition(p);
        ASSERT_GE(row, 0);
        ASSERT_LT(row, count);
        ++seen[static_cast<std::size_t>(row)];
        EXPECT_EQ(table.DisplayPosition(row), p);
        if (!table.IsRowHidden(row))
            ++visible;
    }
    for (int n : seen)
        EXPECT_EQ(n, 1);
    EXPECT_EQ(table.VisibleRowCount(), visible);
    const int trailing = table.TrailingRow();
    int end = trailing >= 0 ? count - 1 : count;
    if (trailing >= 0) {
        EXPECT_EQ(table.RowAtDisplayPosition(count - 1), trailing);
    }
    bool inHidden = false;
    for (int p = 0; p < end; ++p) {
        bool hidden = table.IsRowHidden(table.RowAtDisplayPosition(p));
        if (inHidden) {
            EXPECT_TRUE(hidden) << "visible row after a hidden one at position " << p;
        }
        inHidden = inHidden || hidden;
    }
    int selected = 0;
    for (int row = 0; row < count; ++row)
        selected += table.IsRowSelected(row) ? 1 : 0;
    EXPECT_EQ(table.SelectedRowCount(), selected);
}

} // namespace quirnel::test
