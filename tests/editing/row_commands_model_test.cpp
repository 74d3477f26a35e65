// A long random run of row commands, column insertions, deletions and moves, focus changes,
// selections, sorting and hiding, each step checked against a plain model of the table: rows in
// file order with their flags, the order they are shown in, and the focus as a row identity.
// The model moves one row at a time through vectors, so a fault in the table's one-pass paths
// (duplication, reordering, deletion by flags) or in a command's choice of the next current row
// shows up as a difference. Deleting the sort column leaves the rows where a sort put them; the
// row commands then work on the rows as shown.

#include "document/table_document.h"
#include "editing/column_commands.h"
#include "editing/row_commands.h"
#include "tests/support/editing_doubles.h"
#include "tests/view/table_test_util.h"
#include "view/table_control.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace quirnel::test {
namespace {

constexpr int kUnsort = ost::kFirstExtraButtonId;
constexpr int kYes = ost::kButtonYes;
constexpr int kNo = ost::kButtonNo;

struct Row
{
    int id = -1;
    std::vector<std::string> texts;
    bool hidden = false;
    bool selected = false;
};

/// One readable text for a whole table, so that a difference shows where it is.
std::string Picture(const std::vector<Row>& rows, const std::vector<int>& shown, int focusRow,
                    int focusColumn, int sortColumn)
{
    std::string out = "rows:";
    for (const Row& row : rows) {
        out += ' ';
        for (std::size_t c = 0; c < row.texts.size(); ++c)
            out += (c ? "," : "") + (row.texts[c].empty() ? std::string("_") : row.texts[c]);
        out += std::string(row.hidden ? "(h)" : "") + (row.selected ? "(s)" : "");
    }
    out += "\nshown:";
    for (int row : shown)
        out += ' ' + std::to_string(row);
    return out + "\nfocus: " + std::to_string(focusRow) + ", " + std::to_string(focusColumn) +
           "\nsort: " + std::to_string(sortColumn);
}

class RandomRun
{
public:
    explicit RandomRun(unsigned seed) : m_random(seed)
    {
        m_fx.Open({"A", "B", "C"}, {});
        m_columns = Pick(2, 3);
        m_fx.document.DeleteColumn(m_columns + 1);
        Refill();
    }

    void Run(int steps);

private:
    int Pick(int low, int high) { return std::uniform_int_distribution(low, high)(m_random); }
    bool Chance(int percent) { return Pick(1, 100) <= percent; }
    TableControl& Table() { return m_fx.document.Table(); }
    int Count() const { return static_cast<int>(m_rows.size()); }
    int Index(int id) const
    {
        auto it =
            std::find_if(m_rows.begin(), m_rows.end(), [id](const Row& r) { return r.id == id; });
        return it == m_rows.end() ? -1 : static_cast<int>(it - m_rows.begin());
    }
    Row& Find(int id) { return m_rows[Index(id)]; }
    /// The display position; -1 for no row.
    int Position(int id) const
    {
        const auto it = std::find(m_shown.begin(), m_shown.end(), id);
        return id < 0 || it == m_shown.end() ? -1 : static_cast<int>(it - m_shown.begin());
    }
    int Tally(bool Row::*flag, bool value) const
    {
        return static_cast<int>(std::count_if(m_rows.begin(), m_rows.end(),
                                              [&](const Row& row) { return row.*flag == value; }));
    }
    int Selected() const { return Tally(&Row::selected, true); }
    int Shown() const { return Tally(&Row::hidden, false); }
    std::vector<std::string> TableTexts(int row)
    {
        std::vector<std::string> texts;
        for (int c = 1; c <= m_columns; ++c)
            texts.emplace_back(Table().CellText8(row, c));
        return texts;
    }

