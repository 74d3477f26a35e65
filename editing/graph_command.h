#pragma once
// The "Graph" tool: its options dialog, remembered in the "Settings" keys, and the two passes
// over the visible rows that turn a date column and up to two amount columns into totals per
// day, week, month or year, handed to the window that draws them.

#include "view/graph_data_set.h"

#include <cstdint>
#include <string>
#include <vector>

namespace quirnel {

struct ToolContext;
struct EditingPreferences;
class TableControl;

/// Stored values of the date format choice ("GraphDateFormat").
inline constexpr int kGraphMonthFirst = 0;
inline constexpr int kGraphDayFirst = 1;
inline constexpr int kGraphDateAuto = 2;

struct GraphChoice
{
    const char* label;
    int value;
};
inline constexpr GraphChoice kGraphDateFormats[] = {
    {"Month-First (American)", kGraphMonthFirst},
    {"Day-First (European)", kGraphDayFirst},
    {"Auto", kGraphDateAuto},
};
inline constexpr GraphChoice kGraphDivisions[] = {
    {"Daily", kDivisionDaily},        {"Monthly", kDivisionMonthly},
    {"Weeks ago", kDivisionWeeksAgo}, {"Months ago", kDivisionMonthsAgo},
    {"Yearly", kDivisionYearly},
};

/// One field of the options dialog: its label, help title, and the help of its check box (if
/// any) and of its value.
struct GraphField
{
    const char* label;
    const char* helpTitle;
    const char* checkHelp; ///< nullptr for fields without a check box
    const char* help;
};
inline constexpr const char* kGraphDialogTitle = "Graph";
inline constexpr const char* kGraphDialogText = "This will display a graph of the CSV data.";
extern const GraphField kGraphAmount1Field;
extern const GraphField kGraphAmount2Field;
extern const GraphField kGraphDateField;
extern const GraphField kGraphDateFormatField;
extern const GraphField kGraphDivisionField;
extern const GraphField kGraphTitleField;

/// What the options dialog shows and returns. Columns are data-column indices (1 ..), -1 for
/// none chosen.
struct GraphOptionsRequest
{
    /// The data columns' names (UTF-8), column 1 first.
    std::vector<std::string> columns;
    bool amount1Used = true;
    int amount1Column = -1;
    bool amount2Used = false;
    int amount2Column = -1;
    int dateColumn = -1;
    int dateFormat = kGraphDateAuto;
    /// A division code; a stored code the list does not offer comes back unchanged.
    int division = kDivisionDaily;
    bool titleUsed = false;
    std::string title; ///< UTF-8
};

/// Options as the builder takes them: columns resolved, dates' order decided.
struct GraphOptions
{
    int amount1Column = -1; ///< -1: count rows
    int amount2Column = -1; ///< -1: no second set
    int dateColumn = -1;
    bool dayFirst = true;
    int division = kDivisionDaily;
    bool titleUsed = false;
    std::string title;
};

/// Builds the chart over the rows that are not hidden. On failure returns false with the
/// error box's text in `error`.
bool BuildGraph(const TableControl& table, const GraphOptions& options, GraphChart& chart,
                std::string& error);

/// The dialog's request from the remembered choices (columns found again by name).
GraphOptionsRequest MakeGraphOptionsRequest(const TableControl& table,
                                            const EditingPreferences& prefs);
/// Remembers an accepted request's choices.
void StoreGraphOptions(const TableControl& table, const GraphOptionsRequest& request,
                       EditingPreferences& prefs);

void GraphCommand(ToolContext& context);

} // namespace quirnel
