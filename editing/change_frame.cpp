#include "editing/change_frame.h"

#include "document/table_document.h"
#include "editing/tool_context.h"

namespace quirnel {

ChangeFrame::ChangeFrame(ToolContext& context) : m_context(context)
{
    context.host.CommitCellEdit();
    context.host.SetBusy(true);
    TableControl& table = context.document.Table();
    m_row = table.FocusRow();
    m_column = table.FocusColumn();
    table.BeginChange();
}

ChangeFrame::~ChangeFrame()
{
    if (!m_finished)
        Finish();
}

void ChangeFrame::Finish()
{
    m_finished = true;
    m_context.document.Table().EndChange();
    m_context.host.SetBusy(false);
}

void ChangeFrame::Done(int firstPosition, int row, int column)
{
    if (m_finished)
        return;
    m_finished = true;
    TableControl& table = m_context.document.Table();
    if (column < 0)
        column = m_column >= 1 && m_column < table.ColumnCount() ? m_column : 1;
    // The view's reset may drop its current index (and with it the focus cell): the focus is
    // set after the view has heard of the change.
    table.EndChange(firstPosition);
    table.SetFocusCell(row, row >= 0 ? column : -1);
    m_context.host.ShowFocusCell();
    if (m_context.host.MultilineEditing())
        m_context.host.ReopenEditor();
    m_context.document.SetModified(true);
    m_context.host.MarkModified();
    m_context.host.SetBusy(false);
}

} // namespace quirnel
