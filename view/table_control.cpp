#include "view/table_control.h"

#include "ostrand/core/fatal.h"
#include "ostrand/core/string.h"
#include "view/table_storage.h"
#include "view/value_readers.h"

#include <algorithm>
#include <numeric>
#include <random>
#include <thread>

namespace quirnel {

using namespace detail;

namespace {

// Growth that reserves exactly what is asked: the loader grows ahead in large steps, and
// doubling a million-entry array would leave half of it unused.
template <typename T> void ResizeExactly(std::vector<T>& items, std::size_t count, T fill)
{
    if (count > items.capacity())
        items.reserve(count);
    items.resize(count, fill);
    if (items.capacity() > count + count / 4 + 4096)
        items.shrink_to_fit();
}

TableColumn IndexColumn()
{
    TableColumn column;
    column.kind = kColumnText;
    // The index column shows row numbers: never edited, searched or sorted by.
    column.flags =
        COLUMN_RIGHT | COLUMN_NO_SEARCH | COLUMN_NO_SORT | COLUMN_NO_EDIT | COLUMN_READ_ONLY;
    column.width = 50;
    column.initialWidth = 50;
    // Built by count and character: GCC 12 reports a false overlap for assigning literals here.
    column.headerText.assign(1, '#');
    column.headerTextWide.assign(1, u'#');
    column.sortMethod = kSortNumeric;
    return column;
}

template <typename Char> bool IsBlank(Char ch)
{
    return ch == Char(' ') || ch == Char('\t');
}

/// Whether TrimText would remove anything: one pass without copying, since most cells of a
/// table have nothing to trim.
template <typename Char> bool NeedsTrim(std::basic_string_view<Char> text, int mask)
{
    const std::size_t n = text.size();
    if (n == 0)
        return false;
    if ((mask & 1) && IsBlank(text[0]))
        return true;
    if ((mask & 2) && IsBlank(text[n - 1]))
        return true;
    if (!(mask & (4 | 8)))
        return false;
    for (std::size_t i = 1; i < n; ++i) {
        const Char ch = text[i];
        if ((mask & 8) && ch == Char(' ') && text[i - 1] == Char(' '))
            return true;
        if ((mask & 4) && (ch == Char('\n') || ch == Char('\r')) && IsBlank(text[i - 1]))
            return true;
    }
    // A blank at the very end is a line end's too.
    return (mask & 4) && IsBlank(text[n - 1]);
}

template <typename Char>
std::basic_string<Char> TrimText(std::basic_string_view<Char> text, int mask)
{
    std::basic_string<Char> result(text);
    if (mask & 4) {
        // Spaces and tabs before each line end; a CR of a CR LF pair counts as the line end.
        std::basic_string<Char> out;
        out.reserve(result.size());
        std::size_t lineStart = 0;
        for (std::size_t i = 0; i <= result.size(); ++i) {
            bool end = i == result.size() || result[i] == Char('\n') || result[i] == Char('\r');
            if (!end)
                continue;
            std::size_t stop = i;
            while (stop > lineStart && IsBlank(result[stop - 1]))
                --stop;
            out.append(result, lineStart, stop - lineStart);
            if (i < result.size())
                out.push_back(result[i]);
            lineStart = i + 1;
        }
        result = std::move(out);
    }
    if (mask & 8) {
        std::basic_string<Char> out;
        out.reserve(result.size());
        for (Char ch : result)
            if (!(ch == Char(' ') && !out.empty() && out.back() == Char(' ')))
                out.push_back(ch);
        result = std::move(out);
    }
    if (mask & 1) {
        std::size_t start = 0;
        while (start < result.size() && IsBlank(result[start]))
            ++start;
        result.erase(0, start);
    }
    if (mask & 2) {
        std::size_t stop = result.size();
        while (stop > 0 && IsBlank(result[stop - 1]))
            --stop;
        result.erase(stop);
    }
    return result;
}

} // namespace

TableControl::TableControl() : m_store(std::make_unique<Storage>())
{
    m_columns.push_back(IndexColumn());
    m_dayFirst = SystemDateIsDayFirst();
}

TableControl::~TableControl() = default;

void TableControl::AddObserver(TableControlObserver* observer)
{
    if (observer &&
        std::find(m_observers.begin(), m_observers.end(), observer) == m_observers.end())
        m_observers.push_back(observer);
}

void TableControl::RemoveObserver(TableControlObserver* observer)
{
    m_observers.erase(std::remove(m_observers.begin(), m_observers.end(), observer),
                      m_observers.end());
}

void TableControl::NotifyReset()
{
    if (m_changeDepth > 0) {
        m_resetPending = true;
        return;
    }
    for (TableControlObserver* observer : m_observers)
        observer->OnTableReset();
}

void TableControl::NotifyRepaint()
{
    if (m_changeDepth > 0) {
        m_repaintPending = true;
        return;
    }
    for (TableControlObserver* observer : m_observers)
        observer->OnTableRepaint();
}

void TableControl::EndChange(int firstPosition)
{
    if (m_changeDepth == 0 || --m_changeDepth > 0)
        return;
    m_lastChangeFrom = std::max(0, firstPosition);
    const bool reset = m_resetPending;
    const bool repaint = m_repaintPending && !reset;
    m_resetPending = m_repaintPending = false;
    if (reset)
        NotifyReset();
    else if (repaint)
        NotifyRepaint();
}

void TableControl::Redraw()
{
    if (m_store->needsResort && m_sortColumn >= 0) {
        m_store->needsResort = false;
        m_store->orderDirty = false;
        SortRows();
    } else if (m_store->orderDirty) {
        m_store->orderDirty = false;
        RestoreOrder(ShowsFileOrder());
    }
    m_store->needsResort = false;
    NotifyReset();
}

const TableColumn& TableControl::Column(int column) const
{
    // Queries never fail: a column that does not exist reads as an empty, unsortable one.
    static const TableColumn kNoColumn = [] {
        TableColumn none;
        none.flags = COLUMN_NO_SORT | COLUMN_NO_EDIT | COLUMN_READ_ONLY | COLUMN_NO_SEARCH;
        return none;
    }();
    if (column < 0 || column >= ColumnCount())
        return kNoColumn;
    return m_columns[static_cast<std::size_t>(column)];
}

TableColumn& TableControl::MutableColumn(int column)
{
    if (column < 0 || column >= ColumnCount())
        ost::FatalError("TableControl::MutableColumn(%d)\r\ncolumn count = %d", column,
                        ColumnCount());
    return m_columns[static_cast<std::size_t>(column)];
}

int TableControl::AddColumn(TableColumn column)
{
    InsertColumn(ColumnCount(), std::move(column));
    return ColumnCount() - 1;
}

bool TableControl::InsertColumn(int at, TableColumn column)
{
    if (at < 1 || at > ColumnCount())
        return false;
    column.initialWidth = column.width;
    m_columns.insert(m_columns.begin() + at, std::move(column));
    std::vector<std::uint64_t> cells;
    cells.reserve(static_cast<std::size_t>(m_rowCount));
    cells.resize(static_cast<std::size_t>(m_rowCount), 0);
    m_store->cells.insert(m_store->cells.begin() + (at - 1), std::move(cells));
    auto shift = [at](int& c) {
        if (c >= at)
            ++c;
    };
    shift(m_sortColumn);
    shift(m_previousSort[0]);
    shift(m_previousSort[1]);
    shift(m_focusColumn);
    NotifyReset();
    return true;
}

bool TableControl::DeleteColumn(int column)
{
    if (column < 1 || column >= ColumnCount())
        return false;
    m_columns.erase(m_columns.begin() + column);
    m_store->cells.erase(m_store->cells.begin() + (column - 1));
    if (m_sortColumn == column) {
        // The rows stay where the user sees them; only a new sort or "Don't sort rows" moves
        // them. Storage order is the file's and does not change either.
        m_sortAscending = true;
        m_orderKept = true;
    }
    auto drop = [column](int& c) {
        if (c == column)
            c = -1;
        else if (c > column)
            --c;
    };
    drop(m_sortColumn);
    drop(m_previousSort[0]);
    drop(m_previousSort[1]);
    drop(m_focusColumn);
    NotifyReset();
    return true;
}

bool TableControl::MoveColumn(int from, int to)
{
    if (from < 1 || from >= ColumnCount() || to < 1 || to >= ColumnCount())
        return false;
    if (from == to)
        return true;
    auto rotate = [from, to](auto& items, int base) {
        auto first = items.begin() + (from - base);
        auto last = items.begin() + (to - base);
        if (from < to)
            std::rotate(first, first + 1, last + 1);
        else
            std::rotate(last, first, first + 1);
    };
    rotate(m_columns, 0);
    rotate(m_store->cells, 1);
    auto follow = [from, to](int& c) {
        if (c == from)
            c = to;
        else if (from < to && c > from && c <= to)
            --c;
        else if (from > to && c >= to && c < from)
            ++c;
    };
    follow(m_sortColumn);
    follow(m_previousSort[0]);
    follow(m_previousSort[1]);
    follow(m_focusColumn);
    NotifyReset();
    return true;
}

std::string TableControl::ColumnNameUtf8(int column) const
{
    if (column < 0 || column >= ColumnCount())
        return {};
    const TableColumn& c = m_columns[static_cast<std::size_t>(column)];
    if (c.wide)
        return ost::Utf16ToUtf8(c.headerTextWide);
    return m_decoder ? m_decoder(c.headerText) : c.headerText;
}

bool TableControl::SetColumnHidden(int column, bool hidden)
{
    if (column < 0 || column >= ColumnCount())
        return false;
    m_columns[static_cast<std::size_t>(column)].hidden = hidden;
    NotifyReset();
    return true;
}

void TableControl::SetColumnSortMethod(int column, int method)
{
    if (column < 0 || column >= ColumnCount() || method < 0 || method > kSortStoredValue)
        return;
    m_columns[static_cast<std::size_t>(column)].sortMethod = method;
}

void TableControl::SetColumnAlignment(int column, Alignment alignment)
{
    if (column < 0 || column >= ColumnCount())
        return;
    std::uint32_t& flags = m_columns[static_cast<std::size_t>(column)].flags;
    flags &= ~(COLUMN_RIGHT | COLUMN_CENTER);
    if (alignment == Alignment::Right)
        flags |= COLUMN_RIGHT;
    else if (alignment == Alignment::Center)
        flags |= COLUMN_CENTER;
    NotifyRepaint();
}

Alignment TableControl::ColumnAlignment(int column) const
{
    if (column < 0 || column >= ColumnCount())
        return Alignment::Left;
    std::uint32_t flags = m_columns[static_cast<std::size_t>(column)].flags;
    if (flags & COLUMN_RIGHT)
        return Alignment::Right;
    if (flags & COLUMN_CENTER)
        return Alignment::Center;
    return Alignment::Left;
}

void TableControl::FillPositions()
{
    std::vector<std::int32_t>& order = m_store->order;
    std::vector<std::int32_t>& position = m_store->position;
    if (order.size() != static_cast<std::size_t>(m_rowCount))
        ost::FatalError("TableControl display order holds %zu rows, the table %d", order.size(),
                        m_rowCount);
    ResizeExactly(position, order.size(), -1);
    for (std::size_t i = 0; i < order.size(); ++i)
        position[static_cast<std::size_t>(order[i])] = static_cast<std::int32_t>(i);
}

void TableControl::RestoreOrder(bool fromStorage)
{
    std::vector<std::int32_t>& order = m_store->order;
    const std::vector<std::uint8_t>& flags = m_store->flags;
    if (fromStorage) {
        ResizeExactly(order, static_cast<std::size_t>(m_rowCount), 0);
        std::iota(order.begin(), order.end(), 0);
    }
    int hidden = m_rowCount - m_visibleCount;
    bool trailing = m_trailingRow >= 0 && m_trailingRow < m_rowCount;
    if (hidden > 0 || trailing) {
        std::vector<std::int32_t> tail;
        tail.reserve(static_cast<std::size_t>(hidden));
        std::size_t write = 0;
        for (std::int32_t row : order) {
            if (row == m_trailingRow)
                continue;
            if (flags[static_cast<std::size_t>(row)] & kRowHidden)
                tail.push_back(row);
            else
                order[write++] = row;
        }
        for (std::int32_t row : tail)
            order[write++] = row;
        if (trailing)
            order[write++] = m_trailingRow;
    }
    FillPositions();
}

void TableControl::RecountRows()
{
    int hidden = 0;
    int selected = 0;
    for (std::uint8_t f : m_store->flags) {
        hidden += (f & kRowHidden) ? 1 : 0;
        selected += (f & kRowSelected) ? 1 : 0;
    }
    m_visibleCount = m_rowCount - hidden;
    m_selectedCount = selected;
}

int TableControl::RowAtDisplayPosition(int position) const
{
    if (position < 0 || position >= m_rowCount)
        return -1;
    return m_store->order[static_cast<std::size_t>(position)];
}

int TableControl::DisplayPosition(int row) const
{
    if (row < 0 || row >= m_rowCount)
        return -1;
    return m_store->position[static_cast<std::size_t>(row)];
}

int TableControl::RowAtViewIndex(int viewIndex) const
{
    if (viewIndex < 0 || viewIndex >= m_visibleCount)
        return -1;
    // A visible trailing row sits after the hidden rows but is shown as the last line.
    bool trailingShown = m_trailingRow >= 0 && m_trailingRow < m_rowCount &&
                         !(m_store->flags[static_cast<std::size_t>(m_trailingRow)] & kRowHidden);
    if (trailingShown && viewIndex == m_visibleCount - 1)
        return m_trailingRow;
    return m_store->order[static_cast<std::size_t>(viewIndex)];
}

int TableControl::ViewIndexOfRow(int row) const
{
    if (row < 0 || row >= m_rowCount ||
        (m_store->flags[static_cast<std::size_t>(row)] & kRowHidden))
        return -1;
    if (row == m_trailingRow)
        return m_visibleCount - 1;
    int position = m_store->position[static_cast<std::size_t>(row)];
    return position < m_visibleCount ? position : -1;
}

TableRow TableControl::Row(int row) const
{
    TableRow result;
    if (row < 0 || row >= m_rowCount)
        return result;
    std::uint8_t f = m_store->flags[static_cast<std::size_t>(row)];
    result.id = row;
    result.displayPosition = m_store->position[static_cast<std::size_t>(row)];
    result.selected = (f & kRowSelected) != 0;
    result.hidden = (f & kRowHidden) != 0;
    return result;
}

void TableControl::SetRowCount(int count)
{
    if (count < 0)
        count = 0;
    if (count == m_rowCount)
        return;
    if (count > m_rowCount) {
        InsertRowsAt(m_rowCount, count - m_rowCount, -1);
        NotifyReset();
        return;
    }
    std::vector<std::int32_t> doomed(static_cast<std::size_t>(m_rowCount - count));
    std::iota(doomed.begin(), doomed.end(), count);
    DeleteRows(doomed);
}

void TableControl::InsertRowsAt(int at, int count, int displayPosition)
{
    Storage& s = *m_store;
    const std::size_t oldCount = static_cast<std::size_t>(m_rowCount);
    const std::size_t newCount = oldCount + static_cast<std::size_t>(count);
    const auto at_ = static_cast<std::size_t>(at);
    // A loader growing a big table ahead touches hundreds of megabytes of new memory, which
    // the system zeroes page by page: the columns are grown on two threads at once.
    constexpr std::size_t kParallelGrowthCells = 1 << 24;
    if (at_ == oldCount && s.cells.size() >= 2 &&
        (newCount - oldCount) * s.cells.size() >= kParallelGrowthCells &&
        std::thread::hardware_concurrency() > 1) {
        const std::size_t half = s.cells.size() / 2;
        std::thread helper([&] {
            for (std::size_t c = half; c < s.cells.size(); ++c)
                ResizeExactly(s.cells[c], newCount, std::uint64_t{0});
        });
        for (std::size_t c = 0; c < half; ++c)
            ResizeExactly(s.cells[c], newCount, std::uint64_t{0});
        helper.join();
    }
    for (std::vector<std::uint64_t>& column : s.cells) {
        if (at_ == oldCount) {
            ResizeExactly(column, newCount, std::uint64_t{0});
        } else {
            if (newCount > column.capacity())
                column.reserve(newCount);
            column.insert(column.begin() + at, static_cast<std::size_t>(count), 0);
        }
    }
    if (at_ == oldCount) {
        ResizeExactly(s.flags, newCount, std::uint8_t{0});
    } else {
        s.flags.insert(s.flags.begin() + at, static_cast<std::size_t>(count), 0);
    }
    if (at_ != oldCount)
        for (std::int32_t& row : s.order)
            if (row >= at)
                row += count;
    auto shift = [at, count](int& row) {
        if (row >= at)
            row += count;
    };
    shift(m_focusRow);
    shift(m_trailingRow);
    m_rowCount = static_cast<int>(newCount);
    m_visibleCount += count;

    if (ShowsFileOrder()) {
        // The display follows storage order. A plain append keeps the fast path.
        bool plain = m_visibleCount == m_rowCount && (m_trailingRow < 0) && at_ == oldCount &&
                     s.order.size() == oldCount;
        if (plain) {
            ResizeExactly(s.order, newCount, std::int32_t{0});
            std::iota(s.order.begin() + static_cast<std::ptrdiff_t>(oldCount), s.order.end(),
                      static_cast<std::int32_t>(oldCount));
            FillPositions();
        } else {
            RestoreOrder(true);
        }
    } else {
        // Sorted or in a kept order: new rows go where the caller says, else before the row that
        // held their storage index, or at the end; RestoreOrder then keeps hidden rows and the
        // trailing row last.
        if (displayPosition < 0)
            displayPosition = at_ < oldCount ? s.position[at_] : static_cast<int>(oldCount);
        displayPosition = std::clamp(displayPosition, 0, static_cast<int>(oldCount));
        std::vector<std::int32_t> added(static_cast<std::size_t>(count));
        std::iota(added.begin(), added.end(), at);
        if (newCount > s.order.capacity())
            s.order.reserve(newCount);
        s.order.insert(s.order.begin() + displayPosition, added.begin(), added.end());
        RestoreOrder(false);
    }
}

int TableControl::AddRow()
{
    InsertRows(m_rowCount, 1);
    return m_rowCount - 1;
}

bool TableControl::InsertRows(int at, int count, int displayPosition)
{
    if (at < 0 || at > m_rowCount || count <= 0 || count > INT32_MAX - m_rowCount)
        return false;
    InsertRowsAt(at, count, displayPosition);
    NotifyReset();
    return true;
}

bool TableControl::DeleteRows(int first, int count)
{
    if (first < 0 || count <= 0 || first >= m_rowCount)
        return false;
    count = std::min(count, m_rowCount - first);
    std::vector<int> rows(static_cast<std::size_t>(count));
    std::iota(rows.begin(), rows.end(), first);
    DeleteRows(rows);
    return true;
}

void TableControl::DeleteRows(std::span<const int> rows)
{
    Storage& s = *m_store;
    int doomedCount = 0;
    for (int row : rows) {
        if (row < 0 || row >= m_rowCount)
            continue;
        std::uint8_t& f = s.flags[static_cast<std::size_t>(row)];
        if (!(f & kRowDoomed)) {
            f |= kRowDoomed;
            ++doomedCount;
        }
    }
    if (doomedCount == 0)
        return;
    const std::size_t oldCount = static_cast<std::size_t>(m_rowCount);
    // newIndex[row]: where a surviving row goes; -1 for a deleted one.
    std::vector<std::int32_t> newIndex(oldCount);
    std::int32_t next = 0;
    for (std::size_t row = 0; row < oldCount; ++row)
        newIndex[row] = (s.flags[row] & kRowDoomed) ? -1 : next++;
    const std::size_t newCount = static_cast<std::size_t>(next);
    // Rows above the first deleted one stay where they are: cutting off the end of a large
    // table (a loader trimming its estimate) then moves no cell.
    std::size_t firstDoomed = 0;
    while (newIndex[firstDoomed] >= 0)
        ++firstDoomed;
    for (std::vector<std::uint64_t>& column : s.cells) {
        std::size_t write = firstDoomed;
        for (std::size_t row = firstDoomed; row < oldCount; ++row)
            if (newIndex[row] >= 0)
                column[write++] = column[row];
        ResizeExactly(column, newCount, std::uint64_t{0});
    }
    {
        std::size_t write = firstDoomed;
        for (std::size_t row = firstDoomed; row < oldCount; ++row)
            if (newIndex[row] >= 0)
                s.flags[write++] = s.flags[row];
        ResizeExactly(s.flags, newCount, std::uint8_t{0});
    }
    {
        std::size_t write = 0;
        for (std::int32_t row : s.order)
            if (newIndex[static_cast<std::size_t>(row)] >= 0)
                s.order[write++] = newIndex[static_cast<std::size_t>(row)];
        ResizeExactly(s.order, newCount, std::int32_t{0});
    }
    auto remap = [&newIndex, oldCount](int& row) {
        if (row >= 0 && static_cast<std::size_t>(row) < oldCount)
            row = newIndex[static_cast<std::size_t>(row)];
    };
    remap(m_focusRow);
    remap(m_trailingRow);
    m_rowCount = static_cast<int>(newCount);
    RecountRows();
    FillPositions();
    NotifyReset();
}

void TableControl::PermuteRows(const std::vector<std::int32_t>& from)
{
    Storage& s = *m_store;
    const std::size_t count = from.size();
    std::vector<std::uint64_t> scratch(count);
    for (std::vector<std::uint64_t>& column : s.cells) {
        for (std::size_t i = 0; i < count; ++i)
            scratch[i] = column[static_cast<std::size_t>(from[i])];
        std::copy(scratch.begin(), scratch.end(), column.begin());
    }
    std::vector<std::uint8_t> flags(count);
    for (std::size_t i = 0; i < count; ++i)
        flags[i] = s.flags[static_cast<std::size_t>(from[i])];
    s.flags.swap(flags);
    std::vector<std::int32_t> to(count);
    for (std::size_t i = 0; i < count; ++i)
        to[static_cast<std::size_t>(from[i])] = static_cast<std::int32_t>(i);
    for (std::int32_t& row : s.order)
        row = to[static_cast<std::size_t>(row)];
    auto remap = [&to](int& row) {
        if (row >= 0 && static_cast<std::size_t>(row) < to.size())
            row = to[static_cast<std::size_t>(row)];
    };
    remap(m_focusRow);
    remap(m_trailingRow);
}

bool TableControl::MoveRow(int from, int to)
{
    if (from < 0 || from >= m_rowCount || to < 0 || to >= m_rowCount)
        return false;
    if (from == to)
        return true;
    Storage& s = *m_store;
    auto rotate = [from, to](auto& items) {
        auto a = items.begin() + from;
        auto b = items.begin() + to;
        if (from < to)
            std::rotate(a, a + 1, b + 1);
        else
            std::rotate(b, a, a + 1);
    };
    for (std::vector<std::uint64_t>& column : s.cells)
        rotate(column);
    rotate(s.flags);
    auto follow = [from, to](int& row) {
        if (row == from)
            row = to;
        else if (from < to && row > from && row <= to)
            --row;
        else if (from > to && row >= to && row < from)
            ++row;
    };
    follow(m_focusRow);
    // In file order with nothing hidden or trailing, display order is storage order before and
    // after: moving a block of selected rows one by one then stays linear.
    const bool identity = ShowsFileOrder() && m_visibleCount == m_rowCount && m_trailingRow < 0;
    if (!identity) {
        for (std::int32_t& row : s.order) {
            int r = row;
            follow(r);
            row = r;
        }
        follow(m_trailingRow);
        // Sorted or kept, each row keeps its place on screen; in file order, the screen follows
        // storage.
        RestoreOrder(ShowsFileOrder());
    }
    NotifyReset();
    return true;
}

int TableControl::DuplicateRow(int sourceRow)
{
    if (sourceRow < 0 || sourceRow >= m_rowCount)
        return -1;
    if (m_owner && !m_owner->AllowDuplicateRow(sourceRow))
        return -1;
    int newRow = sourceRow + 1;
    int position = ShowsFileOrder() ? -1 : DisplayPosition(sourceRow) + 1;
    InsertRowsAt(newRow, 1, position);
    for (std::vector<std::uint64_t>& column : m_store->cells)
        column[static_cast<std::size_t>(newRow)] = column[static_cast<std::size_t>(sourceRow)];
    if (m_owner)
        m_owner->OnRowDuplicated(sourceRow, newRow);
    NotifyReset();
    return newRow;
}

std::vector<int> TableControl::DuplicateRows(std::span<const int> sourceRows)
{
    Storage& s = *m_store;
    const std::size_t oldCount = static_cast<std::size_t>(m_rowCount);
    std::vector<std::uint8_t> copy(oldCount, 0);
    std::size_t copies = 0;
    for (int row : sourceRows) {
        if (row < 0 || row >= m_rowCount || copy[static_cast<std::size_t>(row)])
            continue;
        if (m_owner && !m_owner->AllowDuplicateRow(row))
            continue;
        copy[static_cast<std::size_t>(row)] = 1;
        ++copies;
    }
    if (copies == 0 || copies > static_cast<std::size_t>(INT32_MAX) - oldCount)
        return {};
    // newIndex[row]: where an old row goes; its copy follows at newIndex[row] + 1.
    std::vector<std::int32_t> newIndex(oldCount);
    std::vector<std::int32_t> from;
    from.reserve(oldCount + copies);
    for (std::size_t row = 0; row < oldCount; ++row) {
        newIndex[row] = static_cast<std::int32_t>(from.size());
        from.push_back(static_cast<std::int32_t>(row));
        if (copy[row])
            from.push_back(static_cast<std::int32_t>(row));
    }
    const std::size_t newCount = from.size();
    std::vector<std::uint64_t> scratch(newCount);
    for (std::vector<std::uint64_t>& column : s.cells) {
        for (std::size_t i = 0; i < newCount; ++i)
            scratch[i] = column[static_cast<std::size_t>(from[i])];
        column.assign(scratch.begin(), scratch.end());
    }
    std::vector<std::uint8_t> flags(newCount, 0);
    for (std::size_t row = 0; row < oldCount; ++row)
        flags[static_cast<std::size_t>(newIndex[row])] = s.flags[row];
    s.flags.swap(flags);
    // Sorted tables show each copy right after its source; RestoreOrder keeps hidden last.
    std::vector<std::int32_t> order;
    order.reserve(newCount);
    for (std::int32_t row : s.order) {
        order.push_back(newIndex[static_cast<std::size_t>(row)]);
        if (copy[static_cast<std::size_t>(row)])
            order.push_back(newIndex[static_cast<std::size_t>(row)] + 1);
    }
    s.order.swap(order);
    auto remap = [&newIndex, oldCount](int& row) {
        if (row >= 0 && static_cast<std::size_t>(row) < oldCount)
            row = newIndex[static_cast<std::size_t>(row)];
    };
    remap(m_focusRow);
    remap(m_trailingRow);
    m_rowCount = static_cast<int>(newCount);
    m_visibleCount += static_cast<int>(copies);
    RestoreOrder(ShowsFileOrder());
    std::vector<int> result;
    result.reserve(copies);
    for (std::size_t row = 0; row < oldCount; ++row) {
        if (!copy[row])
            continue;
        result.push_back(newIndex[row] + 1);
        if (m_owner)
            m_owner->OnRowDuplicated(newIndex[row], newIndex[row] + 1);
    }
    NotifyReset();
    return result;
}

bool TableControl::ReorderRows(std::span<const int> from)
{
    const auto count = static_cast<std::size_t>(m_rowCount);
    if (from.size() != count)
        return false;
    std::vector<std::uint8_t> seen(count, 0);
    std::vector<std::int32_t> order(count);
    for (std::size_t i = 0; i < count; ++i) {
        const int row = from[i];
        if (row < 0 || row >= m_rowCount || seen[static_cast<std::size_t>(row)])
            return false;
        seen[static_cast<std::size_t>(row)] = 1;
        order[i] = row;
    }
    if (m_sortColumn < 0 && m_orderKept) {
        // Each display position keeps its storage index: what moved in storage moves on screen.
        const std::vector<std::int32_t> shown = m_store->order;
        PermuteRows(order);
        m_store->order = shown;
        RestoreOrder(false);
    } else {
        PermuteRows(order);
        RestoreOrder(ShowsFileOrder());
    }
    NotifyReset();
    return true;
}

void TableControl::Shuffle(std::uint64_t seed)
{
    if (m_rowCount < 2)
        return;
    std::vector<std::int32_t> from(static_cast<std::size_t>(m_rowCount));
    std::iota(from.begin(), from.end(), 0);
    std::mt19937_64 random(seed);
    std::shuffle(from.begin(), from.end(), random);
    PermuteRows(from);
    bool wasSorted = m_sortColumn >= 0;
    m_sortColumn = -1;
    m_sortAscending = true;
    m_orderKept = false;
    RestoreOrder(true);
    if (wasSorted && m_owner)
        m_owner->OnSortChanged();
    NotifyReset();
}

void TableControl::Clear()
{
    m_columns.resize(1);
    m_store = std::make_unique<Storage>();
    m_rowCount = 0;
    m_visibleCount = 0;
    m_selectedCount = 0;
    m_focusRow = -1;
    m_focusColumn = -1;
    m_trailingRow = -1;
    m_sortColumn = -1;
    m_sortAscending = true;
    m_orderKept = false;
    m_previousSort[0] = -1;
    m_previousSort[1] = -1;
    NotifyReset();
}

bool TableControl::IsRowHidden(int row) const
{
    return row >= 0 && row < m_rowCount &&
           (m_store->flags[static_cast<std::size_t>(row)] & kRowHidden);
}

bool TableControl::SetRowHidden(int row, bool hidden, bool deferRedraw)
{
    if (row < 0 || row >= m_rowCount)
        return false;
    std::uint8_t& f = m_store->flags[static_cast<std::size_t>(row)];
    if (((f & kRowHidden) != 0) == hidden)
        return false;
    if (hidden) {
        if (m_selectionMode == SelectionMode::MultipleRows && (f & kRowSelected)) {
            f &= static_cast<std::uint8_t>(~kRowSelected);
            --m_selectedCount;
        }
        f |= kRowHidden;
        --m_visibleCount;
    } else {
        f &= static_cast<std::uint8_t>(~kRowHidden);
        ++m_visibleCount;
        if (m_sortColumn >= 0)
            m_store->needsResort = true;
    }
    m_store->orderDirty = true;
    if (!deferRedraw)
        Redraw();
    return true;
}

void TableControl::SetTrailingRow(int row)
{
    m_trailingRow = row >= 0 && row < m_rowCount ? row : -1;
    RestoreOrder(false);
    NotifyReset();
}

void TableControl::SetSelectionMode(SelectionMode mode)
{
    m_selectionMode = mode;
    if (mode != SelectionMode::MultipleRows)
        DeselectAllRows();
}

bool TableControl::IsRowSelected(int row) const
{
    return row >= 0 && row < m_rowCount &&
           (m_store->flags[static_cast<std::size_t>(row)] & kRowSelected);
}

void TableControl::SetRowSelected(int row, bool selected)
{
    if (row < 0 || row >= m_rowCount)
        return;
    std::uint8_t& f = m_store->flags[static_cast<std::size_t>(row)];
    if (((f & kRowSelected) != 0) == selected)
        return;
    if (selected) {
        f |= kRowSelected;
        ++m_selectedCount;
    } else {
        f &= static_cast<std::uint8_t>(~kRowSelected);
        --m_selectedCount;
    }
    NotifyRepaint();
}

void TableControl::SelectAllRows()
{
    if (m_selectionMode != SelectionMode::MultipleRows)
        return;
    m_selectedCount = 0;
    for (std::uint8_t& f : m_store->flags) {
        if (!(f & kRowHidden)) {
            f |= kRowSelected;
            ++m_selectedCount;
        }
    }
    NotifyRepaint();
}

void TableControl::DeselectAllRows()
{
    for (std::uint8_t& f : m_store->flags)
        f &= static_cast<std::uint8_t>(~kRowSelected);
    m_selectedCount = 0;
    NotifyRepaint();
}

std::vector<int> TableControl::SelectedRows() const
{
    std::vector<int> rows;
    if (m_selectionMode == SelectionMode::SingleRow) {
        if (m_focusRow >= 0)
            rows.push_back(m_focusRow);
        return rows;
    }
    rows.reserve(static_cast<std::size_t>(m_selectedCount));
    for (int row = 0; row < m_rowCount && static_cast<int>(rows.size()) < m_selectedCount; ++row)
        if (m_store->flags[static_cast<std::size_t>(row)] & kRowSelected)
            rows.push_back(row);
    return rows;
}

void TableControl::SetFocusCell(int row, int column)
{
    m_focusRow = row >= 0 && row < m_rowCount ? row : -1;
    m_focusColumn = column >= 0 && column < ColumnCount() ? column : -1;
}

const std::uint64_t* TableControl::CellRef(int row, int column) const
{
    if (row < 0 || row >= m_rowCount || column < 1 || column >= ColumnCount())
        return nullptr;
    return &m_store->cells[static_cast<std::size_t>(column - 1)][static_cast<std::size_t>(row)];
}

std::uint64_t* TableControl::CellRef(int row, int column)
{
    if (row < 0 || row >= m_rowCount || column < 1 || column >= ColumnCount())
        return nullptr;
    return &m_store->cells[static_cast<std::size_t>(column - 1)][static_cast<std::size_t>(row)];
}

bool TableControl::StoreText(int row, int column, std::uint64_t textRef)
{
    std::uint64_t* ref = CellRef(row, column);
    if (!ref)
        return false;
    *ref = (*ref & kCheckedBit) | textRef;
    NoteCellChanged();
    return true;
}

std::string_view TableControl::CellText8(int row, int column) const
{
    const std::uint64_t* ref = CellRef(row, column);
    return ref ? m_store->pool.View8(*ref) : std::string_view();
}

void TableControl::RowText8(int row, std::string_view* out) const
{
    if (row < 0 || row >= m_rowCount)
        return;
    const auto index = static_cast<std::size_t>(row);
    for (const std::vector<std::uint64_t>& column : m_store->cells)
        *out++ = m_store->pool.View8(column[index]);
}

std::u16string_view TableControl::CellText16(int row, int column) const
{
    const std::uint64_t* ref = CellRef(row, column);
    return ref ? m_store->pool.View16(*ref) : std::u16string_view();
}

bool TableControl::CellIsWide(int row, int column) const
{
    const std::uint64_t* ref = CellRef(row, column);
    return ref && IsWide(*ref);
}

bool TableControl::CellIsEmpty(int row, int column) const
{
    const std::uint64_t* ref = CellRef(row, column);
    if (!ref)
        return true;
    std::uint32_t chunk = ChunkOf(*ref);
    if (chunk == 0)
        return true;
    if (chunk == kValueChunk)
        return false;
    return IsWide(*ref) ? m_store->pool.View16(*ref).empty() : m_store->pool.View8(*ref).empty();
}

TableCell TableControl::Cell(int row, int column) const
{
    TableCell cell;
    const std::uint64_t* ref = CellRef(row, column);
    if (!ref)
        return cell;
    cell.flags = CellFlags(row, column);
    if (IsWide(*ref))
        cell.textWide = m_store->pool.View16(*ref);
    else
        cell.text = m_store->pool.View8(*ref);
    cell.value = CellValue(row, column);
    return cell;
}

std::uint32_t TableControl::CellFlags(int row, int column) const
{
    const std::uint64_t* ref = CellRef(row, column);
    if (!ref)
        return 0;
    return ((*ref & kCheckedBit) ? CELL_CHECKED : 0u) | (IsWide(*ref) ? CELL_WIDE : 0u);
}

bool TableControl::SetCellText8(int row, int column, std::string_view text)
{
    if (!CellRef(row, column))
        return false;
    return StoreText(row, column, m_store->pool.Store8(text));
}

bool TableControl::SetCellText16(int row, int column, std::u16string_view text)
{
    if (!CellRef(row, column))
        return false;
    return StoreText(row, column, m_store->pool.Store16(text));
}

char16_t* TableControl::NewCellText16(int row, int column, std::size_t units)
{
    if (!CellRef(row, column))
        return nullptr;
    char16_t* out = nullptr;
    StoreText(row, column, m_store->pool.Allocate16(units, out));
    return out;
}

bool TableControl::ClearCell(int row, int column)
{
    std::uint64_t* ref = CellRef(row, column);
    if (!ref)
        return false;
    *ref &= kWideBit | kCheckedBit;
    NoteCellChanged();
    return true;
}

bool TableControl::CellChecked(int row, int column) const
{
    const std::uint64_t* ref = CellRef(row, column);
    return ref && (*ref & kCheckedBit);
}

bool TableControl::SetCellChecked(int row, int column, bool checked)
{
    std::uint64_t* ref = CellRef(row, column);
    if (!ref)
        return false;
    *ref = checked ? (*ref | kCheckedBit) : (*ref & ~kCheckedBit);
    return true;
}

std::int32_t TableControl::CellValue(int row, int column) const
{
    const std::uint64_t* ref = CellRef(row, column);
    if (!ref || ChunkOf(*ref) != kValueChunk)
        return kEmptyChoice;
    return static_cast<std::int32_t>(static_cast<std::uint32_t>(OffsetOf(*ref)));
}

bool TableControl::SetCellValue(int row, int column, std::int32_t value)
{
    if (value == kEmptyChoice)
        return StoreText(row, column, 0);
    return StoreText(row, column,
                     MakeRef(false, kValueChunk, static_cast<std::uint32_t>(value), 0));
}

TextBufferHandle TableControl::AdoptTextBuffer(std::shared_ptr<const std::string> buffer)
{
    return m_store->pool.Adopt(std::move(buffer));
}

bool TableControl::SetCellText8Borrowed(int row, int column, std::string_view text,
                                        TextBufferHandle handle)
{
    std::uint64_t* ref = CellRef(row, column);
    if (!ref)
        return false;
    *ref = (*ref & kCheckedBit) | m_store->pool.Borrow8(handle, text);
    return true;
}

void TableControl::SetRowText8Borrowed(int row, const std::string_view* texts, int count,
                                       TextBufferHandle handle)
{
    if (row < 0 || row >= m_rowCount || count <= 0)
        return;
    Storage& s = *m_store;
    const auto index = static_cast<std::size_t>(row);
    const std::size_t cells = std::min(static_cast<std::size_t>(count), s.cells.size());
    // The buffer is looked up once per row; each text then needs only Borrow8's range test.
    const char* base = nullptr;
    std::size_t size = 0;
    const bool adopted = s.pool.AdoptedBuffer(handle, base, size);
    const auto begin = reinterpret_cast<std::uintptr_t>(base);
    for (std::size_t i = 0; i < cells; ++i) {
        const std::string_view text = texts[i];
        std::uint64_t textRef = 0;
        if (!text.empty()) {
            const auto start = reinterpret_cast<std::uintptr_t>(text.data());
            if (adopted && start >= begin && start - begin <= size &&
                text.size() <= size - (start - begin) && text.size() <= kLengthMask &&
                start - begin <= kOffsetMask)
                textRef =
                    MakeRef(false, static_cast<std::uint32_t>(handle), start - begin, text.size());
            else
                textRef = s.pool.Store8(text);
        }
        std::uint64_t& ref = s.cells[i][index];
        ref = (ref & kCheckedBit) | textRef;
    }
}

std::uint64_t TableControl::PackBorrowed(TextBufferHandle handle, const char* base,
                                         std::string_view text)
{
    if (text.empty())
        return 0;
    // As addresses: text before `base` wraps round to an offset too large to pack.
    const std::uint64_t offset =
        reinterpret_cast<std::uintptr_t>(text.data()) - reinterpret_cast<std::uintptr_t>(base);
    if (handle <= 0 || static_cast<std::uint32_t>(handle) > kLastTextChunk ||
        text.size() > kLengthMask || offset > kOffsetMask)
        return kUnpackedCell;
    return MakeRef(false, static_cast<std::uint32_t>(handle), offset, text.size());
}

void TableControl::SetRowsPacked(int first, int count, std::span<const std::uint64_t* const> packed)
{
    if (first < 0 || count <= 0 || count > m_rowCount - first)
        return;
    Storage& s = *m_store;
    const std::size_t columns = std::min(packed.size(), s.cells.size());
    for (std::size_t c = 0; c < columns; ++c) {
        std::uint64_t* out = s.cells[c].data() + first;
        const std::uint64_t* in = packed[c];
        for (int i = 0; i < count; ++i) {
            const std::uint64_t cell = in[i] == kUnpackedCell ? 0 : in[i];
            out[i] = (out[i] & kCheckedBit) | cell;
        }
    }
}

void TableControl::ReserveTextWide(std::size_t units)
{
    m_store->pool.Reserve16(units);
}

int TableControl::TrimCell(int row, int column, int mask)
{
    const std::uint64_t* ref = CellRef(row, column);
    if (!ref)
        return -1;
    if (IsWide(*ref)) {
        std::u16string_view text = m_store->pool.View16(*ref);
        if (!NeedsTrim(text, mask))
            return 0;
        std::u16string trimmed = TrimText(text, mask);
        int removed = static_cast<int>(text.size() - trimmed.size());
        if (removed > 0)
            SetCellText16(row, column, trimmed);
        return removed;
    }
    std::string_view text = m_store->pool.View8(*ref);
    if (!NeedsTrim(text, mask))
        return 0;
    std::string trimmed = TrimText(text, mask);
    int removed = static_cast<int>(text.size() - trimmed.size());
    if (removed > 0)
        SetCellText8(row, column, trimmed);
    return removed;
}

void TableControl::CompactText()
{
    m_store->pool.Compact(m_store->cells);
}

TableMemoryUsage TableControl::MemoryUsage() const
{
    const Storage& s = *m_store;
    TableMemoryUsage usage;
    for (const std::vector<std::uint64_t>& column : s.cells)
        usage.cellBytes += column.capacity() * sizeof(std::uint64_t);
    usage.rowBytes = s.order.capacity() * 4 + s.position.capacity() * 4 + s.flags.capacity();
    usage.arenaBytes = s.pool.ArenaBytes();
    usage.adoptedBytes = s.pool.AdoptedBytes();
    usage.sideBytes = s.pool.LongBytes();
    return usage;
}

void TableControl::SetAltRows(int triState)
{
    m_altRows = triState >= 0 && triState <= 2 ? triState : 0;
    NotifyRepaint();
}

void TableControl::SetGrid(int triState)
{
    m_grid = triState >= 0 && triState <= 2 ? triState : 0;
    NotifyRepaint();
}

void TableControl::SetTabThru(bool on)
{
    m_tabThru = on;
    NotifyRepaint();
}

bool TableControl::EffectiveAltRows() const
{
    if (m_altRows == 0)
        return m_owner ? m_owner->PreferAltRows() : false;
    return m_altRows == 1;
}

bool TableControl::EffectiveGrid() const
{
    if (m_grid == 0)
        return m_owner ? m_owner->PreferDividers() : true;
    return m_grid == 1;
}

} // namespace quirnel
