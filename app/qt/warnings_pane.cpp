#include "app/qt/warnings_pane.h"

#include "app/command_ids.h"
#include "app/command_table.h"
#include "document/table_document.h"
#include "editing/warning_text.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QMenu>
#include <QPushButton>
#include <QVBoxLayout>

#include <memory>

namespace quirnel {

WarningsPane::WarningsPane(const TableDocument& document, QWidget* parent)
    : QDockWidget(QStringLiteral("Warnings"), parent), m_document(document)
{
    setObjectName(QStringLiteral("Warnings"));
    setFeatures(QDockWidget::NoDockWidgetFeatures);
    auto* holder = new QWidget(this);
    auto* layout = new QHBoxLayout(holder);
    layout->setContentsMargins(2, 2, 2, 2);
    m_list = new QListWidget(holder);
    m_list->setObjectName(QStringLiteral("WarningsList"));
    m_list->setContextMenuPolicy(Qt::CustomContextMenu);
    layout->addWidget(m_list, 1);
    auto* buttons = new QVBoxLayout;
    for (int id : {cmd::kGoToWarning, cmd::kDismissWarning, cmd::kWarningsVisible}) {
        const PaneCommandText* text = FindPaneCommand(id);
        if (!text)
            continue;
        auto* button = new QPushButton(QString::fromUtf8(text->button), holder);
        button->setObjectName(QString::fromUtf8(text->button));
        button->setToolTip(QString::fromUtf8(text->tip));
        connect(button, &QPushButton::clicked, this, [this, id] { emit CommandChosen(id); });
        buttons->addWidget(button);
    }
    buttons->addStretch(1);
    layout->addLayout(buttons);
    setWidget(holder);
    connect(m_list, &QListWidget::itemDoubleClicked, this,
            [this] { emit CommandChosen(cmd::kGoToWarning); });
    connect(m_list, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        // The line under the pointer becomes the selected one, as with a left click.
        if (QListWidgetItem* item = m_list->itemAt(at))
            m_list->setCurrentItem(item);
        std::unique_ptr<QMenu> menu(BuildContextMenu(this));
        if (menu)
            menu->exec(m_list->viewport()->mapToGlobal(at));
    });
}

QMenu* WarningsPane::BuildContextMenu(QWidget* parent)
{
    const std::vector<MenuEntry> entries = WarningsContextMenu(m_document, SelectedLine());
    if (entries.empty())
        return nullptr;
    auto* menu = new QMenu(parent);
    for (const MenuEntry& entry : entries) {
        const QString text = QString::fromStdString(entry.text);
        // The shortcut text after the TAB shows right-aligned, as in every other menu.
        QAction* action = menu->addAction(text);
        const int id = entry.command;
        connect(action, &QAction::triggered, this, [this, id] { emit CommandChosen(id); });
    }
    return menu;
}

void WarningsPane::Show(const std::vector<CSV_Warning>& warnings, bool unicodeDocument)
{
    const int selected = m_list->currentRow();
    m_list->clear();
    for (const CSV_Warning& warning : warnings)
        m_list->addItem(QString::fromStdString(WarningLineText(warning, unicodeDocument)));
    if (selected >= 0 && m_list->count() > 0)
        m_list->setCurrentRow(std::min(selected, m_list->count() - 1));
}

int WarningsPane::SelectedLine() const
{
    return m_list->currentRow();
}

bool WarningsPane::DeleteLine(int line)
{
    if (line < 0 || line >= m_list->count())
        return false;
    delete m_list->takeItem(line);
    return true;
}

void WarningsPane::Refill(const TableDocument& document)
{
    Show(document.Warnings(), document.IsUnicode());
}

void WarningsPane::ShowPane(bool shown)
{
    if (m_showPane)
        m_showPane(shown);
    else
        setVisible(shown);
}

void WarningsPane::FocusTable()
{
    if (m_focusTable)
        m_focusTable();
}

} // namespace quirnel
