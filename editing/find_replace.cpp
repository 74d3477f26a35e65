#include "editing/find_replace.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/change_frame.h"
#include "editing/text_matcher.h"
#include "editing/tool_context.h"
#include "editing/tool_preconditions.h"
#include "ostrand/core/user_interface.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace quirnel {

namespace {

constexpr const char* kFindAndReplace = "Find and Replace";
constexpr const char* kNoOccurrences = "No occurrences were found.";
/// A backward walk starting here takes every match of the cell.
constexpr std::size_t kCellEnd = static_cast<std::size_t>(-1);

constexpr int kReviseButton = ost::kFirstExtraButtonId;
constexpr int kRestartButton = ost::kFirstExtraButtonId + 1;
constexpr int kReplaceButton = ost::kFirstExtraButtonId + 2;
constexpr int kSkipButton = ost::kFirstExtraButtonId + 3;
constexpr int kReplaceRestButton = ost::kFirstExtraButtonId + 4;

std::string Caption(int id)
{
    return std::string(CommandLabel(id));
}

unsigned MatchFlags(bool caseSensitive, bool wholeWord, bool anyChar = false, bool anyRun = false)
{
    return (caseSensitive ? 0u : kMatchIgnoreCase) | (wholeWord ? kMatchWholeWord : 0u) |
           (anyChar ? kMatchAnyChar : 0u) | (anyRun ? kMatchAnyRun : 0u);
}

/// A cell's text in whichever width it is stored.
struct CellText
{
    std::string_view narrow;
    std::u16string_view wide;
    bool isWide = false;
    std::size_t Size() const { return isWide ? wide.size() : narrow.size(); }
};

CellText ReadCell(const TableControl& table, int row, int column)
{
    CellText cell;
    cell.narrow = table.CellText8(row, column);
    if (cell.narrow.empty()) {
        cell.wide = table.CellText16(row, column);
        cell.isWide = !cell.wide.empty();
    }
    return cell;
}

/// One row's cells for a walk: its 8-bit texts fetched in one call (a million-row table has
/// ten million cells), the UTF-16 ones where those are empty.
class RowCells
{
public:
    explicit RowCells(const TableControl& table)
        : m_table(table), m_texts8(static_cast<std::size_t>(std::max(1, table.ColumnCount())))
    {}
    void Load(int row)
    {
        m_row = row;
        m_table.RowText8(row, m_texts8.data());
    }
    CellText Cell(int column) const
    {
        CellText cell;
        cell.narrow = m_texts8[static_cast<std::size_t>(column - 1)];
        if (cell.narrow.empty()) {
            cell.wide = m_table.CellText16(m_row, column);
            cell.isWide = !cell.wide.empty();
        }
        return cell;
    }

private:
    const TableControl& m_table;
    std::vector<std::string_view> m_texts8;
    int m_row = -1;
};

/// The text looked for, ready for cells of either width.
struct Searcher
{
    Searcher(const std::u16string& text, unsigned flags, const ByteCharset& cellCharset)
        : charset(cellCharset), narrow(NarrowMatcher(text, flags, cellCharset, &text8)),
          wide(TextMatcher::FromUtf16(text, flags, cellCharset))
    {}
    std::optional<TextMatch> Find(const CellText& cell, std::size_t from) const
    {
        return cell.isWide ? wide.Find(cell.wide, from) : narrow.Find(cell.narrow, from);
    }
    std::optional<TextMatch> FindLast(const CellText& cell, std::size_t before) const
    {
        return cell.isWide ? wide.FindLast(cell.wide, before)
                           : narrow.FindLast(cell.narrow, before);
    }

