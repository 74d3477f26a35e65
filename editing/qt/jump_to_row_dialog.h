#pragma once
// The "Jump To Row" dialog: one field for a row number. It only fills the request; the window
// decides what the answer means.

#include <QDialog>

class QLineEdit;

namespace quirnel {

struct JumpToRowRequest;

class JumpToRowDialog : public QDialog
{
    Q_OBJECT

public:
    JumpToRowDialog(JumpToRowRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QLineEdit* RowNumber() const { return m_rowNumber; }

private:
    JumpToRowRequest& m_request;
    QLineEdit* m_rowNumber;
};

} // namespace quirnel
