#include "app/qt/toolbar_widgets.h"

#include "app/command_ids.h"
#include "app/menu_model.h"
#include "app/qt/command_actions.h"
#include "app/qt/command_icons.h"

#include <QAction>
#include <QActionGroup>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QEvent>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QMainWindow>
#include <QMenu>
#include <QPushButton>
#include <QToolBar>
#include <QToolButton>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <QWidgetAction>

namespace quirnel {
namespace {

QString ToQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

MainToolbar::MainToolbar(QMainWindow* window, ToolbarModel& model, CommandActions& actions)
    : QObject(window), m_window(window), m_model(model), m_actions(actions),
      m_toolBar(new QToolBar(QStringLiteral("Toolbar"), window))
{
    m_toolBar->setObjectName(QStringLiteral("Toolbar"));
    m_toolBar->setMovable(false);
    m_toolBar->setContextMenuPolicy(Qt::CustomContextMenu);
    m_toolBar->installEventFilter(this);
    window->addToolBar(Qt::TopToolBarArea, m_toolBar);
    connect(m_toolBar, &QWidget::customContextMenuRequested, this, [this](const QPoint& at) {
        QMenu* menu = CreateContextMenu(m_toolBar);
        menu->setAttribute(Qt::WA_DeleteOnClose);
        menu->popup(m_toolBar->mapToGlobal(at));
    });
    Rebuild();
}

void MainToolbar::SetTrailingWidgets(const std::vector<QWidget*>& widgets)
{
    for (QWidget* widget : widgets) {
        m_trailing.push_back(m_toolBar->addWidget(widget));
    }
    Rebuild();
}

void MainToolbar::Rebuild()
{
    for (QAction* action : m_placed) {
        m_toolBar->removeAction(action);
    }
    for (QAction* action : m_placed) {
        // Button actions belong to CommandActions and are reused; the rest were made here.
        if (action->parent() == m_toolBar) {
            action->deleteLater();
        }
    }
    m_placed.clear();
    if (m_trailingGap) {
        m_toolBar->removeAction(m_trailingGap);
        m_trailingGap->deleteLater();
        m_trailingGap = nullptr;
    }

    m_toolBar->setToolButtonStyle(m_model.Appearance() == ToolbarAppearance::IconsOnly
                                      ? Qt::ToolButtonIconOnly
                                      : Qt::ToolButtonTextUnderIcon);
    m_toolBar->setIconSize(QSize(m_model.Size(), m_model.Size()));

    QAction* before = m_trailing.empty() ? nullptr : m_trailing.front();
    const std::vector<ToolbarEntry>& entries = m_model.Entries();
    for (const ToolbarSlot& slot : m_model.Layout()) {
        QAction* action = nullptr;
        if (slot.gap) {
            action = new QAction(m_toolBar);
            action->setSeparator(true);
        } else {
            const ToolbarEntry& entry = entries[static_cast<std::size_t>(slot.entry)];
            if (entry.kind == CommandKind::GroupCaption) {
                auto* label = new QLabel(ToQString(entry.caption));
                label->setContentsMargins(6, 0, 2, 0);
                auto* labelAction = new QWidgetAction(m_toolBar);
                labelAction->setDefaultWidget(label);
                action = labelAction;
            } else {
                action = m_actions.ToolbarAction(entry.id);
            }
        }
        if (!action) {
            continue;
        }
        m_toolBar->insertAction(before, action);
        m_placed.push_back(action);
        if (QWidget* widget = m_toolBar->widgetForAction(action)) {
            widget->installEventFilter(this);
        }
        if (!slot.gap) {
            const ToolbarEntry& entry = entries[static_cast<std::size_t>(slot.entry)];
            // An empty caption means icon only, whatever the bar's appearance.
            if (entry.kind == CommandKind::Button && entry.caption.empty()) {
                if (auto* button = qobject_cast<QToolButton*>(m_toolBar->widgetForAction(action))) {
                    button->setToolButtonStyle(Qt::ToolButtonIconOnly);
                }
            }
        }
    }
    if (before && !m_placed.empty()) {
        m_trailingGap = m_toolBar->insertSeparator(before);
    }
    m_toolBar->setVisible(m_model.Shown());
}

bool MainToolbar::ShowCustomizeDialog()
{
    CustomizeToolbarDialog dialog(m_model, m_window);
    if (dialog.exec() != QDialog::Accepted) {
        return false;
    }
    m_model = dialog.Result();
    Rebuild();
    return true;
}

void MainToolbar::ToggleShown()
{
    m_model.SetShown(!m_model.Shown());
    m_toolBar->setVisible(m_model.Shown());
    m_actions.RefreshStates();
}

QMenu* MainToolbar::CreateContextMenu(QWidget* parent)
{
    auto* menu = new QMenu(parent);
    AddContextEntries(menu, ToolbarContextMenu(m_model.Shown(), m_model.Size(), m_model.NoTips()));
    return menu;
}

void MainToolbar::AddContextEntries(QMenu* menu, const std::vector<CommandMenuEntry>& entries)
{
    QActionGroup* radios = nullptr;
    for (const CommandMenuEntry& entry : entries) {
        if (entry.kind == MenuEntryKind::Submenu) {
            AddContextEntries(menu->addMenu(ToQString(entry.text)), entry.children);
            continue;
        }
        QAction* action = menu->addAction(ToQString(entry.text));
        if (entry.check == MenuCheck::None) {
            action->setIcon(CommandIcon(CommandIconName(entry.id)));
        } else {
            action->setCheckable(true);
            action->setChecked(entry.checked);
        }
        if (entry.check == MenuCheck::Radio) {
            if (!radios) {
                radios = new QActionGroup(menu);
            }
            radios->addAction(action);
        }
        connect(action, &QAction::triggered, this, [this, entry](bool checked) {
            const int sizeIndex = entry.id - cmd::kToolbarSizeBase;
            if (entry.id == cmd::kToolbarNoTips) {
                m_model.SetNoTips(checked);
            } else if (sizeIndex >= 0 && sizeIndex < static_cast<int>(std::size(kToolbarSizes))) {
                m_model.SetSize(kToolbarSizes[sizeIndex].pixels);
                Rebuild();
            } else {
                m_actions.Dispatch(entry);
            }
        });
    }
}

bool MainToolbar::eventFilter(QObject* watched, QEvent* event)
{
    // Watching the bar and each button: "Balloon help disabled" swallows their tool tips.
    if (event->type() == QEvent::ToolTip && m_model.NoTips()) {
        return true;
    }
    return QObject::eventFilter(watched, event);
}

CustomizeToolbarDialog::CustomizeToolbarDialog(const ToolbarModel& model, QWidget* parent)
    : QDialog(parent), m_model(model), m_list(new QTreeWidget(this)),
      m_reset(new QPushButton(QStringLiteral("Reset"), this)), m_appearance(new QComboBox(this)),
      m_size(new QComboBox(this))
{
    setWindowTitle(QStringLiteral("Customize Toolbar"));
    m_list->setColumnCount(3);
    m_list->setHeaderLabels(
        {QStringLiteral("Command"), QStringLiteral("Visible"), QStringLiteral("Last in Group")});
    QTreeWidgetItem* header = m_list->headerItem();
    header->setToolTip(0, QStringLiteral("The feature/tool that the toolbar icon will activate.  "
                                         "This can also be static text."));
    header->setToolTip(1, QStringLiteral("If checked, the icon is visible"));
    header->setToolTip(2, QStringLiteral("If checked, there is a gap following the icon."));
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->header()->setSectionResizeMode(0, QHeaderView::Stretch);
    m_list->setMinimumSize(460, 360);

    m_reset->setToolTip(QStringLiteral("Reset the toolbar configuration to the default."));
    connect(m_reset, &QPushButton::clicked, this, [this] {
        m_model.Reset();
        Fill();
    });

    m_appearance->addItem(QStringLiteral("Icons Only"), 0);
    m_appearance->addItem(QStringLiteral("Icons & Label"), 1);
    m_appearance->setCurrentIndex(static_cast<int>(m_model.Appearance()));
    for (const ToolbarSizeChoice& choice : kToolbarSizes) {
        m_size->addItem(ToQString(choice.name), choice.pixels);
        if (choice.pixels == m_model.Size()) {
            m_size->setCurrentIndex(m_size->count() - 1);
        }
    }

    auto* options = new QHBoxLayout;
    options->addWidget(m_reset);
    options->addStretch();
    options->addWidget(new QLabel(QStringLiteral("Appearance: "), this));
    options->addWidget(m_appearance);
    options->addWidget(new QLabel(QStringLiteral("Size: "), this));
    options->addWidget(m_size);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_list);
    layout->addLayout(options);
    layout->addWidget(buttons);
    Fill();
}

void CustomizeToolbarDialog::Fill()
{
    m_list->clear();
    for (const ToolbarEntry& entry : m_model.Entries()) {
        auto* item = new QTreeWidgetItem(m_list);
        if (entry.kind == CommandKind::GroupCaption) {
            item->setText(0, ToQString(entry.caption));
            QFont font = item->font(0);
            font.setBold(true);
            item->setFont(0, font);
        } else {
            item->setText(0, ToQString(entry.label));
            item->setIcon(0, CommandIcon(entry.icon));
            item->setToolTip(0, ToQString(entry.description));
        }
        item->setCheckState(1, entry.visible ? Qt::Checked : Qt::Unchecked);
        item->setCheckState(2, entry.lastInGroup ? Qt::Checked : Qt::Unchecked);
    }
}

void CustomizeToolbarDialog::ReadBack()
{
    for (int i = 0; i < m_list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* item = m_list->topLevelItem(i);
        m_model.SetVisible(i, item->checkState(1) == Qt::Checked);
        m_model.SetLastInGroup(i, item->checkState(2) == Qt::Checked);
    }
    m_model.SetAppearance(m_appearance->currentData().toInt() == 0
                              ? ToolbarAppearance::IconsOnly
                              : ToolbarAppearance::IconsAndLabel);
    m_model.SetSize(m_size->currentData().toInt());
}

const ToolbarModel& CustomizeToolbarDialog::Result()
{
    ReadBack();
    return m_model;
}

} // namespace quirnel
