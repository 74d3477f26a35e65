#include "app/qt/command_actions.h"

#include "app/command_table.h"
#include "app/qt/command_icons.h"

#include <QAction>
#include <QActionGroup>
#include <QKeySequence>
#include <QLineEdit>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QShortcut>
#include <QTextEdit>

namespace quirnel {
namespace {

QString ToQString(std::string_view text)
{
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// Toolbar captions are plain text; a "&" in them must not become a mnemonic.
QString WithoutMnemonics(std::string_view text)
{
    return ToQString(text).replace(QLatin1Char('&'), QLatin1String("&&"));
}

std::optional<int> QtKey(int keyCode)
{
    if ((keyCode >= 'A' && keyCode <= 'Z') || (keyCode >= '0' && keyCode <= '9')) {
        return keyCode; // Qt's codes for letters and digits are their ASCII codes.
    }
    if (keyCode >= key::kF1 && keyCode <= key::kF12) {
        return Qt::Key_F1 + (keyCode - key::kF1);
    }
    switch (keyCode) {
    case key::kReturn:
        return Qt::Key_Return;
    case key::kPageUp:
        return Qt::Key_PageUp;
    case key::kPageDown:
        return Qt::Key_PageDown;
    case key::kUp:
        return Qt::Key_Up;
    case key::kDown:
        return Qt::Key_Down;
    case key::kInsert:
        return Qt::Key_Insert;
    case key::kDelete:
        return Qt::Key_Delete;
    default:
        return std::nullopt;
    }
}

Qt::KeyboardModifiers QtModifiers(int mask)
{
    Qt::KeyboardModifiers modifiers;
    if (mask & kModShift) {
        modifiers |= Qt::ShiftModifier;
    }
    if (mask & kModCtrl) {
        modifiers |= Qt::ControlModifier;
    }
    if (mask & kModAlt) {
        modifiers |= Qt::AltModifier;
    }
    return modifiers;
}

CommandMenuEntry CommandEntry(int id)
{
    CommandMenuEntry entry;
    entry.id = id;
    return entry;
}

} // namespace

CommandActions::CommandActions(QMainWindow* window, CommandHost& host)
    : QObject(window), m_host(host)
{
    const DocumentState state = m_host.CurrentState();
    for (const Menu& model : MainMenuBar(state.helpAvailable)) {
        QMenu* menu = window->menuBar()->addMenu(ToQString(model.title));
        m_menus.push_back(menu);
        if (model.popupId != 0) {
            const int popupId = model.popupId;
            connect(menu, &QMenu::aboutToShow, this,
                    [this, menu, popupId] { FillPopup(menu, popupId); });
            continue;
        }
        AddEntries(menu, model.entries, true);
        connect(menu, &QMenu::aboutToShow, this, [this, menu] {
            if (m_recentAnchor && m_recentAnchor->parent() == menu) {
                FillRecentFiles(menu);
            }
            RefreshStates();
        });
    }
    BindAccelerators(window);
}

void CommandActions::SetCellEditorProvider(std::function<QWidget*()> provider)
{
    m_cellEditor = std::move(provider);
}

void CommandActions::AddEntries(QMenu* menu, const std::vector<CommandMenuEntry>& entries,
                                bool track)
{
    for (const CommandMenuEntry& entry : entries) {
        AddEntry(menu, entry, nullptr, track);
    }
}

QAction* CommandActions::AddEntry(QMenu* menu, const CommandMenuEntry& entry,
                                  const DocumentState* state, bool track)
{
    switch (entry.kind) {
    case MenuEntryKind::Separator:
        return menu->addSeparator();
    case MenuEntryKind::Submenu: {
        QMenu* submenu = menu->addMenu(ToQString(entry.text));
        if (entry.popupId != 0) {
            const int popupId = entry.popupId;
            connect(submenu, &QMenu::aboutToShow, this,
                    [this, submenu, popupId] { FillPopup(submenu, popupId); });
        } else {
            QActionGroup* radios = nullptr;
            for (const CommandMenuEntry& child : entry.children) {
                QAction* action = AddEntry(submenu, child, state, track);
                if (child.check == MenuCheck::Radio) {
                    if (!radios) {
                        radios = new QActionGroup(submenu);
                    }
                    radios->addAction(action);
                }
            }
        }
        return submenu->menuAction();
    }
    case MenuEntryKind::RecentFiles: {
        // An invisible marker: the recent files are inserted before it each time the menu opens.
        m_recentAnchor = new QAction(menu);
        m_recentAnchor->setVisible(false);
        menu->addAction(m_recentAnchor);
        return m_recentAnchor;
    }
    case MenuEntryKind::CellEditorMenu:
        AddCellEditorEntries(menu);
        return nullptr;
    case MenuEntryKind::Command:
        break;
    }

    // A check entry keeps its check box: with an icon, styles draw the check as a sunken icon
    // frame, which reads poorly.
    const QIcon icon =
        entry.check == MenuCheck::None ? CommandIcon(CommandIconName(entry.id)) : QIcon();
    QAction* action = menu->addAction(icon, ToQString(entry.text));
    action->setData(entry.id);
    if (entry.check != MenuCheck::None) {
        action->setCheckable(true);
    }
    if (state) {
        const CommandState current = ComputeCommandState(entry, *state);
        action->setEnabled(current.enabled);
        action->setChecked(entry.checked);
    }
    connect(action, &QAction::triggered, this, [this, entry] { Dispatch(entry); });
    if (track) {
        m_tracked.push_back({action, entry});
    }
    return action;
}

void CommandActions::FillPopup(QMenu* menu, int popupId)
{
    // Submenus, radio groups and a borrowed editor menu of the last opening go with it.
    for (QObject* child : menu->children()) {
        if (qobject_cast<QMenu*>(child) || qobject_cast<QActionGroup*>(child)) {
            child->deleteLater();
        }
    }
    menu->clear();
    const DocumentState state = m_host.CurrentState();
    QActionGroup* radios = nullptr;
    for (const CommandMenuEntry& entry : OnInitPopup(popupId, state)) {
        QAction* action = AddEntry(menu, entry, &state, false);
        if (action && entry.kind == MenuEntryKind::Command && entry.check == MenuCheck::Radio) {
            if (!radios) {
                radios = new QActionGroup(menu);
            }
            radios->addAction(action);
        }
    }
}

QMenu* CommandActions::BuildPopup(int popupId, QWidget* parent)
{
    auto* menu = new QMenu(parent);
    FillPopup(menu, popupId);
    return menu;
}

void CommandActions::FillRecentFiles(QMenu* menu)
{
    for (QAction* action : m_recentActions) {
        menu->removeAction(action);
        action->deleteLater();
    }
    m_recentActions.clear();
    for (const CommandMenuEntry& entry : RecentFileEntries(m_host.CurrentState().recentFiles)) {
        auto* action = new QAction(ToQString(entry.text), menu);
        action->setData(entry.id);
        connect(action, &QAction::triggered, this, [this, entry] { Dispatch(entry); });
        menu->insertAction(m_recentAnchor, action);
        m_recentActions.push_back(action);
    }
}

void CommandActions::AddCellEditorEntries(QMenu* menu)
{
    QWidget* editor = m_cellEditor ? m_cellEditor() : nullptr;
    QMenu* borrowed = nullptr;
    if (auto* line = qobject_cast<QLineEdit*>(editor)) {
        borrowed = line->createStandardContextMenu();
    } else if (auto* plain = qobject_cast<QPlainTextEdit*>(editor)) {
        borrowed = plain->createStandardContextMenu();
    } else if (auto* rich = qobject_cast<QTextEdit*>(editor)) {
        borrowed = rich->createStandardContextMenu();
    }
    if (!borrowed) {
        return;
    }
    // The editor's actions stay owned by its menu, which lives until the next opening.
    borrowed->setParent(menu, borrowed->windowFlags());
    menu->addActions(borrowed->actions());
}

void CommandActions::BindAccelerators(QMainWindow* window)
{
    BuildMainAccelerators(m_accelerators);
    for (const Accelerator& accelerator : m_accelerators.Entries()) {
        const std::optional<int> qtKey = QtKey(accelerator.keyCode);
        if (!qtKey) {
            continue;
        }
        const int id = accelerator.id;
        std::vector<QKeyCombination> keys = {
            QKeyCombination(QtModifiers(accelerator.modifiers), Qt::Key(*qtKey))};
        // The keypad's Enter is the same key to the user.
        if (*qtKey == Qt::Key_Return) {
            keys.push_back(QKeyCombination(QtModifiers(accelerator.modifiers), Qt::Key_Enter));
        }
        for (const QKeyCombination& combination : keys) {
            auto* shortcut = new QShortcut(QKeySequence(combination), window);
            shortcut->setContext(Qt::WindowShortcut);
            connect(shortcut, &QShortcut::activated, this,
                    [this, id] { Dispatch(CommandEntry(id)); });
        }
    }
}

QAction* CommandActions::ToolbarAction(int id)
{
    for (const auto& [knownId, action] : m_toolbarActions) {
        if (knownId == id) {
            return action;
        }
    }
    const CommandSpec* command = FindCommand(id);
    if (!command || command->kind != CommandKind::Button) {
        return nullptr;
    }
    const std::string_view text = command->caption.empty() ? command->label : command->caption;
    auto* action = new QAction(CommandIcon(command->icon), WithoutMnemonics(text), this);
    QString tip = ToQString(command->description);
    if (!command->shortcut.empty()) {
        tip += QStringLiteral(" (") + ToQString(command->shortcut) + QLatin1Char(')');
    }
    action->setToolTip(tip);
    action->setData(id);
    action->setCheckable(IsToggleCommand(id));
    connect(action, &QAction::triggered, this, [this, id] { Dispatch(CommandEntry(id)); });
    m_toolbarActions.emplace_back(id, action);
    RefreshStates();
    return action;
}

void CommandActions::Dispatch(const CommandMenuEntry& entry)
{
    const DocumentState state = m_host.CurrentState();
    if (!ComputeCommandState(entry.id, state).enabled) {
        return;
    }
    if (entry.binding != OptionBinding::None) {
        m_host.SetOption(entry.binding, !OptionValue(entry.binding, state));
    }
    // The handler may close the window and with it this object.
    QPointer<CommandActions> alive(this);
    m_host.OnCommand(entry.id);
    if (alive) {
        RefreshStates();
    }
}

void CommandActions::RefreshStates()
{
    const DocumentState state = m_host.CurrentState();
    for (const TrackedAction& tracked : m_tracked) {
        const CommandState current = ComputeCommandState(tracked.entry, state);
        tracked.action->setEnabled(current.enabled);
        if (tracked.action->isCheckable()) {
            tracked.action->setChecked(current.checked);
        }
    }
    for (const auto& [id, action] : m_toolbarActions) {
        const CommandState current = ComputeCommandState(id, state);
        action->setEnabled(current.enabled);
        if (action->isCheckable()) {
            action->setChecked(current.checked);
        }
    }
}

} // namespace quirnel
