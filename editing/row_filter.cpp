#include "editing/row_filter.h"

#include "document/table_document.h"
#include "editing/text_matcher.h"
#include "editing/tool_context.h"

#include <algorithm>
#include <vector>

namespace quirnel {

namespace {

/// `texts8` holds the row's 8-bit cells (empty for UTF-16 and empty cells).
bool RowHolds(const TableControl& table, int row, const std::string_view* texts8,
              const TextMatcher& matcher8, const TextMatcher& matcher16)
{
    // The index column only shows row numbers; an empty cell holds nothing to find.
    for (int column = 1; column < table.ColumnCount(); ++column) {
        const std::string_view text8 = texts8[column - 1];
        if (!text8.empty()) {
            if (matcher8.Find(text8))
                return true;
            continue;
        }
        const std::u16string_view text16 = table.CellText16(row, column);
        if (!text16.empty() && matcher16.Find(text16))
            return true;
    }
    return false;
}

} // namespace

bool FilterRows(TableControl& table, const RowFilterSettings& settings, const ByteCharset& charset)
{
    const unsigned flags = (settings.caseSensitive ? 0u : kMatchIgnoreCase) |
                           (settings.wholeWord ? kMatchWholeWord : 0u);
    std::string text8;
    const TextMatcher matcher8 = NarrowMatcher(settings.text, flags, charset, &text8);
    const TextMatcher matcher16 = TextMatcher::FromUtf16(settings.text, flags, charset);
    const bool active = settings.enabled && !text8.empty();
    bool changed = false;
    // One call a row for the 8-bit cells: a million-row table has ten million cells.
    std::vector<std::string_view> texts8(
        static_cast<std::size_t>(std::max(1, table.ColumnCount())));
    for (int row = 0; row < table.RowCount(); ++row) {
        bool visible = !active;
        if (active) {
            table.RowText8(row, texts8.data());
            visible = RowHolds(table, row, texts8.data(), matcher8, matcher16);
        }
        changed = table.SetRowHidden(row, !visible, true) || changed;
    }
    return changed;
}

void ApplyRowFilter(ToolContext& context, const RowFilterSettings& settings)
{
    TableControl& table = context.document.Table();
    // Ends the in-place edit, and the Editor pane's hold on its cell, before rows go away.
    context.host.CommitCellEdit();
    const int row = table.FocusRow();
    const int column = table.FocusColumn();
    if (!FilterRows(table, settings, ByteCharset::System()))
        return;
    table.Redraw();
    if (row >= 0 && row < table.RowCount() && table.IsRowHidden(row)) {
        table.SetFocusCell(-1, -1);
        context.host.EndMultilineEditing();
    } else {
        table.SetFocusCell(row, column);
    }
    context.host.ShowFocusCell();
}

} // namespace quirnel
