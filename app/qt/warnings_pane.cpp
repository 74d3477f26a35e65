#include "app/qt/warnings_pane.h"

#include "app/command_ids.h"
#include "document/table_document.h"
#include "editing/warning_text.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QPushButton>
#include <QVBoxLayout>

namespace quirnel {

WarningsPane::WarningsPane(QWidget* parent) : QDockWidget(QStringLiteral("Warnings"), parent)
{
    setObjectName(QStringLiteral("Warnings"));
    setFeatures(QDockWidget::NoDockWidgetFeatures);
    auto* holder = new QWidget(this);
    auto* layout = new QHBoxLayout(holder);
    layout->setContentsMargins(2, 2, 2, 2);
    m_list = new QListWidget(holder);
    m_list->setObjectName(QStringLiteral("WarningsList"));
    layout->addWidget(m_list, 1);
    auto* buttons = new QVBoxLayout;
    struct WarningButton
    {
        const char* text;
        const char* tip;
        int id;
    };
    const WarningButton warningButtons[] = {
        {"Go", "Go to the row where the warning occurs.", cmd::kGoToWarning},
        {"Dismiss", "Delete this warning.", cmd::kDismissWarning},
        {"Hide", "Hide the warnings list.", cmd::kWarningsVisible},
    };
    for (const WarningButton& entry : warningButtons) {
        auto* button = new QPushButton(QString::fromUtf8(entry.text), holder);
        button->setObjectName(QString::fromUtf8(entry.text));
        button->setToolTip(QString::fromUtf8(entry.tip));
        const int id = entry.id;
        connect(button, &QPushButton::clicked, this, [this, id] { emit CommandChosen(id); });
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    layout->addLayout(buttons);
    setWidget(holder);
    connect(m_list, &QListWidget::itemDoubleClicked, this,
            [this] { emit CommandChosen(cmd::kGoToWarning); });
}

void WarningsPane::Show(const std::vector<CSV_Warning>& warnings, bool unicodeDocument)
{
    m_list->clear();
    for (const CSV_Warning& warning : warnings)
        m_list->addItem(QString::fromStdString(WarningLineText(warning, unicodeDocument)));
}

int WarningsPane::CurrentWarningRow(const TableDocument& document) const
{
    const int index = m_list->currentRow();
    if (index < 0 || index >= static_cast<int>(document.Warnings().size()))
        return -1;
    const int row = document.Warnings()[static_cast<std::size_t>(index)].row;
    return row < document.RowCount() ? row : -1;
}

void WarningsPane::DismissCurrent(TableDocument& document)
{
    const int index = m_list->currentRow();
    if (index < 0 || index >= static_cast<int>(document.Warnings().size()))
        return;
    std::vector<CSV_Warning> rest = document.Warnings();
    rest.erase(rest.begin() + index);
    document.ClearWarnings();
    for (CSV_Warning& warning : rest)
        document.AddWarning(std::move(warning.message), warning.row, std::move(warning.extraData));
    Show(document.Warnings(), document.IsUnicode());
    m_list->setCurrentRow(std::min(index, m_list->count() - 1));
}

} // namespace quirnel
