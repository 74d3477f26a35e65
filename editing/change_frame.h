#pragma once
// The one frame every structural change of the table goes through: commit the cell edit in
// progress, mark the window busy, remember the current cell, let the change happen with the
// view told once at the end, put the current cell back, reopen the Editor pane, mark the
// document modified and clear busy. A command that makes no change after all just lets the
// frame go: the document then stays unmodified.

namespace quirnel {

struct ToolContext;

class ChangeFrame
{
public:
    explicit ChangeFrame(ToolContext& context);
    ~ChangeFrame();
    ChangeFrame(const ChangeFrame&) = delete;
    ChangeFrame& operator=(const ChangeFrame&) = delete;

    /// The current cell when the frame began (storage row, column); -1 when none.
    int Row() const { return m_row; }
    int Column() const { return m_column; }

    /// Ends the change: the view redraws from display position `firstPosition` to the end,
    /// (`row`, `column`) becomes the current cell (`column` -1 keeps the remembered column, or
    /// column 1 when none was current; `row` -1 leaves no current cell), the Editor pane is
    /// reopened and the document marked modified.
    void Done(int firstPosition, int row, int column = -1);

private:
    void Finish();

    ToolContext& m_context;
    int m_row = -1;
    int m_column = -1;
    bool m_finished = false;
};

} // namespace quirnel
