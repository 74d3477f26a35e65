#include "editing/qt/print_dialogs.h"

#include "app/qt/dialog_util.h"
#include "editing/print_table.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QVBoxLayout>

namespace quirnel {

PrintOptionsDialog::PrintOptionsDialog(PrintOptionsRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(QStringLiteral("Print"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(new QLabel(
        QStringLiteral("The CSV file will be printed with the following options."), this));
    auto* row = new QHBoxLayout;
    m_used = new QCheckBox(QStringLiteral("Font size:"), this);
    SetHelp(m_used, "Font Size",
            "If checked, you may specify the size of the font that the file is printed in.");
    m_size = new QDoubleSpinBox(this);
    m_size->setRange(4, 99);
    m_size->setSingleStep(0.5);
    m_size->setDecimals(1);
    m_size->setValue(request.fontSize);
    SetHelp(m_size, "Font Size",
            "The size of the font that the file is printed in, measured in points.");
    // Two controls share the help title; the number box keeps a name of its own for tests.
    m_size->setObjectName(QStringLiteral("FontSizeValue"));
    row->addWidget(m_used);
    row->addWidget(m_size);
    row->addWidget(new QLabel(QStringLiteral("points"), this));
    row->addStretch(1);
    layout->addLayout(row);
    m_used->setChecked(request.fontSizeUsed);
    m_size->setEnabled(request.fontSizeUsed);
    connect(m_used, &QCheckBox::toggled, m_size, &QWidget::setEnabled);

    auto* buttons = new QDialogButtonBox(this);
    QPushButton* print = buttons->addButton(QStringLiteral("Print"), QDialogButtonBox::AcceptRole);
    buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    print->setDefault(true);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

void PrintOptionsDialog::accept()
{
    m_request.fontSizeUsed = m_used->isChecked();
    m_request.fontSize = m_size->value();
    QDialog::accept();
}

bool RunSystemPrintDialog(PrintJobRequest& request, QWidget* parent)
{
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(Utf8(request.title));
    if (!request.printerName.empty())
        printer.setPrinterName(Utf8(request.printerName));
    QPrintDialog dialog(&printer, parent);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    request.printerName = printer.printerName().toStdString();
    request.outputFile = printer.outputFormat() == QPrinter::PdfFormat
                             ? printer.outputFileName().toStdString()
                             : std::string();
    request.copies = printer.copyCount();
    request.fromPage = printer.fromPage();
    request.toPage = printer.toPage();
    request.landscape = printer.pageLayout().orientation() == QPageLayout::Landscape;
    return true;
}

} // namespace quirnel
