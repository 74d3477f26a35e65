#include "editing/graph_command.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "ostrand/core/string.h"
#include "ostrand/core/user_interface.h"
#include "view/table_control.h"
#include "view/value_readers.h"

#include <limits>

namespace quirnel {

const GraphField kGraphAmount1Field = {
    "Amount column #1:", "Amount Column #1",
    "If checked, you may specify a column that contains a numeric amount which is summed and "
    "graphed on the Y-axis.  If unchecked, the amount will be 1 per row.",
    "This column contains the numeric amount that is summed and graphed on the Y-axis."};
const GraphField kGraphAmount2Field = {
    "Amount column #2:", "Amount Column #2",
    "If checked, you may specify a column that contains a numeric amount which is summed and "
    "graphed on the Y-axis.  This will be a second dataset, independent of the first.",
    "This column contains the numeric amount that is summed and graphed on the Y-axis.  This "
    "will be a second dataset, independent of the first."};
const GraphField kGraphDateField = {"Date column:", "Date Column", nullptr,
                                    "This column contains a date that is used to form the X-axis."};
const GraphField kGraphDateFormatField = {
    "Date format:", "Date Format", nullptr,
    "Determines how dates should be interpreted.  The day-first format is dd/mm/yyyy.  The "
    "month-first format is mm/dd/yyyy.  Year-first formatting is always supported regardless "
    "of this setting."};
const GraphField kGraphDivisionField = {
    "Division:", "Division", nullptr,
    "This determines how the dates are combined to form the X-axis."};
const GraphField kGraphTitleField = {
    "Title:", "Title",
    "If checked, you may override the default title that appears at the top of the graph.",
    "The title that appears at the top of the graph."};

namespace {

constexpr std::int32_t kNoDate = std::numeric_limits<std::int32_t>::min();
constexpr std::uint32_t kBlue = 0x0000FF;
constexpr std::uint32_t kGreen = 0x008000;

std::int32_t CellDay(const TableControl& table, int row, int column, bool dayFirst)
{
    const std::optional<DateTime> date = table.CellIsWide(row, column)
                                             ? ReadDateTime(table.CellText16(row, column), dayFirst)
                                             : ReadDateTime(table.CellText8(row, column), dayFirst);
    // A time alone reads as a time on a day of year 0: it names no day to count.
    if (!date || date->year == 0)
        return kNoDate;
    return static_cast<std::int32_t>(DayNumber(date->year, date->month, date->day));
}

double CellAmount(const TableControl& table, int row, int column)
{
    const std::optional<double> number = table.CellIsWide(row, column)
                                             ? ReadNumber(table.CellText16(row, column))
                                             : ReadNumber(table.CellText8(row, column));
    return number.value_or(0.0);
}

bool ValidColumn(const TableControl& table, int column)
{
    return column >= 1 && column < table.ColumnCount();
}

/// The remembered column: 8-bit names are kept as their bytes, UTF-16 names as UTF-8 under
/// the second key, so that either kind of file finds its column again.
int FindColumn(const TableControl& table, const std::string& narrow, const std::string& wide)
{
    for (int c = 1; c < table.ColumnCount(); ++c) {
        const TableColumn& column = table.Column(c);
        if (column.wide ? (!wide.empty() && table.ColumnNameUtf8(c) == wide)
                        : (!narrow.empty() && column.headerText == narrow))
            return c;
    }
    return -1;
}

void RememberColumn(const TableControl& table, int c, std::string& narrow, std::string& wide)
{
    if (!ValidColumn(table, c))
        return;
    const TableColumn& column = table.Column(c);
    narrow = column.wide ? std::string() : column.headerText;
    wide = column.wide ? table.ColumnNameUtf8(c) : std::string();
}

/// The first column sorted by `method`, else column 1.
int ColumnByMethod(const TableControl& table, int method, int fallback)
{
    for (int c = 1; c < table.ColumnCount(); ++c)
        if (table.Column(c).sortMethod == method)
            return c;
    return fallback;
}

} // namespace

bool BuildGraph(const TableControl& table, const GraphOptions& options, GraphChart& chart,
                std::string& error)
{
    if (!IsKnownDivision(options.division)) {
        error = "The division must be specified.";
        return false;
    }
    const int rows = table.RowCount();
    const int dateColumn = options.dateColumn;
    const int amount1 = ValidColumn(table, options.amount1Column) ? options.amount1Column : -1;
    const int amount2 = ValidColumn(table, options.amount2Column) ? options.amount2Column : -1;

    GraphDataSet first(options.division);
    GraphDataSet second(options.division);
    // Each row's day, read once: the second pass needs the reference date the first one finds.
    std::vector<std::int32_t> days(static_cast<std::size_t>(rows), kNoDate);
    if (ValidColumn(table, dateColumn)) {
        for (int r = 0; r < rows; ++r) {
            if (table.IsRowHidden(r))
                continue;
            const std::int32_t day = CellDay(table, r, dateColumn, options.dayFirst);
            days[static_cast<std::size_t>(r)] = day;
            if (day == kNoDate)
                continue;
            first.NoteDate(day);
            second.NoteDate(day);
        }
    }
    if (!first.HasDates()) {
        error = "The date column \"" + table.ColumnNameUtf8(dateColumn) +
                "\" does not contain any valid dates.";
        return false;
    }
    first.SetReferenceDate(first.LatestDate());
    second.SetReferenceDate(second.LatestDate());
    first.PrepareBuckets();
    if (amount2 >= 0)
        second.PrepareBuckets();

    for (int r = 0; r < rows; ++r) {
        const std::int32_t day = days[static_cast<std::size_t>(r)];
        if (day == kNoDate)
            continue;
        first.Add(day, amount1 >= 0 ? CellAmount(table, r, amount1) : 1.0);
        if (amount2 >= 0)
            second.Add(day, CellAmount(table, r, amount2));
    }
    first.Finish();
    second.Finish();

    chart = GraphChart();
    chart.division = options.division;
    chart.referenceDate = first.ReferenceDate();
    chart.title =
        options.titleUsed ? options.title : DivisionTitlePrefix(options.division) + "Totals";
    chart.xLabel = DivisionAxisLabel(options.division, chart.referenceDate, options.dayFirst);
    chart.yLabel = amount1 >= 0 ? table.ColumnNameUtf8(amount1) : std::string("Count");
    chart.series.push_back({chart.yLabel, kBlue, std::move(first)});
    if (amount2 >= 0)
        chart.series.push_back({table.ColumnNameUtf8(amount2), kGreen, std::move(second)});
    return true;
}

GraphOptionsRequest MakeGraphOptionsRequest(const TableControl& table,
                                            const EditingPreferences& prefs)
{
    GraphOptionsRequest request;
    for (int c = 1; c < table.ColumnCount(); ++c)
        request.columns.push_back(table.ColumnNameUtf8(c));
    const int numeric = ColumnByMethod(table, kSortNumeric, 1);
    request.amount1Used = prefs.graphAmount1Used;
    request.amount1Column = FindColumn(table, prefs.graphAmount, prefs.graphAmountW);
    if (request.amount1Column < 0)
        request.amount1Column = numeric;
    request.amount2Used = prefs.graphAmount2Used;
    request.amount2Column = FindColumn(table, prefs.graphAmount2, prefs.graphAmountW2);
    if (request.amount2Column < 0)
        request.amount2Column = numeric;
    request.dateColumn = FindColumn(table, prefs.graphDate, prefs.graphDateW);
    if (request.dateColumn < 0)
        request.dateColumn = ColumnByMethod(table, kSortDateTime, 1);
    request.dateFormat = prefs.graphDateFormat;
    request.division = prefs.graphDivision;
    request.titleUsed = prefs.graphTitleUsed;
    request.title = ost::Utf16ToUtf8(prefs.graphTitle);
    return request;
}

void StoreGraphOptions(const TableControl& table, const GraphOptionsRequest& request,
                       EditingPreferences& prefs)
{
    prefs.graphAmount1Used = request.amount1Used;
    RememberColumn(table, request.amount1Column, prefs.graphAmount, prefs.graphAmountW);
    prefs.graphAmount2Used = request.amount2Used;
    RememberColumn(table, request.amount2Column, prefs.graphAmount2, prefs.graphAmountW2);
    RememberColumn(table, request.dateColumn, prefs.graphDate, prefs.graphDateW);
    prefs.graphDateFormat = request.dateFormat;
    prefs.graphDivision = request.division;
    prefs.graphTitleUsed = request.titleUsed;
    prefs.graphTitle = ost::Utf8ToUtf16(request.title);
}

void GraphCommand(ToolContext& context)
{
    const std::string title(CommandLabel(cmd::kGraph));
    if (CheckToolPreconditions(context, kToolGoesOnAfterOpen, title, CommandIconName(cmd::kGraph)))
        return;
    context.host.CommitCellEdit();
    const TableControl& table = context.document.Table();
    GraphOptionsRequest request = MakeGraphOptionsRequest(table, context.prefs);
    if (!context.dialogs.GraphOptions(request))
        return;
    StoreGraphOptions(table, request, context.prefs);

    GraphOptions options;
    options.amount1Column = request.amount1Used ? request.amount1Column : -1;
    options.amount2Column = request.amount2Used ? request.amount2Column : -1;
    options.dateColumn = request.dateColumn;
    options.dayFirst = request.dateFormat == kGraphDayFirst     ? true
                       : request.dateFormat == kGraphMonthFirst ? false
                                                                : SystemDateIsDayFirst();
    options.division = request.division;
    options.titleUsed = request.titleUsed;
    options.title = request.title;

    GraphChart chart;
    std::string error;
    if (!BuildGraph(table, options, chart, error)) {
        context.ui.Message("Error", error, ost::MessageIcon::Error);
        return;
    }
    context.host.ShowGraph(chart);
}

} // namespace quirnel
