#include "editing/row_filter.h"

#include "document/table_document.h"
#include "editing/text_matcher.h"
#include "editing/tool_context.h"

namespace quirnel {

namespace {

bool RowHolds(const TableControl& table, int row, const TextMatcher& matcher8,
              const TextMatcher& matcher16)
{
    // The index column only shows row numbers; an empty cell holds nothing to find.
    for (int column = 1; column < table.ColumnCount(); ++column) {
        const std::string_view text8 = table.CellText8(row, column);
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
    for (int row = 0; row < table.RowCount(); ++row) {
        const bool visible = !active || RowHolds(table, row, matcher8, matcher16);
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