    // In file order, rows show in file order; sorted, or in the order a deleted sort column
    // left, they keep their places. Hidden rows go last.
    bool Kept() const { return m_sortColumn < 0 && m_kept; }
    void Settle()
    {
        if (m_sortColumn < 0 && !m_kept) {
            m_shown.clear();
            for (const Row& row : m_rows)
                m_shown.push_back(row.id);
        }
        std::stable_partition(m_shown.begin(), m_shown.end(),
                              [this](int id) { return !Find(id).hidden; });
    }
    void Unsorted()
    {
        m_sortColumn = -1;
        m_ascending = true;
        m_kept = false;
        Settle();
    }
    void Erase(const std::vector<int>& ids)
    {
        for (int id : ids) {
            m_rows.erase(m_rows.begin() + Index(id));
            m_shown.erase(m_shown.begin() + Position(id));
        }
        Settle();
    }
    // The next current row is taken among the shown rows (all rows when none is shown).
    int AtClampedPosition(int position) const
    {
        const int last = (Shown() > 0 ? Shown() : Count()) - 1;
        return last < 0 ? -1 : m_shown[std::clamp(position, 0, last)];
    }
    void FrameDone(int focus)
    {
        const bool columnKept = m_focusColumn >= 1 && m_focusColumn <= m_columns;
        m_focus = focus;
        m_focusColumn = focus < 0 ? -1 : (columnKept ? m_focusColumn : 1);
        m_changed = true;
    }
    // Expects the precondition check's refusal, if any; true when the command stops.
    bool Refused(const std::string& title, unsigned flags)
    {
        const bool cell = m_focus >= 0 && m_focusColumn >= 1 && m_focusColumn <= m_columns;
        std::string text;
        if ((flags & 0x08) && Count() < 1)
            text = "This tool cannot run on an empty table.";
        else if ((flags & 0x80) && Count() < 2)
            text = "There must be at least two rows.";
        else if ((flags & 0x01) && !cell)
            text = "Please click on a cell first.";
        else if ((flags & 0x04) && !cell && Selected() == 0)
            text = "Either a cell must have input focus, or one or more rows must be selected.  "
                   "To give a cell input focus, simply click on it.  To select rows, hold down "
                   "the Ctrl key and click on cells in the first column which is labeled \"#\".";
        if (!text.empty())
            m_fx.ui.Expect(title, text);
        return !text.empty();
    }
    // A question the user mostly agrees to.
    bool Answer(const std::string& title, const std::string& text, int yes = kYes, int no = kNo)
    {
        const bool agreed = Chance(85);
        m_fx.ui.Expect(title, text, agreed ? yes : no);
        return agreed;
    }
    // A sorted table first offers "Unsort", then asks whether to go on.
    bool UnsortFirst(const std::string& title, const std::string& verb, const std::string& what)
    {
        if (m_sortColumn < 0)
            return true;
        if (!Answer(title,
                    "Rows cannot be " + verb +
                        " when the table is sorted.  To unsort the table, "
                        "right click on a column heading and choose \"Don't sort rows\".",
                    kUnsort, ost::kButtonCancel))
            return false;
        Unsorted();
        return Answer(title, "The table is now unsorted.  Do you still want to " + what);
    }

    // How the sort orders ties is the sort's own business: the model takes the table's order
    // once it has seen that the shown rows are in order.
    void AdoptSortedOrder()
    {
        m_shown.clear();
        for (int p = 0; p < Table().RowCount(); ++p) {
            const int row = Table().RowAtDisplayPosition(p);
            ASSERT_TRUE(row >= 0 && row < Count()) << "no row at position " << p;
            m_shown.push_back(m_rows[row].id);
        }
        auto key = [this](int p) {
            std::string text = Find(m_shown[p]).texts[m_sortColumn - 1];
            for (char& ch : text)
                ch = ch >= 'A' && ch <= 'Z' ? static_cast<char>(ch + 32) : ch;
            return text;
        };
        for (int p = 1; p < Shown(); ++p)
            EXPECT_TRUE(m_ascending ? key(p - 1) <= key(p) : key(p - 1) >= key(p))
                << "shown rows out of order at position " << p;
    }

    // A shuffle may give any order; the model follows it, matching rows by texts and flags
    // (rows that agree in both are interchangeable) and keeping the focus on its row.
    void AdoptShuffle()
    {
        ASSERT_EQ(Table().RowCount(), Count());
        std::vector<Row> left = m_rows;
        for (int r = 0; r < Count(); ++r) {
            const std::vector<std::string> texts = TableTexts(r);
            auto it = std::find_if(left.begin(), left.end(), [&](const Row& row) {
                return (row.id == m_focus) == (r == Table().FocusRow()) && row.texts == texts &&
                       row.hidden == Table().IsRowHidden(r) &&
                       row.selected == Table().IsRowSelected(r);
            });
            ASSERT_TRUE(it != left.end()) << "shuffling lost or changed the row now at " << r;
            m_rows[r] = *it;
            left.erase(it);
        }
        Unsorted();
        FrameDone(m_focus);
    }

