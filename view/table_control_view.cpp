// The grid's view side that needs no toolkit: widths, persisted view state, the two context
// menus as data, the commands the control carries out itself, and the statistics report.

#include "ostrand/core/byte_size.h"
#include "view/table_control.h"
#include "view/value_readers.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>

namespace quirnel {

namespace {

std::optional<int> ParseInt(std::string_view text)
{
    while (!text.empty() && text.front() == ' ')
        text.remove_prefix(1);
    while (!text.empty() && text.back() == ' ')
        text.remove_suffix(1);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    int value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc() || end != text.data() + text.size() || text.empty())
        return std::nullopt;
    return value;
}

std::vector<std::string_view> SplitCommas(std::string_view text)
{
    std::vector<std::string_view> parts;
    if (text.empty())
        return parts;
    std::size_t start = 0;
    while (true) {
        std::size_t comma = text.find(',', start);
        parts.push_back(
            text.substr(start, comma == std::string_view::npos ? comma : comma - start));
        if (comma == std::string_view::npos)
            break;
        start = comma + 1;
    }
    return parts;
}

MenuEntry Entry(std::string text, GridCommand command, bool enabled = true)
{
    MenuEntry entry;
    entry.text = std::move(text);
    entry.command = static_cast<int>(command);
    entry.enabled = enabled;
    return entry;
}

MenuEntry Radio(std::string text, GridCommand command, bool checked)
{
    MenuEntry entry = Entry(std::move(text), command);
    entry.mark = MenuMark::Radio;
    entry.checked = checked;
    return entry;
}

MenuEntry Submenu(std::string text, std::vector<MenuEntry> entries)
{
    MenuEntry entry;
    entry.text = std::move(text);
    entry.submenu = std::move(entries);
    return entry;
}

std::string FormatNumber(double value)
{
    char text[64];
    std::snprintf(text, sizeof text, "%.10g", value);
    return text;
}

} // namespace

void TableControl::SetGeometry(const ViewGeometry& geometry)
{
    m_geometry = geometry;
}

int TableControl::HeaderTextWidth(int column) const
{
    if (column < 0 || column >= ColumnCount())
        return 0;
    const TableColumn& c = m_columns[static_cast<std::size_t>(column)];
    if (m_measurer)
        return c.wide ? m_measurer->TextWidthWide(c.headerTextWide)
                      : m_measurer->TextWidth(c.headerText);
    return 10 * static_cast<int>(c.wide ? c.headerTextWide.size() : c.headerText.size());
}

int TableControl::NaturalWidth(int column, bool bare) const
{
    if (column < 0 || column >= ColumnCount())
        return kMinColumnWidth;
    int width = HeaderTextWidth(column) + 4 + (bare || !m_measurer ? 0 : m_measurer->CellPadding());
    return std::max(width, kMinColumnWidth);
}

void TableControl::MaximizeColumn(int column)
{
    if (column < 0 || column >= ColumnCount())
        return;
    TableColumn& c = m_columns[static_cast<std::size_t>(column)];
    int width = static_cast<int>(NaturalWidth(column) * c.defaultWidthFactor);
    if (m_geometry.clientWidth > 0)
        width = std::min(width, m_geometry.clientWidth / 2);
    c.width = std::max(width, kMinColumnWidth);
    NotifyRepaint();
}

void TableControl::MinimizeColumn(int column)
{
    if (column < 0 || column >= ColumnCount())
        return;
    m_columns[static_cast<std::size_t>(column)].width = NaturalWidth(column, true);
    NotifyRepaint();
}

void TableControl::MaximizeAllColumns()
{
    for (int c = 0; c < ColumnCount(); ++c)
        MaximizeColumn(c);
}

void TableControl::MinimizeAllColumns()
{
    for (int c = 0; c < ColumnCount(); ++c)
        MinimizeColumn(c);
}

void TableControl::DefaultWidths()
{
    for (TableColumn& c : m_columns)
        c.width = std::max(c.initialWidth, kMinColumnWidth);
    NotifyRepaint();
}

