#pragma once
// The scope dialog of the editing tools: the tool's own check boxes under "Options" and the
// scope's radio buttons under "Scope". It only fills the request.

#include <QDialog>

#include <vector>

class QCheckBox;
class QRadioButton;

namespace quirnel {

struct ScopeRequest;

class ScopeDialogWidget : public QDialog
{
    Q_OBJECT

public:
    ScopeDialogWidget(ScopeRequest& request, QWidget* parent = nullptr);
    void accept() override;

    const std::vector<QCheckBox*>& Options() const { return m_options; }
    /// Scope 1 to 5 at index 0 to 4.
    const std::vector<QRadioButton*>& Scopes() const { return m_scopes; }

private:
    ScopeRequest& m_request;
    std::vector<QCheckBox*> m_options;
    std::vector<QRadioButton*> m_scopes;
};

} // namespace quirnel
