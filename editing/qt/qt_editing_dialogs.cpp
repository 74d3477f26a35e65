#include "editing/qt/qt_editing_dialogs.h"

#include "app/qt/dialog_util.h"
#include "editing/csv_file_transfer.h"
#include "editing/qt/clipboard_dialogs.h"
#include "editing/qt/column_dialogs.h"
#include "editing/qt/export_html_dialog.h"
#include "editing/qt/graph_options_dialog.h"
#include "editing/qt/jump_to_row_dialog.h"
#include "editing/qt/print_dialogs.h"
#include "editing/qt/scope_dialog_widget.h"
#include "editing/qt/search_dialogs.h"
#include "editing/qt/shift_cells_dialog.h"
#include "editing/qt/spell_check_dialog.h"

#include <QFileDialog>

namespace quirnel {

bool QtEditingDialogs::JumpToRow(JumpToRowRequest& request)
{
    JumpToRowDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::NewColumn(NewColumnRequest& request)
{
    NewColumnDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::DeleteColumn(DeleteColumnRequest& request)
{
    DeleteColumnDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::RenameColumn(RenameColumnRequest& request)
{
    RenameColumnDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::CombineColumns(CombineColumnsRequest& request)
{
    CombineColumnsDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::SetEntireColumn(SetEntireColumnRequest& request)
{
    SetEntireColumnDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::ShiftCells(ShiftCellsRequest& request)
{
    ShiftCellsDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::Scope(ScopeRequest& request)
{
    ScopeDialogWidget dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::ExportHtml(ExportHtmlRequest& request)
{
    ExportHtmlDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::PrintOptions(PrintOptionsRequest& request)
{
    PrintOptionsDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::PrintSetup(PrintJobRequest& request)
{
    return RunSystemPrintDialog(request, m_parent);
}

bool QtEditingDialogs::Search(SearchRequest& request)
{
    SearchDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::SearchColumn(SearchColumnRequest& request)
{
    SearchColumnDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::PasteMapping(PasteMappingRequest& request)
{
    PasteMappingDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::PastePlace(PastePlaceRequest& request)
{
    PastePlaceDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::CopyColumns(CopyColumnsRequest& request)
{
    CopyColumnsDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::PasteColumn(PasteColumnRequest& request)
{
    PasteColumnDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::ChooseCsvFile(CsvFileRequest& request)
{
    const QString filters = QStringLiteral("CSV files (*.csv *.txt *.tsv);;All files (*)");
    const QString chosen = request.save
                               ? QFileDialog::getSaveFileName(m_parent, Utf8(request.title),
                                                              Utf8(request.path), filters)
                               : QFileDialog::getOpenFileName(m_parent, Utf8(request.title),
                                                              Utf8(request.path), filters);
    if (chosen.isEmpty())
        return false;
    request.path = chosen.toStdString();
    return true;
}

bool QtEditingDialogs::GraphOptions(GraphOptionsRequest& request)
{
    GraphOptionsDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

bool QtEditingDialogs::SpellCheck(SpellCheckRequest& request)
{
    SpellCheckDialog dialog(request, m_parent);
    return dialog.exec() == QDialog::Accepted;
}

} // namespace quirnel