void TableControl::ApplyInitialWidths(std::span<const int> longestLength, int screenWidth,
                                      int viewWidth)
{
    const double charWidth = m_measurer ? std::max(1.0, m_measurer->AverageCharWidth()) : 10.0;
    // The cell draws its text inside a padding; without it the longest text would be cut.
    const int padding = m_measurer ? m_measurer->CellPadding() : 0;
    const int columns = std::min(ColumnCount(), static_cast<int>(longestLength.size()));
    for (int c = 1; c < columns; ++c) {
        TableColumn& column = m_columns[static_cast<std::size_t>(c)];
        int longest = std::max(0, longestLength[static_cast<std::size_t>(c)]);
        int width =
            static_cast<int>(std::lround(std::min(longest, 80) * charWidth * 1.12)) + padding;
        width = std::max(width, kMinColumnWidth);
        if (screenWidth > 0)
            width = std::min(width, screenWidth / 2);
        width = std::max(width, HeaderTextWidth(c));
        column.width = std::max(column.width, width);
    }
    int total = 0;
    for (const TableColumn& column : m_columns)
        if (!column.hidden)
            total += column.width;
    if (total >= viewWidth)
        return;
    // The spare room goes to the columns in proportion to their (capped) longest text.
    long long shares = 0;
    for (int c = 1; c < columns; ++c)
        if (!m_columns[static_cast<std::size_t>(c)].hidden)
            shares += std::min(std::max(0, longestLength[static_cast<std::size_t>(c)]), 40);
    if (shares == 0)
        return;
    const int spare = viewWidth - total;
    for (int c = 1; c < columns; ++c) {
        TableColumn& column = m_columns[static_cast<std::size_t>(c)];
        if (column.hidden)
            continue;
        long long share = std::min(std::max(0, longestLength[static_cast<std::size_t>(c)]), 40);
        column.width += static_cast<int>(spare * share / shares);
    }
    NotifyRepaint();
}

void TableControl::SaveViewState(ViewStateStore& store) const
{
    if (m_settingsName.empty())
        return;
    int sort = 0;
    if (m_sortColumn >= 0)
        sort = m_sortAscending ? m_sortColumn + 1 : -(m_sortColumn + 1);
    store.WriteText(m_settingsName + "Sort", std::to_string(sort));
    if (m_style & GRID_REMEMBER_WIDTHS) {
        std::string widths;
        for (const TableColumn& c : m_columns)
            widths += std::to_string(c.width) + ",";
        if (!widths.empty())
            widths.pop_back();
        store.WriteText(m_settingsName + "Widths", widths);
    }
    if (m_style & GRID_HIDE_COLUMNS) {
        std::string hide;
        for (const TableColumn& c : m_columns)
            hide += c.hidden ? "1," : "0,";
        if (!hide.empty())
            hide.pop_back();
        store.WriteText(m_settingsName + "Hide", hide);
    }
    store.WriteText(m_settingsName + "AltRows", std::to_string(m_altRows));
    store.WriteText(m_settingsName + "Grid", std::to_string(m_grid));
    if (m_style & GRID_TAB_THRU)
        store.WriteText(m_settingsName + "TabThru", m_tabThru ? "1" : "0");
}

void TableControl::LoadViewState(ViewStateStore& store)
{
    if (m_settingsName.empty())
        return;
    if (std::optional<std::string> text = store.ReadText(m_settingsName + "Sort")) {
        std::optional<int> value = ParseInt(*text);
        if (value && *value != 0 && *value != INT32_MIN)
            SetSort(std::abs(*value) - 1, *value > 0, true);
    }
    if (m_style & GRID_REMEMBER_WIDTHS) {
        if (std::optional<std::string> text = store.ReadText(m_settingsName + "Widths")) {
            std::vector<std::string_view> parts = SplitCommas(*text);
            for (std::size_t c = 0; c < parts.size() && c < m_columns.size(); ++c) {
                std::optional<int> width = ParseInt(parts[c]);
                if (width && *width >= 0)
                    m_columns[c].width = *width;
            }
        }
    }
    if (m_style & GRID_HIDE_COLUMNS) {
        if (std::optional<std::string> text = store.ReadText(m_settingsName + "Hide")) {
            std::vector<std::string_view> parts = SplitCommas(*text);
            for (std::size_t c = 0; c < parts.size() && c < m_columns.size(); ++c) {
                std::optional<int> hidden = ParseInt(parts[c]);
                if (hidden)
                    m_columns[c].hidden = *hidden != 0;
            }
        }
    }
    auto readTriState = [&](const char* suffix, int& target) {
        if (std::optional<std::string> text = store.ReadText(m_settingsName + suffix)) {
            std::optional<int> value = ParseInt(*text);
            if (value && *value >= 0 && *value <= 2)
                target = *value;
        }
    };
    readTriState("AltRows", m_altRows);
    readTriState("Grid", m_grid);
    if (m_style & GRID_TAB_THRU) {
        if (std::optional<std::string> text = store.ReadText(m_settingsName + "TabThru")) {
            std::optional<int> value = ParseInt(*text);
            if (value)
                m_tabThru = *value != 0;
        }
    }
    NotifyReset();
}

