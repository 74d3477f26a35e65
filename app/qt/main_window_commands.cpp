#include "app/qt/main_window_commands.h"

#include "app/command_ids.h"
#include "app/qt/command_actions.h"

namespace quirnel {

CommandActions* CreateCommandActions(QMainWindow* window, CommandHost& host,
                                     std::function<QWidget*()> cellEditor)
{
    auto* actions = new CommandActions(window, host);
    actions->SetCellEditorProvider(std::move(cellEditor));
    return actions;
}

void RefreshCommandStates(CommandActions* actions)
{
    if (actions)
        actions->RefreshStates();
}

void DestroyCommandActions(CommandActions* actions)
{
    delete actions;
}

QMenu* BuildRowMenu(CommandActions* actions, QWidget* parent)
{
    return actions->BuildPopup(cmd::kRowMenu, parent);
}

} // namespace quirnel
