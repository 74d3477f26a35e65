#pragma once
// The Shift Cells dialog: direction, scope and pivot column, with a preview grid of the affected
// rows as the shift would leave them, redrawn whenever a choice changes.

#include <QDialog>

class QComboBox;
class QRadioButton;
class QTableWidget;

namespace quirnel {

struct ShiftCellsRequest;

class ShiftCellsDialog : public QDialog
{
    Q_OBJECT

public:
    ShiftCellsDialog(ShiftCellsRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QRadioButton* Left() const { return m_left; }
    QRadioButton* Right() const { return m_right; }
    QRadioButton* ScopeAll() const { return m_all; }
    QRadioButton* ScopeLeftOfPivot() const { return m_leftOfPivot; }
    QRadioButton* ScopeRightOfPivot() const { return m_rightOfPivot; }
    QComboBox* Pivot() const { return m_pivot; }
    QTableWidget* Preview() const { return m_preview; }

private:
    /// The dialog's current choices written into `request`.
    void Collect(ShiftCellsRequest& request) const;
    void UpdatePreview();

    ShiftCellsRequest& m_request;
    QRadioButton* m_left;
    QRadioButton* m_right;
    QRadioButton* m_all;
    QRadioButton* m_leftOfPivot;
    QRadioButton* m_rightOfPivot;
    QComboBox* m_pivot;
    QTableWidget* m_preview;
};

} // namespace quirnel