std::vector<MenuEntry> TableControl::HeaderMenu(int column)
{
    std::vector<MenuEntry> menu;
    const bool valid = column >= 0 && column < ColumnCount();
    const bool rows = m_rowCount > 0;
    // A kept order counts as sorted here: "Don't sort rows" is the way back to file order.
    const bool sorted = m_sortColumn >= 0 || m_orderKept;
    if (!valid) {
        if (rows && sorted)
            menu.push_back(Entry("Don't sort rows", GridCommand::DontSort));
        return menu;
    }
    const TableColumn& c = m_columns[static_cast<std::size_t>(column)];
    const bool textEditable = c.kind == kColumnText && !(c.flags & COLUMN_NO_EDIT);
    const bool twoState = c.kind == kColumnCheck || c.kind == kColumnCheckAlt;
    if (m_visibleCount > 0 && !(c.flags & COLUMN_NO_SORT)) {
        menu.push_back(Entry("Sort ascending", GridCommand::SortAscending));
        menu.push_back(Entry("Sort descending", GridCommand::SortDescending));
    }
    if (rows && sorted)
        menu.push_back(Entry("Don't sort rows", GridCommand::DontSort));
    if (!twoState)
        menu.push_back(Entry("Column width: maximize", GridCommand::ColumnWidthMaximize));
    menu.push_back(Entry("Column width: minimize", GridCommand::ColumnWidthMinimize));
    if (rows && !(c.flags & COLUMN_READ_ONLY) && (c.kind == kColumnText || c.kind == kColumnChoice))
        menu.push_back(Entry("Copy entire column to clipboard", GridCommand::CopyColumn));
    if (twoState && rows) {
        menu.push_back(Entry("Check all", GridCommand::CheckAll));
        menu.push_back(Entry("Uncheck all", GridCommand::UncheckAll));
        menu.push_back(Entry("Toggle all", GridCommand::ToggleAll));
    }
    if ((m_style & GRID_PASTE_NEW_ROWS) && m_owner && m_owner->ClipboardHasText() &&
        (textEditable || c.kind == kColumnChoice))
        menu.push_back(Entry("Paste new rows", GridCommand::PasteNewRows));
    if (c.kind == kColumnText && !(c.flags & COLUMN_NO_SEARCH) && m_rowCount > 1) {
        menu.push_back(Entry("Search column", GridCommand::SearchColumn));
        if (m_owner && m_owner->HasColumnSearch()) {
            // "Search column/continue%s" with the shortcut text as its argument.
            menu.push_back(Entry(std::string("Search column/continue") +
                                     ((m_style & GRID_NO_CTRL_N_TEXT) ? "" : "\tCtrl+N"),
                                 GridCommand::SearchColumnContinue));
        }
    }
    if ((textEditable || c.kind == kColumnChoice) && !(c.editTemplateFlags & COLUMN_READ_ONLY) &&
        m_rowCount >= 2) {
        menu.push_back(Entry("Set entire column", GridCommand::SetEntireColumn));
        if (c.kind != kColumnChoice)
            menu.push_back(Entry("Trim column whitespace", GridCommand::TrimColumnWhitespace));
    }
    if ((c.flags & COLUMN_RESETTABLE) && m_rowCount >= 2)
        menu.push_back(Entry("Reset entire column", GridCommand::ResetColumn));
    if (m_owner)
        m_owner->AddColumnMenuEntries(column, menu);
    std::vector<MenuEntry> options;
    if (c.flags & COLUMN_CHOOSE_ALIGN) {
        Alignment alignment = ColumnAlignment(column);
        options.push_back(Submenu(
            "Alignment", {Radio("Left", GridCommand::AlignLeft, alignment == Alignment::Left),
                          Radio("Center", GridCommand::AlignCenter, alignment == Alignment::Center),
                          Radio("Right", GridCommand::AlignRight, alignment == Alignment::Right)}));
    }
    if (c.flags & COLUMN_CHOOSE_SORT) {
        std::vector<MenuEntry> methods;
        for (const SortMethodName& m : kSortMethodNames) {
            MenuEntry entry;
            entry.text = m.text;
            entry.command = static_cast<int>(GridCommand::SortMethodBase) + m.method;
            entry.argument = m.method;
            entry.mark = MenuMark::Radio;
            entry.checked = c.sortMethod == m.method;
            methods.push_back(std::move(entry));
        }
        options.push_back(Submenu("Sort method", std::move(methods)));
    }
    if (!options.empty())
        menu.push_back(Submenu("Column options", std::move(options)));
    return menu;
}