    ByteCharset charset;
    std::string text8;
    TextMatcher narrow;
    TextMatcher wide;
};

/// Moves the focus to the match and shows it selected, in UTF-16 units as the cell is shown.
void ShowMatch(ToolContext& context, const Searcher& searcher, int row, int column,
               const CellText& cell, const TextMatch& match)
{
    context.document.Table().SetFocusCell(row, column);
    std::size_t start = match.start;
    std::size_t end = match.start + match.length;
    if (!cell.isWide) {
        start = Utf16Offset(searcher.charset, cell.narrow, start);
        end = Utf16Offset(searcher.charset, cell.narrow, end);
    }
    context.host.ShowCellMatch(row, column, static_cast<int>(start), static_cast<int>(end - start));
}

/// Where a walk starts: a line of the view, a data column and a code-unit offset in that cell
/// (forward: where a match may start at the earliest; backward: matches start before it).
struct WalkPosition
{
    int view = 0;
    int column = 1;
    std::size_t offset = 0;
    bool operator==(const WalkPosition&) const = default;
};

WalkPosition TableStart(const TableControl&)
{
    return {0, 1, 0};
}

WalkPosition TableEnd(const TableControl& table)
{
    return {table.VisibleRowCount() - 1, table.ColumnCount() - 1, kCellEnd};
}

WalkPosition Edge(const TableControl& table, bool backward)
{
    return backward ? TableEnd(table) : TableStart(table);
}

/// The current cell as a start; nullopt when no shown data cell is current.
std::optional<WalkPosition> CurrentCell(const TableControl& table, bool backward)
{
    const int view = table.ViewIndexOfRow(table.FocusRow());
    const int column = table.FocusColumn();
    if (view < 0)
        return std::nullopt;
    return WalkPosition{view, column >= 1 && column < table.ColumnCount() ? column : 1,
                        backward ? kCellEnd : 0};
}

WalkPosition StartOf(const TableControl& table, SearchDirection direction)
{
    switch (direction) {
    case SearchDirection::ForwardFromHere:
        return CurrentCell(table, false).value_or(TableStart(table));
    case SearchDirection::BackwardFromHere:
        // Without a current cell there is no "here"; the end lets the walk cover the table.
        return CurrentCell(table, true).value_or(TableEnd(table));
    case SearchDirection::ForwardFromBeginning:
        return TableStart(table);
    case SearchDirection::BackwardFromEnd:
        break;
    }
    return TableEnd(table);
}

/// Just past the last match going forward, just before it going backward; the current cell
/// when that match's row is gone from sight.
WalkPosition ContinueFrom(const TableControl& table, const SearchState& state, bool backward)
{
    const int view = table.ViewIndexOfRow(state.row);
    if (view < 0 || state.column < 1 || state.column >= table.ColumnCount())
        return StartOf(table, backward ? SearchDirection::BackwardFromHere
                                       : SearchDirection::ForwardFromHere);
    return {view, state.column, backward ? state.start : state.start + state.length};
}

/// Calls visit(row, column, cell, limit) for each shown data cell in walk order until it
/// returns false; `limit` is where matches may start (forward) or must start before
/// (backward).
template <class Visit>
void Walk(const TableControl& table, WalkPosition start, bool backward, Visit visit)
{
    const int views = table.VisibleRowCount();
    const int columns = table.ColumnCount();
    if (views < 1 || columns < 2)
        return;
    start.view = std::clamp(start.view, 0, views - 1);
    start.column = std::clamp(start.column, 1, columns - 1);
    RowCells cells(table);
    if (!backward) {
        for (int view = start.view; view < views; ++view) {
            const int row = table.RowAtViewIndex(view);
            cells.Load(row);
            for (int column = view == start.view ? start.column : 1; column < columns; ++column) {
                const bool first = view == start.view && column == start.column;
                const CellText cell = cells.Cell(column);
                if (cell.Size() > 0 && !visit(row, column, cell, first ? start.offset : 0))
                    return;
            }
        }
        return;
    }
    for (int view = start.view; view >= 0; --view) {
        const int row = table.RowAtViewIndex(view);
        cells.Load(row);
        for (int column = view == start.view ? start.column : columns - 1; column >= 1; --column) {
            const bool first = view == start.view && column == start.column;
            const CellText cell = cells.Cell(column);
            if (cell.Size() > 0 && !visit(row, column, cell, first ? start.offset : kCellEnd))
                return;
        }
    }
}

/// Shows the dialog until its options can be searched with (refusals said in between);
/// false when the user cancelled or gave no text.
bool AskOptions(ToolContext& context, const std::string& caption, SearchOptions& options)
{
    for (;;) {
        SearchRequest request;
        request.caption = caption;
        request.options = options;
        request.unicode = context.document.IsUnicode();
        if (!context.dialogs.Search(request))
            return false;
        options = request.options;
        const std::string refusal = SearchOptionsRefusal(options);
        if (refusal.empty())
            return !options.searchText.empty();
        context.ui.Message(caption, refusal, ost::MessageIcon::Information);
    }
}

void RememberDialog(SearchState& state, const SearchOptions& options)
{
    state.options = options;
    state.made = true;
    state.backward = IsBackward(options.direction);
}

/// Search only: the first match in walk order becomes the current cell.
bool SearchWalk(ToolContext& context, const Searcher& searcher, WalkPosition start, bool backward)
{
    bool found = false;
    Walk(context.document.Table(), start, backward,
         [&](int row, int column, const CellText& cell, std::size_t limit) {
             const std::optional<TextMatch> match =
                 backward ? searcher.FindLast(cell, limit) : searcher.Find(cell, limit);
             if (!match)
                 return true;
             SearchState& state = context.state.search;
             state.row = row;
             state.column = column;
             state.start = match->start;
             state.length = match->length;
             ShowMatch(context, searcher, row, column, cell, *match);
             found = true;
             return false;
         });
    return found;
}

enum class PromptAnswer
{
    Replace,
    Skip,
    ReplaceRest,
    Stop
};

PromptAnswer AskReplace(ToolContext& context, const Searcher& searcher, int row, int column,
                        const CellText& cell, const TextMatch& match)
{
    ShowMatch(context, searcher, row, column, cell, match);
    ost::MessageBoxRequest box;
    box.title = kFindAndReplace;
    box.text = "Replace this occurrence?";
    box.icon = ost::MessageIcon::Question;
    box.commandIcon = std::string(CommandIconName(cmd::kFindReplace));
    box.buttons = ost::kButtonCancel;
    box.extraButtons = {
        {"Replace", "Replace this occurrence and go on to the next one.", kReplaceButton},
        {"Skip", "Leave this occurrence as it is and go on to the next one.", kSkipButton},
        {"Replace all", "Replace this occurrence and every one after it without asking.",
         kReplaceRestButton},
    };
    box.defaultButton = kReplaceButton;
    switch (context.ui.MessageBox(box)) {
    case kReplaceButton:
        return PromptAnswer::Replace;
    case kSkipButton:
        return PromptAnswer::Skip;
    case kReplaceRestButton:
        return PromptAnswer::ReplaceRest;
    default:
        return PromptAnswer::Stop;
    }
}

/// Writes `cell` back with the taken matches replaced.
template <class View, class Text>
void BuildReplaced(View text, const std::vector<TextMatch>& matches, const std::vector<bool>& taken,
                   View replacement, Text& out)
{
    out.clear();
    std::size_t at = 0;
    for (std::size_t i = 0; i < matches.size(); ++i) {
        if (!taken[i])
            continue;
        out.append(text.substr(at, matches[i].start - at));
        out.append(replacement);
        at = matches[i].start + matches[i].length;
    }
    out.append(text.substr(at));
}

/// Replacement over the walk; true when any occurrence was found (replaced or not), in which
/// case the count of changed cells has been reported.
bool ReplaceWalk(ToolContext& context, const Searcher& searcher, const SearchOptions& options,
                 WalkPosition start, bool backward, const std::string& caption)
{
    TableControl& table = context.document.Table();
    const std::u16string& replacement16 = options.replaceText;
    std::string replacement8;
    searcher.charset.Encode(Utf16ToUtf32(replacement16), replacement8);
    SearchState& state = context.state.search;

    ChangeFrame frame(context);
    long long changedCells = 0;
    bool anyFound = false;
    bool prompt = options.promptOnReplace;
    int firstPosition = table.RowCount();
    std::vector<TextMatch> matches;
    std::vector<bool> taken;
    std::string out8;
    std::u16string out16;
    Walk(table, start, backward, [&](int row, int column, const CellText& cell, std::size_t limit) {
        // Every occurrence the walk passes in this cell, left to right, none overlapping.
        matches.clear();
        for (std::size_t pos = backward ? 0 : limit;;) {
            const std::optional<TextMatch> match = searcher.Find(cell, pos);
            if (!match || (backward && match->start >= limit))
                break;
            matches.push_back(*match);
            pos = match->start + match->length;
        }
        if (matches.empty())
            return true;
        anyFound = true;
        taken.assign(matches.size(), false);
        bool stop = false;
        std::size_t count = 0;
        for (std::size_t k = 0; k < matches.size() && !stop; ++k) {
            const std::size_t i = backward ? matches.size() - 1 - k : k;
            if (prompt) {
                const PromptAnswer answer =
                    AskReplace(context, searcher, row, column, cell, matches[i]);
                if (answer == PromptAnswer::Stop) {
                    stop = true;
                    break;
                }
                if (answer == PromptAnswer::Skip)
                    continue;
                if (answer == PromptAnswer::ReplaceRest)
                    prompt = false;
            }
            taken[i] = true;
            ++count;
            // Without "Replace all" only the first occurrence replaced counts.
            stop = !options.replaceAll;
        }
        if (count > 0) {
            // A continued search picks up at the replacement made last in walk order:
            // the rightmost one going forward, the leftmost one going backward.
            const std::size_t grown = cell.isWide ? replacement16.size() : replacement8.size();
            std::size_t shift = 0;
            std::size_t last = 0;
            bool placed = false;
            for (std::size_t i = 0; i < matches.size(); ++i) {
                if (!taken[i])
                    continue;
                if (!backward || !placed)
                    last = matches[i].start + shift;
                placed = true;
                shift = shift + grown - matches[i].length;
            }
            if (cell.isWide) {
                BuildReplaced(cell.wide, matches, taken, std::u16string_view(replacement16), out16);
                table.SetCellText16(row, column, out16);
            } else {
                BuildReplaced(cell.narrow, matches, taken, std::string_view(replacement8), out8);
                table.SetCellText8(row, column, out8);
            }
            ++changedCells;
            firstPosition = std::min(firstPosition, table.DisplayPosition(row));
            state.row = row;
            state.column = column;
            state.start = last;
            state.length = cell.isWide ? replacement16.size() : replacement8.size();
        }
        return !stop;
    });
    if (changedCells > 0) {
        // Setting a cell's text tells no view; the frame's end then tells them once.
        table.Redraw();
        frame.Done(std::max(0, firstPosition), frame.Row(), frame.Column());
    }
    if (anyFound)
        context.ui.Message(caption, CellsChangedMessage(changedCells),
                           ost::MessageIcon::Information);
    return anyFound;
}

/// "No occurrences were found." with its extra buttons; the button pressed.
int NoOccurrences(ToolContext& context, bool replace, bool atEdge, bool backward, int commandId)
{
    ost::MessageBoxRequest box;
    box.title = replace ? kFindAndReplace : "Find";
    box.text = kNoOccurrences;
    box.icon = ost::MessageIcon::Information;
    box.commandIcon = std::string(CommandIconName(commandId));
    box.extraButtons.push_back({"Revise", "Edit the search options and try again.", kReviseButton});
    if (!atEdge)
        box.extraButtons.push_back({backward ? "Restart at end" : "Restart at beginning",
                                    std::string("Restart the search from the ") +
                                        (backward ? "last" : "first") + " cell in the table.",
                                    kRestartButton});
    return context.ui.MessageBox(box);
}

} // namespace