    void Refill()
    {
        Table().Unsort();
        m_fx.document.SetRowCount(0);
        const int count = Chance(20) ? Pick(0, 3) : Pick(4, 30);
        m_fx.document.SetRowCount(count);
        // Few texts, so that duplicate rows are common; "a" and "A" are different rows.
        static const char* const kTexts[] = {"", "a", "A", "b"};
        m_rows.clear();
        for (int r = 0; r < count; ++r) {
            m_rows.push_back({m_nextId++, {}, false, false});
            for (int c = 1; c <= m_columns; ++c) {
                m_rows.back().texts.emplace_back(kTexts[Pick(0, 3)]);
                m_fx.document.SetCellText8(r, c, m_rows.back().texts.back());
            }
        }
        m_focus = -1;
        Unsorted();
        m_noConfirm = m_fx.prefs.noConfirmDeleteRow = Chance(30);
    }

    void RandomFocus()
    {
        const int row = Count() == 0 || Chance(10) ? -1 : Pick(0, Count() - 1);
        const int column = Chance(10) ? Pick(-1, 0) : Pick(1, m_columns);
        m_fx.Focus(row, column);
        m_focus = row < 0 ? -1 : m_rows[row].id;
        m_focusColumn = column;
    }

    // A selection with gaps, a single row or none, among the shown rows: a hidden one cannot
    // be clicked.
    void RandomSelection()
    {
        Table().DeselectAllRows();
        const int kind = Pick(0, 4);
        const int single = Count() ? Pick(0, Count() - 1) : -1;
        const int edge = Pick(1, 3); // runs packed against the top and bottom cannot move
        for (int r = 0; r < Count(); ++r) {
            Row& row = m_rows[r];
            const bool atEdge = r < edge || r >= Count() - edge;
            row.selected = !row.hidden && kind > 0 &&
                           (kind == 1 ? r == single : (kind == 2 && atEdge) || Chance(30));
            Table().SetRowSelected(r, row.selected);
        }
    }

    void ToggleHidden()
    {
        if (Count() == 0)
            return;
        const int r = Pick(0, Count() - 1);
        Row& row = m_rows[r];
        row.hidden = !row.hidden;
        row.selected = row.selected && !row.hidden;
        Table().SetRowHidden(r, row.hidden);
        if (!row.hidden && m_sortColumn >= 0)
            AdoptSortedOrder(); // a row shown again takes its sorted place
        else
            Settle();
    }

    void Sort()
    {
        const int column = Pick(1, m_columns);
        const bool ascending = Chance(50);
        Table().SetSort(column, ascending);
        if (column == m_sortColumn && ascending == m_ascending)
            return;
        m_sortColumn = column;
        m_ascending = ascending;
        m_kept = false;
        AdoptSortedOrder();
    }

    void Insert(int offset)
    {
        const std::string title = offset >= 2   ? "Create Row"
                                  : offset == 0 ? "Insert Row Before"
                                                : "Insert Row After";
        const std::string what = offset == 0 ? "before" : "after";
        if (offset < 2 &&
            !UnsortFirst(title, "inserted", "insert a new row " + what + " this one?"))
            return;
        if (Refused(title, offset < 2 ? 0x01 : 0x00))
            return;
        const long long wanted = m_focus < 0 ? Count() : Index(m_focus) + 1LL * offset;
        const auto at = static_cast<int>(std::clamp<long long>(wanted, 0, Count()));
        const Row row{m_nextId++, std::vector<std::string>(m_columns), false, false};
        const int shownAt = Position(m_focus) + offset;
        m_rows.insert(m_rows.begin() + at, row);
        // Sorted, a new row shows below every shown row; in a kept order, next to the current
        // row as shown.
        if (Kept() && offset < 2 && m_focus >= 0)
            m_shown.insert(m_shown.begin() + shownAt, row.id);
        else
            m_shown.push_back(row.id);
        Settle();
        FrameDone(row.id);
    }