std::vector<MenuEntry> TableControl::CellMenu(int row, int column)
{
    std::vector<MenuEntry> menu;
    const bool rows = m_rowCount > 0;
    if (row >= 0 && row < m_rowCount && column >= 1 && column < ColumnCount())
        menu.push_back(Entry("Copy cell text", GridCommand::CopyCellText));
    menu.push_back(Entry("Add row", GridCommand::AddRow));
    // "Delete row%c": the character is "s" for more than one selected row.
    menu.push_back(
        Entry(m_selectedCount > 1 ? "Delete rows" : "Delete row", GridCommand::DeleteRows, rows));
    menu.push_back(Entry("Duplicate row", GridCommand::DuplicateRow, rows));
    menu.push_back(Entry("Move row up\tAlt+Up", GridCommand::MoveRowUp, rows));
    menu.push_back(Entry("Move row down\tAlt+Down", GridCommand::MoveRowDown, rows));
    menu.push_back(Entry("Deselect all rows", GridCommand::DeselectAll, rows));
    menu.push_back(Entry("Select all rows", GridCommand::SelectAll, rows));

    std::vector<MenuEntry> options;
    if (m_style & GRID_HIDE_COLUMNS) {
        std::vector<MenuEntry> columns;
        for (int c = 0; c < ColumnCount(); ++c) {
            MenuEntry entry = Entry(ColumnNameUtf8(c), GridCommand::HideColumn);
            entry.argument = c;
            entry.mark = MenuMark::Check;
            entry.checked = m_columns[static_cast<std::size_t>(c)].hidden;
            columns.push_back(std::move(entry));
        }
        options.push_back(Submenu("Hide columns", std::move(columns)));
    }
    options.push_back(Submenu("Alternating rows",
                              {Radio("Default", GridCommand::AltRowsDefault, m_altRows == 0),
                               Radio("Enabled", GridCommand::AltRowsEnabled, m_altRows == 1),
                               Radio("Disabled", GridCommand::AltRowsDisabled, m_altRows == 2)}));
    options.push_back(
        Submenu("Row dividers", {Radio("Default", GridCommand::DividersDefault, m_grid == 0),
                                 Radio("Visible", GridCommand::DividersVisible, m_grid == 1),
                                 Radio("Hidden", GridCommand::DividersHidden, m_grid == 2)}));
    if (m_style & GRID_TAB_THRU) {
        MenuEntry entry = Entry("Tab through cells", GridCommand::TabThru);
        entry.mark = MenuMark::Check;
        entry.checked = m_tabThru;
        options.push_back(std::move(entry));
    }
    menu.push_back(Submenu("Table options", std::move(options)));
    menu.push_back(
        Submenu("Table tools", {Entry("Bookmark-return", GridCommand::BookmarkReturn),
                                Entry("Bookmark-set", GridCommand::BookmarkSet),
                                Entry("Jump to row", GridCommand::JumpToRow),
                                Entry("Column widths: default", GridCommand::WidthsDefault),
                                Entry("Column widths: maximize", GridCommand::WidthsMaximize),
                                Entry("Column widths: minimize", GridCommand::WidthsMinimize),
                                Entry("Statistics", GridCommand::Statistics),
                                Entry("Delete all rows", GridCommand::DeleteAllRows),
                                Entry("Import from CSV file", GridCommand::ImportCsv),
                                Entry("Export to CSV file", GridCommand::ExportCsv)}));
    return menu;
}

bool TableControl::HandleCommand(int command, int argument, int column)
{
    const int base = static_cast<int>(GridCommand::SortMethodBase);
    if (command >= base && command <= base + kSortStoredValue) {
        if (column < 0 || column >= ColumnCount())
            return true;
        SetColumnSortMethod(column, command - base);
        if (column == m_sortColumn)
            Sort();
        return true;
    }
    switch (static_cast<GridCommand>(command)) {
    case GridCommand::SortAscending:
    case GridCommand::SortDescending:
        SetSort(column, static_cast<GridCommand>(command) == GridCommand::SortAscending, true);
        return true;
    case GridCommand::DontSort:
        Unsort();
        return true;
    case GridCommand::ColumnWidthMaximize:
        MaximizeColumn(column);
        return true;
    case GridCommand::ColumnWidthMinimize:
        MinimizeColumn(column);
        return true;
    case GridCommand::AlignLeft:
        SetColumnAlignment(column, Alignment::Left);
        return true;
    case GridCommand::AlignCenter:
        SetColumnAlignment(column, Alignment::Center);
        return true;
    case GridCommand::AlignRight:
        SetColumnAlignment(column, Alignment::Right);
        return true;
    case GridCommand::SelectAll:
        SelectAllRows();
        return true;
    case GridCommand::DeselectAll:
        DeselectAllRows();
        return true;
    case GridCommand::HideColumn:
        if (argument >= 0 && argument < ColumnCount())
            SetColumnHidden(argument, !m_columns[static_cast<std::size_t>(argument)].hidden);
        return true;
    case GridCommand::AltRowsDefault:
    case GridCommand::AltRowsEnabled:
    case GridCommand::AltRowsDisabled:
        SetAltRows(command - static_cast<int>(GridCommand::AltRowsDefault));
        return true;
    case GridCommand::DividersDefault:
    case GridCommand::DividersVisible:
    case GridCommand::DividersHidden:
        SetGrid(command - static_cast<int>(GridCommand::DividersDefault));
        return true;
    case GridCommand::TabThru:
        SetTabThru(!m_tabThru);
        return true;
    case GridCommand::WidthsDefault:
        DefaultWidths();
        return true;
    case GridCommand::WidthsMaximize:
        MaximizeAllColumns();
        return true;
    case GridCommand::WidthsMinimize:
        MinimizeAllColumns();
        return true;
    default:
        return false;
    }
}

