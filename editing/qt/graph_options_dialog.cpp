#include "editing/qt/graph_options_dialog.h"

#include "app/qt/dialog_util.h"
#include "editing/graph_command.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace quirnel {

namespace {

QComboBox* ColumnChoice(const GraphOptionsRequest& request, int selected, QWidget* parent)
{
    auto* box = new QComboBox(parent);
    for (std::size_t i = 0; i < request.columns.size(); ++i)
        box->addItem(Utf8(request.columns[i]), static_cast<int>(i) + 1);
    SelectValue(box, selected);
    return box;
}

template <std::size_t N>
QComboBox* Choice(const GraphChoice (&choices)[N], int selected, QWidget* parent)
{
    auto* box = new QComboBox(parent);
    for (const GraphChoice& choice : choices)
        box->addItem(QString::fromUtf8(choice.label), choice.value);
    // A stored value the list does not offer stays unselected and comes back as it was.
    box->setCurrentIndex(box->findData(selected));
    return box;
}

/// The check box carries the field's label and check help; the value its own help.
QCheckBox* CheckedField(const GraphField& field, bool checked, QWidget* value, QWidget* parent)
{
    auto* check = new QCheckBox(QString::fromUtf8(field.label), parent);
    check->setChecked(checked);
    SetHelp(check, field.helpTitle, field.checkHelp);
    check->setObjectName(QString::fromUtf8(field.helpTitle) + QStringLiteral(" Used"));
    SetHelp(value, field.helpTitle, field.help);
    return check;
}

QLabel* PlainField(const GraphField& field, QWidget* value, QWidget* parent)
{
    auto* label = new QLabel(QString::fromUtf8(field.label), parent);
    label->setBuddy(value);
    SetHelp(value, field.helpTitle, field.help);
    return label;
}

} // namespace

GraphOptionsDialog::GraphOptionsDialog(GraphOptionsRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QString::fromUtf8(kGraphDialogTitle));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(QString::fromUtf8(kGraphDialogText), this));
    auto* form = new QFormLayout;
    layout->addLayout(form);

    m_amount1 = ColumnChoice(request, request.amount1Column, this);
    m_amount1Used = CheckedField(kGraphAmount1Field, request.amount1Used, m_amount1, this);
    form->addRow(m_amount1Used, m_amount1);
    m_amount2 = ColumnChoice(request, request.amount2Column, this);
    m_amount2Used = CheckedField(kGraphAmount2Field, request.amount2Used, m_amount2, this);
    form->addRow(m_amount2Used, m_amount2);
    m_date = ColumnChoice(request, request.dateColumn, this);
    form->addRow(PlainField(kGraphDateField, m_date, this), m_date);
    m_dateFormat = Choice(kGraphDateFormats, request.dateFormat, this);
    form->addRow(PlainField(kGraphDateFormatField, m_dateFormat, this), m_dateFormat);
    m_division = Choice(kGraphDivisions, request.division, this);
    form->addRow(PlainField(kGraphDivisionField, m_division, this), m_division);
    m_title = new QLineEdit(Utf8(request.title), this);
    m_titleUsed = CheckedField(kGraphTitleField, request.titleUsed, m_title, this);
    form->addRow(m_titleUsed, m_title);

    layout->addWidget(OkCancel(this));
    connect(m_amount1Used, &QCheckBox::toggled, this, &GraphOptionsDialog::FollowChecks);
    connect(m_amount2Used, &QCheckBox::toggled, this, &GraphOptionsDialog::FollowChecks);
    connect(m_titleUsed, &QCheckBox::toggled, this, &GraphOptionsDialog::FollowChecks);
    FollowChecks();
}

void GraphOptionsDialog::FollowChecks()
{
    m_amount1->setEnabled(m_amount1Used->isChecked());
    m_amount2->setEnabled(m_amount2Used->isChecked());
    m_title->setEnabled(m_titleUsed->isChecked());
}

void GraphOptionsDialog::accept()
{
    auto column = [](const QComboBox* box) {
        return box->currentIndex() >= 0 ? SelectedValue(box) : -1;
    };
    m_request.amount1Used = m_amount1Used->isChecked();
    m_request.amount1Column = column(m_amount1);
    m_request.amount2Used = m_amount2Used->isChecked();
    m_request.amount2Column = column(m_amount2);
    m_request.dateColumn = column(m_date);
    if (m_dateFormat->currentIndex() >= 0)
        m_request.dateFormat = SelectedValue(m_dateFormat);
    if (m_division->currentIndex() >= 0)
        m_request.division = SelectedValue(m_division);
    m_request.titleUsed = m_titleUsed->isChecked();
    m_request.title = m_title->text().toStdString();
    QDialog::accept();
}

} // namespace quirnel
