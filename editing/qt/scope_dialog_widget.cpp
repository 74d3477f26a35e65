#include "editing/qt/scope_dialog_widget.h"

#include "app/qt/dialog_util.h"
#include "editing/scope_dialog.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QGroupBox>
#include <QRadioButton>
#include <QVBoxLayout>

namespace quirnel {

ScopeDialogWidget::ScopeDialogWidget(ScopeRequest& request, QWidget* parent)
    : QDialog(parent), m_request(request)
{
    setWindowTitle(Utf8(request.title));
    auto* layout = new QVBoxLayout(this);
    if (!request.options.empty()) {
        auto* group = new QGroupBox(QStringLiteral("Options"), this);
        auto* options = new QVBoxLayout(group);
        for (const ScopeOption& option : request.options) {
            auto* box = new QCheckBox(Utf8(option.text), group);
            box->setChecked(option.checked);
            SetHelp(box, option.helpTitle.c_str(), option.help.c_str());
            options->addWidget(box);
            m_options.push_back(box);
        }
        layout->addWidget(group);
    }
    auto* group = new QGroupBox(QStringLiteral("Scope"), this);
    auto* scopes = new QVBoxLayout(group);
    for (std::size_t i = 0; i < request.entries.size(); ++i) {
        auto* button = new QRadioButton(Utf8(request.entries[i]), group);
        button->setEnabled(request.available[i]);
        button->setChecked(static_cast<int>(i) + 1 == request.scope);
        scopes->addWidget(button);
        m_scopes.push_back(button);
    }
    layout->addWidget(group);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

void ScopeDialogWidget::accept()
{
    for (std::size_t i = 0; i < m_options.size(); ++i)
        m_request.options[i].checked = m_options[i]->isChecked();
    for (std::size_t i = 0; i < m_scopes.size(); ++i)
        if (m_scopes[i]->isChecked())
            m_request.scope = static_cast<int>(i) + 1;
    QDialog::accept();
}

} // namespace quirnel
