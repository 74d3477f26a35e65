#include "editing/qt/jump_to_row_dialog.h"

#include "app/qt/dialog_util.h"
#include "editing/jump_to_row.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLineEdit>
#include <QVBoxLayout>

namespace quirnel {

JumpToRowDialog::JumpToRowDialog(JumpToRowRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QString::fromUtf8(kJumpToRowTitle));
    auto* layout = new QVBoxLayout(this);
    auto* form = new QFormLayout;
    m_rowNumber = new QLineEdit(Utf8(request.rowText), this);
    m_rowNumber->selectAll();
    SetHelp(m_rowNumber, "Row Number",
            "The number of the row to move the cell focus to, as shown in the \"#\" column.");
    form->addRow(QStringLiteral("Row number (1 to %1):").arg(request.rowCount), m_rowNumber);
    layout->addLayout(form);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

void JumpToRowDialog::accept()
{
    m_request.rowText = m_rowNumber->text().toStdString();
    QDialog::accept();
}

} // namespace quirnel