    void Delete()
    {
        const int selected = Selected();
        const std::string title = selected >= 2 ? "Delete Rows" : "Delete Row";
        if (Refused(title, 0x04))
            return;
        if (!m_noConfirm) {
            const bool never = Chance(15);
            const bool yes = Chance(85);
            const std::string text =
                selected ? "Delete the " + std::to_string(selected) + " selected rows?"
                         : "Delete the current row?";
            m_fx.ui.Expect(title, text, yes ? kYes : kNo).CheckBox(never);
            m_noConfirm = never;
            if (!yes)
                return;
        }
        // The bound is p itself as it shrinks, deliberately.
        int p = Position(m_focus);
        for (int i = 0; i < p; ++i)
            p -= Find(m_shown[i]).selected ? 1 : 0;
        std::vector<int> doomed;
        for (const Row& row : m_rows)
            if (selected > 0 ? row.selected : row.id == m_focus)
                doomed.push_back(row.id);
        Erase(doomed);
        FrameDone(AtClampedPosition(p));
    }

    void Duplicate()
    {
        if (Refused("Duplicate Row(s)", 0x04))
            return;
        const bool selection = Selected() > 0;
        int focus = m_focus;
        for (int i = Count() - 1; i >= 0; --i) {
            const Row source = m_rows[i];
            if (selection ? !source.selected : source.id != m_focus)
                continue;
            const Row copy{m_nextId++, source.texts, false, false};
            m_rows.insert(m_rows.begin() + i + 1, copy);
            m_shown.insert(m_shown.begin() + Position(source.id) + 1, copy.id);
            focus = selection ? focus : copy.id;
        }
        Settle();
        FrameDone(focus);
    }

    // Among the shown rows in file order (or as shown, in a kept order), each moving row swaps
    // with its neighbour, one at a time; rows packed against the edge stay. Hidden rows keep
    // their places in the file.
    void Move(bool up)
    {
        const bool selection = Selected() > 0;
        const std::string title =
            std::string(selection ? "Move Rows " : "Move Row ") + (up ? "Up" : "Down");
        if (Refused(title, 0x04) ||
            !UnsortFirst(title, "moved",
                         std::string("move the ") + (selection ? "selected rows?" : "row?")))
            return;
        // The file places of the shown rows, in the order they are moved among.
        std::vector<int> slots;
        if (Kept()) {
            for (int id : m_shown)
                if (!Find(id).hidden)
                    slots.push_back(Index(id));
        } else {
            for (int i = 0; i < Count(); ++i)
                if (!m_rows[i].hidden)
                    slots.push_back(i);
        }
        std::vector<Row> line;
        for (int slot : slots)
            line.push_back(m_rows[slot]);
        if (!up)
            std::reverse(line.begin(), line.end());
        auto moving = [&](const Row& row) { return selection ? row.selected : row.id == m_focus; };
        // Walking away from the edge, a moving row meets a moving row next to it only inside
        // the run packed against the edge, which stays.
        bool moved = false;
        for (std::size_t k = 1; k < line.size(); ++k) {
            if (moving(line[k]) && !moving(line[k - 1])) {
                std::swap(line[k - 1], line[k]);
                moved = true;
            }
        }
        if (!moved) {
            ++m_beeps;
            return;
        }
        if (!up)
            std::reverse(line.begin(), line.end());
        for (std::size_t k = 0; k < slots.size(); ++k)
            m_rows[slots[k]] = line[k];
        if (Kept()) {
            // Each place on screen keeps its place in the file, so the screen shows the move.
            std::vector<int> shown;
            for (const Row& row : line)
                shown.push_back(row.id);
            for (int id : m_shown)
                if (Find(id).hidden)
                    shown.push_back(id);
            m_shown = shown;
        }
        Settle();
        FrameDone(m_focus);
    }

    void Deduplicate()
    {
        const std::string title = "Deduplicate Rows";
        if (Refused(title, 0x08))
            return;
        std::vector<int> duplicates;
        for (auto later = m_rows.begin(); later != m_rows.end(); ++later)
            if (std::any_of(m_rows.begin(), later,
                            [&](const Row& r) { return r.texts == later->texts; }))
                duplicates.push_back(later->id);
        if (duplicates.empty()) {
            m_fx.ui.Expect(title, "There are no duplicate rows.");
            return;
        }
        if (!Answer(title, "There are " + std::to_string(duplicates.size()) +
                               " rows that are duplicates of other rows.  Do you wish to "
                               "discard them?"))
            return;
        // Every deleted row shown above the current one moves it up by one.
        const int before = Position(m_focus);
        int p = before;
        for (int id : duplicates)
            p -= Position(id) < before ? 1 : 0;
        Erase(duplicates);
        FrameDone(m_focus < 0 ? -1 : AtClampedPosition(p));
    }

