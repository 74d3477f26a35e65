#include "app/command_ids.h"
#include "app/command_router.h"
#include "app/command_state.h"
#include "app/command_table.h"
#include "app/heading_menu.h"
#include "app/menu_model.h"
#include "tests/support/editing_doubles.h"

#include <gtest/gtest.h>

#include <map>
#include <set>

namespace quirnel::test {
namespace {

/// Records which of the window's actions a command reached.
class RecordingShell : public ShellCommands
{
public:
    void NewFile() override { calls.push_back("NewFile"); }
    void OpenFile() override { calls.push_back("OpenFile"); }
    void OpenNonstandardFile() override { calls.push_back("OpenNonstandardFile"); }
    void SaveFile() override { calls.push_back("SaveFile"); }
    void SaveFileAs() override { calls.push_back("SaveFileAs"); }
    void CloseFile() override { calls.push_back("CloseFile"); }
    void Exit() override { calls.push_back("Exit"); }
    void OpenRecentFile(int position) override
    {
        calls.push_back("OpenRecentFile " + std::to_string(position));
    }
    void FileProperties() override { calls.push_back("FileProperties"); }
    void SetCharacterSet(int position) override
    {
        calls.push_back("SetCharacterSet " + std::to_string(position));
    }
    void ExploreFolder() override { calls.push_back("ExploreFolder"); }
    void EditPreferences() override { calls.push_back("EditPreferences"); }
    void AssociateFileType() override { calls.push_back("AssociateFileType"); }
    void CustomizeToolbar() override { calls.push_back("CustomizeToolbar"); }
    void ToggleToolbar() override { calls.push_back("ToggleToolbar"); }
    void ToggleMultilineEditing() override { calls.push_back("ToggleMultilineEditing"); }
    void ToggleWarnings() override { calls.push_back("ToggleWarnings"); }
    void GoToWarning() override { calls.push_back("GoToWarning"); }
    void DismissWarning() override { calls.push_back("DismissWarning"); }
    void CopyWarningExtraData() override { calls.push_back("CopyWarningExtraData"); }
    void FilterChanged(int id) override { calls.push_back("FilterChanged " + std::to_string(id)); }
    void RefreshStates() override { calls.push_back("RefreshStates"); }
    void RefreshTable() override { calls.push_back("RefreshTable"); }
    std::vector<std::string> calls;
};

struct RouterFixture : EditingFixture
{
    RecordingShell shell;
    CommandRouter router{shell, context};
    std::vector<int> unknown;

