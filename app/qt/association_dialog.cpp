#include "app/qt/association_dialog.h"

#include "app/qt/dialog_util.h"
#include "app/startup.h"

#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

namespace quirnel {

AssociationDialog::AssociationDialog(QWidget* parent) : QDialog(parent)
{
    const QString product = QString::fromUtf8(Product().name);
    setWindowTitle(QStringLiteral("Associate"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(
        QStringLiteral("What file extension would you like to associate with %1?").arg(product),
        this));
    auto* form = new QFormLayout;
    m_extension = new QLineEdit(QStringLiteral("CSV"), this);
    const std::string help = "The filename extension of the file type that should be opened by " +
                             std::string(Product().name) + ".";
    SetHelp(m_extension, "Extension", help.c_str());
    form->addRow(QStringLiteral("Extension:"), m_extension);
    layout->addLayout(form);
    layout->addWidget(new QLabel(
        QStringLiteral("Files of this type will be opened by %1 by default.").arg(product), this));
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

std::string AssociationDialog::Extension() const
{
    return m_extension->text().trimmed().toStdString();
}

} // namespace quirnel
