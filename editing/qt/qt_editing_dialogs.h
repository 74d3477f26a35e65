#pragma once
// The editing commands' dialogs as real modal dialogs, centred on the main window.

#include "editing/tool_context.h"

#include <QPointer>

class QWidget;

namespace quirnel {

class QtEditingDialogs : public EditingDialogs
{
public:
    explicit QtEditingDialogs(QWidget* parent = nullptr) : m_parent(parent) {}

    bool JumpToRow(JumpToRowRequest& request) override;
    bool NewColumn(NewColumnRequest& request) override;
    bool DeleteColumn(DeleteColumnRequest& request) override;
    bool RenameColumn(RenameColumnRequest& request) override;
    bool CombineColumns(CombineColumnsRequest& request) override;
    bool SetEntireColumn(SetEntireColumnRequest& request) override;
    bool ShiftCells(ShiftCellsRequest& request) override;
    bool Scope(ScopeRequest& request) override;
    bool ExportHtml(ExportHtmlRequest& request) override;
    bool PrintOptions(PrintOptionsRequest& request) override;
    bool PrintSetup(PrintJobRequest& request) override;
    bool Search(SearchRequest& request) override;
    bool SearchColumn(SearchColumnRequest& request) override;

    bool PasteMapping(PasteMappingRequest& request) override;
    bool PastePlace(PastePlaceRequest& request) override;
    bool CopyColumns(CopyColumnsRequest& request) override;
    bool PasteColumn(PasteColumnRequest& request) override;
    bool ChooseCsvFile(CsvFileRequest& request) override;
    bool GraphOptions(GraphOptionsRequest& request) override;
    bool SpellCheck(SpellCheckRequest& request) override;

private:
    QPointer<QWidget> m_parent;
};

} // namespace quirnel
