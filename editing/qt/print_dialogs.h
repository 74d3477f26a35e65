#pragma once
// The Print command's two dialogs: its own options ("Print") and the system's print dialog,
// whose choices go into a typed request so the core never sees a printer object.

#include <QDialog>

class QCheckBox;
class QDoubleSpinBox;

namespace quirnel {

struct PrintOptionsRequest;
struct PrintJobRequest;

class PrintOptionsDialog : public QDialog
{
    Q_OBJECT

public:
    PrintOptionsDialog(PrintOptionsRequest& request, QWidget* parent = nullptr);
    void accept() override;

    QCheckBox* FontSizeUsed() const { return m_used; }
    QDoubleSpinBox* FontSize() const { return m_size; }

private:
    PrintOptionsRequest& m_request;
    QCheckBox* m_used;
    QDoubleSpinBox* m_size;
};

/// Shows the system's print dialog; false when the user cancelled.
bool RunSystemPrintDialog(PrintJobRequest& request, QWidget* parent);

} // namespace quirnel
