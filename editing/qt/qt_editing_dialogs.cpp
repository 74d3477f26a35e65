#include "editing/qt/qt_editing_dialogs.h"

#include "editing/qt/jump_to_row_dialog.h"

namespace quirnel {

bool QtEditingDialogs::JumpToRow(JumpToRowRequest& request)
{
    JumpToRowDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace quirnel
