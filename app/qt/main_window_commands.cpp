#include "app/qt/main_window_commands.h"

#include "app/command_table.h"
#include "app/menu_model.h"
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

std::string CommandLabel(int id)
{
    const CommandSpec* command = FindCommand(id);
    return command ? std::string(command->label) : std::string();
}

bool ColumnAlignmentCommand(int id, int& alignment)
{
    return AlignmentFromCommand(id, alignment);
}

bool ColumnSortMethodCommand(int id, int& method)
{
    return SortMethodFromCommand(id, method);
}

bool SortOnColumnCommand(int id, int& column)
{
    return SortOnColumnFromCommand(id, column);
}

} // namespace quirnel