std::string TableControl::StatisticsReport() const
{
    std::string report;
    auto line = [&report](const std::string& label, const std::string& value) {
        report += label;
        report += '\t';
        report += value;
        report += "\r\n";
    };
    const int hidden = m_rowCount - m_visibleCount;
    line("Number of rows:", std::to_string(m_rowCount));
    line("Number of visible/hidden rows:",
         std::to_string(m_visibleCount) + " / " + std::to_string(hidden));
    // Rows count from 1 as in every message; data column k is field k, so columns need no
    // shift.
    line("Input focus on row/column (1-based):",
         std::to_string(m_focusRow + 1) + " / " + std::to_string(std::max(m_focusColumn, 0)));
    line("Number of selected rows:", std::to_string(m_selectedCount));
    line("Completely visible rows:", std::to_string(m_geometry.completelyVisibleRows));
    line("Partially visible rows:", std::to_string(m_geometry.partiallyVisibleRows));

    for (int c = 1; c < ColumnCount(); ++c) {
        const TableColumn& column = m_columns[static_cast<std::size_t>(c)];
        const std::string name = ColumnNameUtf8(c);
        const int m = column.sortMethod;
        double total = 0;
        int counted = 0;
        int empty = 0;
        std::optional<DateTime> earliest;
        std::optional<DateTime> latest;
        for (int row = 0; row < m_rowCount; ++row) {
            if (row == m_trailingRow || IsRowHidden(row))
                continue;
            ++counted;
            if (CellIsEmpty(row, c)) {
                ++empty;
                continue;
            }
            const bool wide = CellIsWide(row, c);
            if (m == kSortNumeric || m == kSortNumericLow) {
                std::optional<double> value;
                if (column.kind == kColumnChoice) {
                    if (CellValue(row, c) != kEmptyChoice)
                        value = CellValue(row, c);
                } else {
                    value = wide ? ReadNumber(CellText16(row, c)) : ReadNumber(CellText8(row, c));
                }
                total += value.value_or(0.0);
            } else if (m == kSortMemory) {
                std::optional<double> value =
                    wide ? ReadMemorySize(CellText16(row, c)) : ReadMemorySize(CellText8(row, c));
                total += value.value_or(0.0);
            } else if (m == kSortDateTime) {
                std::optional<DateTime> date = wide ? ReadDateTime(CellText16(row, c), m_dayFirst)
                                                    : ReadDateTime(CellText8(row, c), m_dayFirst);
                if (date) {
                    if (!earliest || date->Serial() < earliest->Serial())
                        earliest = date;
                    if (!latest || date->Serial() > latest->Serial())
                        latest = date;
                }
            }
        }
        const std::string quoted = "Column \"" + name + "\"";
        const double average = counted > 0 ? total / counted : 0.0;
        if (m == kSortNumeric || m == kSortNumericLow) {
            line(quoted + " total/avg:", FormatNumber(total) + " / " + FormatNumber(average));
        } else if (m == kSortMemory) {
            line(quoted + " total/avg:",
                 ost::FormatByteSize(static_cast<std::int64_t>(total)) + " / " +
                     ost::FormatByteSize(static_cast<std::int64_t>(average)));
        } else if (m == kSortDateTime) {
            line(quoted + " earliest date:", earliest ? earliest->Text() : "");
            line(quoted + " latest date:", latest ? latest->Text() : "");
        }
        line(quoted + " empty cells:", std::to_string(empty));
    }
    return report;
}

} // namespace quirnel
