#pragma once
// The "Graph" options dialog: amount columns, date column, date format, division and title.
// It only fills the request.

#include <QDialog>

class QCheckBox;
class QComboBox;
class QLineEdit;

namespace quirnel {

struct GraphOptionsRequest;

class GraphOptionsDialog : public QDialog
{
    Q_OBJECT

public:
    GraphOptionsDialog(GraphOptionsRequest& request, QWidget* parent = nullptr);
    void accept() override;

private:
    void FollowChecks();

    GraphOptionsRequest& m_request;
    QCheckBox* m_amount1Used;
    QComboBox* m_amount1;
    QCheckBox* m_amount2Used;
    QComboBox* m_amount2;
    QComboBox* m_date;
    QComboBox* m_dateFormat;
    QComboBox* m_division;
    QCheckBox* m_titleUsed;
    QLineEdit* m_title;
};

} // namespace quirnel