    // The command's own precondition refusal when it needs a current data column.
    bool RefusedWithoutColumn(const std::string& title)
    {
        if (m_focusColumn >= 1 && m_focusColumn <= m_columns)
            return false;
        m_fx.ui.Expect(title,
                       "Please select a column first by clicking on any cell in the column.");
        return true;
    }

    // Columns count from 1 here as in the table; a row's texts from 0.
    void InsertColumn()
    {
        if (m_columns >= 4)
            return;
        const int offset = Pick(0, 2);
        const std::string title = offset == 2   ? "Create Column"
                                  : offset == 0 ? "Insert Column Before"
                                                : "Insert Column After";
        const int command = offset == 2 ? kCreateColumnOffset : offset;
        if (offset < 2 && RefusedWithoutColumn(title)) {
            NewColumnCommand(m_fx.context, command);
            return;
        }
        const int after = Pick(0, m_columns);
        m_fx.dialogs.Expect<NewColumnRequest>("NewColumn", [after](NewColumnRequest& request) {
            request.insertAfter = after;
            return true;
        });
        NewColumnCommand(m_fx.context, command);
        for (Row& row : m_rows)
            row.texts.insert(row.texts.begin() + after, std::string());
        ++m_columns;
        if (m_sortColumn > after)
            ++m_sortColumn;
        m_focusColumn = m_focus < 0 ? -1 : after + 1;
        m_changed = true;
    }

    void DeleteColumn()
    {
        if (m_columns < 2)
            return;
        // The sort column often, so that rows are left in a kept order.
        const int column = m_sortColumn >= 1 && Chance(50) ? m_sortColumn : Pick(1, m_columns);
        m_fx.dialogs.Expect<DeleteColumnRequest>("DeleteColumn",
                                                 [column](DeleteColumnRequest& request) {
                                                     request.column = column;
                                                     return true;
                                                 });
        DeleteColumnCommand(m_fx.context);
        for (Row& row : m_rows)
            row.texts.erase(row.texts.begin() + (column - 1));
        --m_columns;
        if (m_sortColumn == column) {
            m_sortColumn = -1;
            m_ascending = true;
            m_kept = true;
        } else if (m_sortColumn > column) {
            --m_sortColumn;
        }
        m_focusColumn = m_focus < 0 ? -1 : std::clamp(column, 1, m_columns);
        m_changed = true;
    }

    void MoveColumn()
    {
        const bool left = Chance(50);
        const std::string title = left ? "Move Column Left" : "Move Column Right";
        if (!RefusedWithoutColumn(title)) {
            const int from = m_focusColumn;
            const int to = left ? from - 1 : from + 1;
            if (to < 1 || to > m_columns) {
                ++m_beeps;
            } else {
                for (Row& row : m_rows)
                    std::swap(row.texts[from - 1], row.texts[to - 1]);
                if (m_sortColumn == from)
                    m_sortColumn = to;
                else if (m_sortColumn == to)
                    m_sortColumn = from;
                m_focusColumn = m_focus < 0 ? -1 : to;
                m_changed = true;
            }
        }
        MoveColumnCommand(m_fx.context, left);
    }

    void CheckTable()
    {
        const TableControl& table = Table();
        ExpectOrderInvariants(table);
        EXPECT_EQ(table.ColumnCount(), m_columns + 1);
        std::vector<Row> rows;
        std::vector<int> shown;
        for (int r = 0; r < table.RowCount(); ++r) {
            rows.push_back({-1, TableTexts(r), table.IsRowHidden(r), table.IsRowSelected(r)});
            shown.push_back(table.RowAtDisplayPosition(r));
            EXPECT_EQ(table.Row(shown.back()).displayPosition, r);
        }
        std::vector<int> expectedShown;
        for (int id : m_shown)
            expectedShown.push_back(Index(id));
        EXPECT_EQ(Picture(m_rows, expectedShown, Index(m_focus), m_focusColumn, m_sortColumn),
                  Picture(rows, shown, table.FocusRow(), table.FocusColumn(), table.SortColumn()));
    }