std::string SearchOptionsRefusal(const SearchOptions& options)
{
    if (!options.anyRun)
        return {};
    const std::u16string& text = options.searchText;
    if (!text.empty() && (text.front() == u'*' || text.back() == u'*'))
        return "The search string cannot begin or end with an asterisk wildcard.";
    if (IsBackward(options.direction))
        return "The asterisk wildcard can only be used in the forward direction.";
    return {};
}

std::string CellsChangedMessage(long long cells)
{
    return std::to_string(cells) + " cells were changed.";
}

void SearchTableCommand(ToolContext& context, SearchMode mode, bool reverse, int commandId)
{
    SearchState& state = context.state.search;
    if (state.running)
        return;
    state.running = true;
    struct Guard
    {
        bool& running;
        ~Guard() { running = false; }
    } guard{state.running};

    const std::string caption = Caption(commandId);
    if (CheckToolPreconditions(context, kToolNeedsRows, kFindAndReplace,
                               CommandIconName(commandId)))
        return;
    context.host.CommitCellEdit();
    const TableControl& table = context.document.Table();
    SearchOptions options = state.options;
    bool backward = false;
    WalkPosition start;
    // The dialog, first or on "Revise": its choices become the search's and say where it starts.
    auto ask = [&] {
        if (!AskOptions(context, caption, options))
            return false;
        RememberDialog(state, options);
        backward = state.backward;
        start = StartOf(table, options.direction);
        return true;
    };
    if (mode != SearchMode::Continue || !state.made) {
        if (mode != SearchMode::Continue)
            options.replace = mode == SearchMode::FindReplace;
        if (!ask())
            return;
    } else {
        backward = state.backward != reverse;
        if (backward && options.anyRun) {
            context.ui.Message(
                caption,
                "Sorry, the \"Use * Wildcard\" feature cannot be used in the reverse direction.",
                ost::MessageIcon::Information);
            return;
        }
        start = ContinueFrom(table, state, backward);
    }

    const ByteCharset charset = ByteCharset::System();
    for (;;) {
        const Searcher searcher(
            options.searchText,
            MatchFlags(options.caseSensitive, options.wholeWord, options.anyChar, options.anyRun),
            charset);
        const bool found = options.replace
                               ? ReplaceWalk(context, searcher, options, start, backward, caption)
                               : SearchWalk(context, searcher, start, backward);
        if (found)
            return;
        const int answer = NoOccurrences(context, options.replace, start == Edge(table, backward),
                                         backward, commandId);
        if (answer == kRestartButton) {
            start = Edge(table, backward);
        } else if (answer != kReviseButton || !ask()) {
            return;
        }
    }
}

