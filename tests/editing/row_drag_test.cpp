// Rows dragged by the "#" column: where they land, what a sorted table does with them, and that
// only our own payload is taken for a row drag.

#include "editing/row_drag.h"
#include "editing/tool_context.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

using Strings = std::vector<std::string>;

struct RowDrag : EditingFixture, ::testing::Test
{
    RowDrag() { Open({"name"}, {{"a"}, {"b"}, {"c"}, {"d"}, {"e"}}); }
};

TEST_F(RowDrag, SelectedRowsMoveTogetherBeforeTheTarget)
{
    Select({1, 3});
    const std::vector<int> rows = DraggedRows(context, 3);
    EXPECT_EQ(rows, (std::vector<int>{1, 3}));
    MoveRowsToCommand(context, rows, 0);
    EXPECT_EQ(Stored(), (Strings{"b", "d", "a", "c", "e"}));
    EXPECT_EQ(document.Table().FocusRow(), 0);
    EXPECT_TRUE(document.Table().IsRowSelected(0)) << "the selection travels with its rows";
    EXPECT_TRUE(document.Modified());
}

TEST_F(RowDrag, AnUnselectedRowMovesAloneAndPastTheEndMeansLast)
{
    Select({2});
    EXPECT_EQ(DraggedRows(context, 0), (std::vector<int>{0}));
    MoveRowsToCommand(context, {0}, -1);
    EXPECT_EQ(Stored(), (Strings{"b", "c", "d", "e", "a"}));
    MoveRowsToCommand(context, {1}, 3);
    EXPECT_EQ(Stored(), (Strings{"b", "d", "c", "e", "a"}));
}

TEST_F(RowDrag, ImpossibleMovesBeepAndChangeNothing)
{
    MoveRowsToCommand(context, {2}, 2);
    MoveRowsToCommand(context, {2}, 3);
    MoveRowsToCommand(context, {9}, 0);
    document.Table().SetSort(1, false);
    MoveRowsToCommand(context, {0}, 4);
    EXPECT_EQ(ui.Beeps(), 4);
    EXPECT_EQ(Stored(), (Strings{"a", "b", "c", "d", "e"}));
    EXPECT_FALSE(document.Modified());
}

TEST(RowDragPayload, RoundTripsAndRefusesForeignText)
{
    const RowDragPayload payload{42, {0, 7, 1000000}};
    const auto back = DecodeRowDrag(EncodeRowDrag(payload));
    ASSERT_TRUE(back);
    EXPECT_EQ(back->source, 42u);
    EXPECT_EQ(back->rows, payload.rows);
    for (const char* foreign : {"", "1:", "x:1", "1:2,", "1:-3", "1:2;3", "file:///tmp/a.csv"})
        EXPECT_FALSE(DecodeRowDrag(foreign)) << foreign;
}

} // namespace
} // namespace quirnel::test