    std::mt19937 m_random;
    EditingFixture m_fx;
    int m_columns = 2;
    std::vector<Row> m_rows;  ///< file order
    std::vector<int> m_shown; ///< ids in display order, hidden ones last
    int m_focus = -1;         ///< id
    int m_focusColumn = -1;
    int m_sortColumn = -1;
    bool m_ascending = true;
    /// Unsorted, but shown in the order a deleted sort column left.
    bool m_kept = false;
    bool m_noConfirm = false;
    int m_nextId = 0;
    int m_beeps = 0;
    bool m_changed = false;
    bool m_shuffling = false;
};

void RandomRun::Run(int steps)
{
    struct Step
    {
        const char* name;
        int weight;
        std::function<void()> model;
        std::function<void(ToolContext&)> command;
    };
    const int create = kCreateRowOffset;
    const std::vector<Step> kinds = {
        {"refill", 1, [this] { Refill(); }, nullptr},
        {"focus", 5, [this] { RandomFocus(); }, nullptr},
        {"select", 4, [this] { RandomSelection(); }, nullptr},
        {"sort", 1, [this] { Sort(); }, nullptr},
        {"unsort", 1, [this] { Table().Unsort(), Unsorted(); }, nullptr},
        {"hide or show", 3, [this] { ToggleHidden(); }, nullptr},
        {"create", 2, [=, this] { Insert(create); }, [=](auto& c) { InsertRowCommand(c, create); }},
        {"before", 2, [this] { Insert(0); }, [](auto& c) { InsertRowCommand(c, 0); }},
        {"after", 2, [this] { Insert(1); }, [](auto& c) { InsertRowCommand(c, 1); }},
        {"delete", 4, [this] { Delete(); }, DeleteRowsCommand},
        {"duplicate", 2, [this] { Duplicate(); }, DuplicateRowsCommand},
        {"move up", 3, [this] { Move(true); }, [](auto& c) { MoveRowsCommand(c, true); }},
        {"move down", 3, [this] { Move(false); }, [](auto& c) { MoveRowsCommand(c, false); }},
        {"deduplicate", 3, [this] { Deduplicate(); }, DeduplicateRowsCommand},
        {"shuffle", 1, [this] { m_shuffling = !Refused("Shuffle Rows", 0x80); },
         ShuffleRowsCommand},
        // The column steps run their commands themselves: some do not run at all.
        {"insert column", 2, [this] { InsertColumn(); }, nullptr},
        {"delete column", 2, [this] { DeleteColumn(); }, nullptr},
        {"move column", 2, [this] { MoveColumn(); }, nullptr},
    };
    std::vector<int> weights;
    for (const Step& kind : kinds)
        weights.push_back(kind.weight);
    std::discrete_distribution<std::size_t> pick(weights.begin(), weights.end());
    for (int i = 0; i < steps && !::testing::Test::HasFailure(); ++i) {
        const Step& step = kinds[Count() > 30 ? 0 : pick(m_random)];
        SCOPED_TRACE(::testing::Message() << "step " << i << ": " << step.name);
        m_fx.document.SetModified(false);
        m_changed = false;
        step.model();
        if (step.command)
            step.command(m_fx.context);
        if (std::exchange(m_shuffling, false))
            AdoptShuffle();
        m_fx.ui.VerifyAllUsed();
        m_fx.dialogs.VerifyAllUsed();
        EXPECT_EQ(m_fx.ui.Beeps(), m_beeps) << "only a move that cannot happen sounds";
        EXPECT_EQ(m_fx.document.Modified(), m_changed);
        EXPECT_FALSE(m_fx.host.busy);
        EXPECT_EQ(m_fx.prefs.noConfirmDeleteRow, m_noConfirm);
        CheckTable();
    }
}

TEST(RowCommandsModel, RandomStepsMatchOneRowAtATimeModel)
{
    for (unsigned seed : {1u, 2u, 3u}) {
        SCOPED_TRACE(::testing::Message() << "seed " << seed);
        RandomRun(seed).Run(400);
    }
}

} // namespace
} // namespace quirnel::test