void SearchColumnCommand(ToolContext& context, bool continueSearch, int column)
{
    const int id = continueSearch ? cmd::kSearchColumnContinue : cmd::kSearchColumn;
    const std::string caption = Caption(id);
    TableControl& table = context.document.Table();
    // A column named by the heading menu counts as the current one for the check.
    const bool named = column >= 1 && column < table.ColumnCount();
    if (CheckToolPreconditions(context, named ? kToolNeedsRows : kToolNeedsRows | kToolNeedsColumn,
                               caption, CommandIconName(id)))
        return;
    context.host.CommitCellEdit();
    if (!named)
        column = table.FocusColumn();
    ColumnSearchState& state = context.state.columnSearch;
    int fromView;
    if (!continueSearch || !state.made) {
        SearchColumnRequest request;
        request.columnName = table.ColumnNameUtf8(column);
        request.text = state.text;
        request.caseSensitive = state.caseSensitive;
        request.wholeWord = state.wholeWord;
        if (!context.dialogs.SearchColumn(request) || request.text.empty())
            return;
        state.text = request.text;
        state.caseSensitive = request.caseSensitive;
        state.wholeWord = request.wholeWord;
        state.made = true;
        fromView = table.ViewIndexOfRow(table.FocusRow()) + 1;
    } else {
        const int lastView = table.ViewIndexOfRow(state.row);
        fromView =
            (lastView >= 0 && state.column == column ? lastView
                                                     : table.ViewIndexOfRow(table.FocusRow())) +
            1;
    }
    const Searcher searcher(state.text, MatchFlags(state.caseSensitive, state.wholeWord),
                            ByteCharset::System());
    for (int view = std::max(0, fromView); view < table.VisibleRowCount(); ++view) {
        const int row = table.RowAtViewIndex(view);
        const CellText cell = ReadCell(table, row, column);
        if (cell.Size() == 0)
            continue;
        if (const std::optional<TextMatch> match = searcher.Find(cell, 0)) {
            state.row = row;
            state.column = column;
            ShowMatch(context, searcher, row, column, cell, *match);
            return;
        }
    }
    context.ui.Message(caption, kNoOccurrences, ost::MessageIcon::Information);
}

} // namespace quirnel
