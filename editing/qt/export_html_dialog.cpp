#include "editing/qt/export_html_dialog.h"

#include "app/qt/dialog_util.h"
#include "editing/export_html.h"

#include <QDialogButtonBox>
#include <QFileDialog>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QVBoxLayout>

namespace quirnel {

ExportHtmlDialog::ExportHtmlDialog(ExportHtmlRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Export HTML"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(
        new QLabel(QStringLiteral("This will export the table to an HTML document."), this));
    m_toClipboard = new QRadioButton(QStringLiteral("Export to clipboard"), this);
    m_toFile = new QRadioButton(QStringLiteral("Export to file"), this);
    m_toClipboard->setObjectName(QStringLiteral("ExportToClipboard"));
    m_toFile->setObjectName(QStringLiteral("ExportToFile"));
    (request.toFile ? m_toFile : m_toClipboard)->setChecked(true);
    layout->addWidget(m_toClipboard);
    layout->addWidget(m_toFile);
    auto* row = new QHBoxLayout;
    auto* label = new QLabel(QStringLiteral("Filepath: "), this);
    m_path = new QLineEdit(Utf8(request.path), this);
    m_path->setObjectName(QStringLiteral("Filepath"));
    label->setBuddy(m_path);
    m_browse = new QPushButton(QStringLiteral("..."), this);
    m_browse->setObjectName(QStringLiteral("Browse"));
    row->addWidget(label);
    row->addWidget(m_path, 1);
    row->addWidget(m_browse);
    layout->addLayout(row);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(m_browse, &QPushButton::clicked, this, &ExportHtmlDialog::Browse);
    connect(m_toFile, &QRadioButton::toggled, this, &ExportHtmlDialog::FollowTarget);
    layout->addWidget(buttons);
    FollowTarget();
}

void ExportHtmlDialog::FollowTarget()
{
    m_path->setEnabled(m_toFile->isChecked());
    m_browse->setEnabled(m_toFile->isChecked());
}

void ExportHtmlDialog::Browse()
{
    // Qt separates a filter's patterns by blanks; the label keeps the text users know.
    const QString filter = QStringLiteral("HTML Files (*.htm;*.html)");
    QString chosen =
        QFileDialog::getSaveFileName(this, QStringLiteral("Export HTML"), m_path->text(),
                                     QString(filter).replace(QLatin1Char(';'), QLatin1Char(' ')));
    if (!chosen.isEmpty())
        m_path->setText(chosen);
}

void ExportHtmlDialog::accept()
{
    m_request.toFile = m_toFile->isChecked();
    m_request.path = m_path->text().toStdString();
    QDialog::accept();
}

} // namespace quirnel