    RouterFixture()
    {
        router.SetUnknownCommandReport([this](int id) { unknown.push_back(id); });
        Open({"name", "amount"}, {{"b", "2"}, {"a", "1"}, {"c", "3"}});
        Focus(1, 1);
    }
};

/// The next dialog is the column dialog `name`, and the user cancels it.
void ExpectCancelledColumnDialog(ScriptedDialogs& dialogs, const std::string& name)
{
    auto cancel = [](auto&) { return false; };
    if (name == "NewColumn")
        dialogs.Expect<NewColumnRequest>(name, cancel);
    else if (name == "DeleteColumn")
        dialogs.Expect<DeleteColumnRequest>(name, cancel);
    else if (name == "RenameColumn")
        dialogs.Expect<RenameColumnRequest>(name, cancel);
    else if (name == "CombineColumns")
        dialogs.Expect<CombineColumnsRequest>(name, cancel);
    else if (name == "SetEntireColumn")
        dialogs.Expect<SetEntireColumnRequest>(name, cancel);
    else
        dialogs.Expect<ShiftCellsRequest>(name, cancel);
}

TEST(CommandRouter, EveryCommandOfTheTableIsEnabledAndDispatches)
{
    // What each command shows on the small table with the focus on row 2, column 1; the
    // commands not named here show nothing or reach the window.
    struct Box
    {
        const char* title;
        const char* text;
        int answer;
    };
    const std::map<int, Box> boxes = {
        {cmd::kDeleteRows, {"Delete Row", "Delete the current row?", ost::kButtonNo}},
        {cmd::kDeduplicateRows, {"Deduplicate Rows", "There are no duplicate rows.", 1}},
        {cmd::kBookmarkReturn, {nullptr, nullptr, 0}},
        {cmd::kTrimColumnWhitespace,
         {"Trim Column Whitespace", "No whitespace characters were found.", ost::kButtonOk}},
        {cmd::kPasteColumn, {"Paste Column", "The clipboard does not contain a column.", 1}},
        {cmd::kPasteRows, {"Paste Row(s)", "The clipboard does not contain CSV records.", 1}},
        {cmd::kSpellCheckTable,
         {"Spell Check Table",
          "No spelling dictionary is installed, so the table cannot be spell checked.",
          ost::kButtonOk}},
    };
    int walked = 0;
    for (const CommandSpec& command : CommandTable()) {
        if (command.id == 0)
            continue;
        SCOPED_TRACE(std::string(command.label));
        RouterFixture f;
        EXPECT_TRUE(f.router.Handles(command.id));
        DocumentState state;
        state.fileOpen = true;
        state.hasHandler = [&f](int id) { return f.router.Handles(id); };
        EXPECT_TRUE(ComputeCommandState(command.id, state).enabled);
        auto box = boxes.find(command.id);
        if (box != boxes.end() && box->second.title)
            f.ui.Expect(box->second.title, box->second.text, box->second.answer);
        if (command.id == cmd::kTableStatistics)
            f.ui.Expect("Table Statistics", f.document.Table().StatisticsReport());
        if (command.id == cmd::kJumpToRow)
            f.dialogs.Expect<JumpToRowRequest>("JumpToRow", [](JumpToRowRequest& request) {
                EXPECT_EQ(request.rowText, "2");
                return false;
            });
        if (command.id == cmd::kExportToHtml)
            f.dialogs.Expect<ExportHtmlRequest>("ExportHtml",
                                                [](ExportHtmlRequest&) { return false; });
        if (command.id == cmd::kPrint)
            f.dialogs.Expect<PrintOptionsRequest>("PrintOptions",
                                                  [](PrintOptionsRequest&) { return false; });
        // The column commands stop at their dialogs; Move Column Left from column 1 beeps.
        const std::map<int, std::string> columnDialogs = {
            {cmd::kCreateColumn, "NewColumn"},          {cmd::kInsertColumnBefore, "NewColumn"},
            {cmd::kInsertColumnAfter, "NewColumn"},     {cmd::kDeleteColumn, "DeleteColumn"},
            {cmd::kRenameColumn, "RenameColumn"},       {cmd::kCombineColumns, "CombineColumns"},
            {cmd::kSetEntireColumn, "SetEntireColumn"}, {cmd::kShiftCells, "ShiftCells"},
        };
        if (auto dialog = columnDialogs.find(command.id); dialog != columnDialogs.end())
            ExpectCancelledColumnDialog(f.dialogs, dialog->second);
        if (command.id == cmd::kCopyColumn || command.id == cmd::kCutColumn)
            f.dialogs.Expect<CopyColumnsRequest>("CopyColumns", [](auto&) { return false; });
        if (command.id == cmd::kImportCsvFile)
            f.dialogs.Expect<CsvFileRequest>("ChooseCsvFile", [](auto&) { return false; });
        if (command.id == cmd::kGraph)
            f.dialogs.Expect<GraphOptionsRequest>("GraphOptions", [](GraphOptionsRequest& request) {
                EXPECT_EQ(request.columns, (std::vector<std::string>{"name", "amount"}));
                return false;
            });
        if (command.id == cmd::kTrimWhitespace)
            f.dialogs.Expect<ScopeRequest>("Scope", [](ScopeRequest& request) {
                EXPECT_EQ(request.entries[1], "Current row (2)");
                return false;
            });
        // The searches stop at their dialogs; Find/Next without a search asks as Find does.
        const std::set<int> searches = {cmd::kFind, cmd::kFindReplace, cmd::kFindNext,
                                        cmd::kFindPrevious};
        if (searches.count(command.id))
            f.dialogs.Expect<SearchRequest>("Search", [&](SearchRequest& request) {
                EXPECT_EQ(request.options.replace, command.id == cmd::kFindReplace);
                return false;
            });
        if (command.id == cmd::kSearchColumn || command.id == cmd::kSearchColumnContinue)
            f.dialogs.Expect<SearchColumnRequest>("SearchColumn", [](SearchColumnRequest& request) {
                EXPECT_EQ(request.columnName, "name");
                return false;
            });
        EXPECT_TRUE(f.router.Dispatch(command.id));
        EXPECT_TRUE(f.unknown.empty());
        ++walked;
    }
    EXPECT_GT(walked, 25);
}

TEST(CommandRouter, HeaderMenuTrimsTheColumnClickedNotTheCurrentOne)
{
    RouterFixture f;
    f.document.SetCellText8(0, 2, " 2 ");
    f.document.SetCellText8(0, 1, " b ");
    ASSERT_TRUE(f.router.HandlesGridCommand(static_cast<int>(GridCommand::TrimColumnWhitespace)));
    f.ui.Expect("Trim Column Whitespace", "2 whitespace characters were trimmed from 1 cell.");
    f.router.DispatchGridCommand(static_cast<int>(GridCommand::TrimColumnWhitespace), -1, -1, 2);
    EXPECT_EQ(f.document.CellText8(0, 2), "2");
    EXPECT_EQ(f.document.CellText8(0, 1), " b ");
}

TEST(CommandRouter, RowCommandsChangeTheTable)
{
    RouterFixture f;
    ASSERT_TRUE(f.router.Dispatch(cmd::kInsertRowAfter));
    EXPECT_EQ(f.Stored(), (std::vector<std::string>{"b", "a", "", "c"}));
    ASSERT_TRUE(f.router.Dispatch(cmd::kMoveRowUp));
    EXPECT_EQ(f.Stored(), (std::vector<std::string>{"b", "", "a", "c"}));
    EXPECT_TRUE(f.document.Modified());
}

TEST(CommandRouter, ShellCommandsReachTheWindow)
{
    RouterFixture f;
    for (int id :
         {cmd::kNewFile, cmd::kSaveFile, cmd::kMultilineEditingOption, cmd::kDisplayWarnings,
          cmd::kFilterText, cmd::kRecentFileBase + 2, cmd::kCharacterSetBase + 1})
        EXPECT_TRUE(f.router.Dispatch(id));
    EXPECT_EQ(f.shell.calls, (std::vector<std::string>{
                                 "NewFile", "SaveFile", "ToggleMultilineEditing", "ToggleWarnings",
                                 "FilterChanged 16173", "OpenRecentFile 2", "SetCharacterSet 1"}));
}

TEST(CommandRouter, ValueEntriesActOnTheCurrentColumn)
{
    RouterFixture f;
    ASSERT_TRUE(f.router.Dispatch(cmd::kColumnAlignmentBase + 2));
    EXPECT_EQ(f.document.Table().ColumnAlignment(1), Alignment::Right);
    ASSERT_TRUE(f.router.Dispatch(SortOnColumnCommand(1)));
    EXPECT_EQ(f.Shown(), (std::vector<std::string>{"a", "b", "c"}));
    ASSERT_TRUE(f.router.Dispatch(SortOnColumnCommand(-1)));
    EXPECT_EQ(f.Shown(), (std::vector<std::string>{"b", "a", "c"}));
}

TEST(CommandRouter, UnknownIdIsReported)
{
    RouterFixture f;
    EXPECT_FALSE(f.router.Handles(12345));
    EXPECT_FALSE(f.router.Dispatch(12345));
    EXPECT_EQ(f.unknown, (std::vector<int>{12345}));
}

TEST(CommandRouter, EveryMenuEntryResolves)
{
    // Every id the Row popup and the fixed menus send is handled.
    DocumentState state;
    state.fileOpen = true;
    state.columnCount = 3;
    state.currentColumn = 1;
    std::vector<int> ids = MenuCommandIds(OnInitPopup(cmd::kRowMenu, state));
    const std::vector<int> column = MenuCommandIds(OnInitPopup(cmd::kColumnMenu, state));
    ids.insert(ids.end(), column.begin(), column.end());
    for (const Menu& menu : MainMenuBar(false)) {
        std::vector<int> more = MenuCommandIds(menu.entries);
        ids.insert(ids.end(), more.begin(), more.end());
    }
    RouterFixture f;
    for (int id : ids)
        EXPECT_TRUE(f.router.Handles(id)) << id;
}

TEST(CommandRouter, GridMenuCommandsMapToTheirCommands)
{
    RouterFixture f;
    EXPECT_TRUE(f.router.HandlesGridCommand(static_cast<int>(GridCommand::AddRow)));
    EXPECT_TRUE(f.router.HandlesGridCommand(static_cast<int>(GridCommand::ExportCsv)));
    EXPECT_TRUE(f.router.DispatchGridCommand(static_cast<int>(GridCommand::AddRow), -1, 1, 1));
    EXPECT_EQ(f.document.RowCount(), 4);
    EXPECT_TRUE(
        f.router.DispatchGridCommand(static_cast<int>(GridCommand::CopyCellText), -1, 0, 1));
    EXPECT_EQ(f.clipboard.formats.at("text/plain"), "b");
    f.ui.Expect("Delete All Rows", "Delete all 4 rows of the table?", ost::kButtonYes);
    EXPECT_TRUE(
        f.router.DispatchGridCommand(static_cast<int>(GridCommand::DeleteAllRows), -1, 0, 1));
    EXPECT_EQ(f.document.RowCount(), 0);
}

TEST(CommandRouter, HeadingEntriesActOnTheClickedColumn)
{
    RouterFixture f;
    EditorTableOwner owner;
    TableControl& table = f.document.Table();
    table.SetOwner(&owner);
    std::vector<std::string> texts;
    for (const MenuEntry& entry : table.HeaderMenu(2))
        if (entry.command >= cmd::kToggleBoundOption)
            texts.push_back(entry.text);
    EXPECT_EQ(texts,
              (std::vector<std::string>{"Combine columns", "Copy column", "Delete column",
                                        "Insert column after", "Insert column before",
                                        "Move column left", "Move column right", "Rename column"}));
    EXPECT_TRUE(f.router.HandlesGridCommand(cmd::kHeadingDeleteColumn));
    EXPECT_TRUE(f.router.HandlesGridCommand(cmd::kHeadingCopyColumn));

    // The current column is 1; the heading of column 2 was clicked.
    EXPECT_TRUE(f.router.DispatchGridCommand(cmd::kHeadingMoveColumnLeft, -1, -1, 2));
    EXPECT_EQ(f.document.ColumnName(1), "amount");
    EXPECT_EQ(table.FocusColumn(), 2);
    f.dialogs.Expect<SetEntireColumnRequest>("SetEntireColumn",
                                             [](SetEntireColumnRequest& request) {
                                                 request.text = "z";
                                                 return true;
                                             });
    EXPECT_TRUE(
        f.router.DispatchGridCommand(static_cast<int>(GridCommand::SetEntireColumn), -1, -1, 1));
    EXPECT_EQ(f.Stored(1), (std::vector<std::string>{"z", "z", "z"}));
    EXPECT_EQ(f.Stored(2), (std::vector<std::string>{"b", "a", "c"}));
    f.dialogs.Expect<DeleteColumnRequest>("DeleteColumn", [](DeleteColumnRequest& request) {
        EXPECT_EQ(request.column, 1);
        return true;
    });
    EXPECT_TRUE(f.router.DispatchGridCommand(cmd::kHeadingDeleteColumn, -1, -1, 1));
    EXPECT_EQ(f.document.ColumnName(1), "name");
    table.SetOwner(nullptr);
}

TEST(CommandRouter, HeaderMenuSearchesTheColumnClickedAndOffersToContinue)
{
    RouterFixture f;
    EditorTableOwner owner;
    owner.SetColumnSearchState(&f.state.columnSearch);
    TableControl& table = f.document.Table();
    table.SetOwner(&owner);
    auto texts = [&] {
        std::vector<std::string> found;
        for (const MenuEntry& entry : table.HeaderMenu(2))
            if (entry.text.rfind("Search column", 0) == 0)
                found.push_back(entry.text);
        return found;
    };
    EXPECT_EQ(texts(), (std::vector<std::string>{"Search column"}));
    f.dialogs.Expect<SearchColumnRequest>("SearchColumn", [](SearchColumnRequest& request) {
        EXPECT_EQ(request.columnName, "amount");
        request.text = u"3";
        return true;
    });
    EXPECT_TRUE(
        f.router.DispatchGridCommand(static_cast<int>(GridCommand::SearchColumn), -1, -1, 2));
    EXPECT_EQ(table.FocusRow(), 2);
    EXPECT_EQ(table.FocusColumn(), 2);
    EXPECT_EQ(texts(),
              (std::vector<std::string>{"Search column", "Search column/continue\tCtrl+N"}));
    // A new file forgets the search, and with it the entry.
    f.state.Forget();
    EXPECT_EQ(texts(), (std::vector<std::string>{"Search column"}));
    table.SetOwner(nullptr);
}

TEST(CommandRouter, ClipboardEntriesOfTheGridAndWarningsPaneReachTheirCommands)
{
    RouterFixture f;
    // "Copy entire column to clipboard" copies the clicked column without a dialog.
    EXPECT_TRUE(f.router.DispatchGridCommand(static_cast<int>(GridCommand::CopyColumn), -1, -1, 2));
    EXPECT_EQ(f.clipboard.formats.at("text/plain"), "2\r\n1\r\n3\r\n");
    // The heading's "Copy column" preselects the clicked column, not the current one.
    f.dialogs.Expect<CopyColumnsRequest>("CopyColumns", [](CopyColumnsRequest& request) {
        EXPECT_EQ(request.chosen, (std::vector<bool>{false, true}));
        return false;
    });
    EXPECT_TRUE(f.router.DispatchGridCommand(cmd::kHeadingCopyColumn, -1, -1, 2));
    // "Paste new rows" is Paste Row(s).
    f.clipboard.formats = {{"text/plain", "name\tamount\r\nd\t4\r\n"}};
    f.dialogs.Expect<PastePlaceRequest>("PastePlace", [](PastePlaceRequest& request) {
        request.place = kPasteAtEnd;
        return true;
    });
    EXPECT_TRUE(
        f.router.DispatchGridCommand(static_cast<int>(GridCommand::PasteNewRows), -1, -1, 1));
    EXPECT_EQ(f.Stored(), (std::vector<std::string>{"b", "a", "c", "d"}));
    f.dialogs.Expect<CsvFileRequest>("ChooseCsvFile", [](CsvFileRequest& request) {
        EXPECT_TRUE(request.save);
        return false;
    });
    EXPECT_TRUE(f.router.DispatchGridCommand(static_cast<int>(GridCommand::ExportCsv), -1, 0, 1));
    EXPECT_TRUE(f.router.Dispatch(cmd::kCopyWarningExtraData));
    EXPECT_EQ(f.shell.calls, (std::vector<std::string>{"CopyWarningExtraData"}));
}

} // namespace
} // namespace quirnel::test
