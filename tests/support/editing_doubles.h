#pragma once
// Stand-ins for everything a table-editing command reaches through its context: typed dialogs
// answered from a script, a clipboard kept in a map, a host that records its duties, a fixed
// random sequence, and a fixture holding a small document with all of them wired.

#include "document/table_document.h"
#include "editing/clipboard_columns.h"
#include "editing/clipboard_rows.h"
#include "editing/column_commands.h"
#include "editing/csv_file_transfer.h"
#include "editing/export_html.h"
#include "editing/find_replace.h"
#include "editing/graph_command.h"
#include "editing/jump_to_row.h"
#include "editing/print_table.h"
#include "editing/scope_dialog.h"
#include "editing/spell_check.h"
#include "editing/tool_context.h"
#include "ostrand/core/clipboard.h"
#include "ostrand/spell/spell_dictionary.h"
#include "tests/support/scripted_ui.h"

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

namespace quirnel::test {

/// Answers each typed dialog request from a script, in order. A dialog nobody expected, or one
/// expected but never shown, fails the test.
class ScriptedDialogs : public EditingDialogs
{
public:
    ~ScriptedDialogs() override { VerifyAllUsed(); }

    /// The next dialog must be `name`; `answer` fills the request and returns false to cancel.
    template <class Request> void Expect(std::string name, std::function<bool(Request&)> answer)
    {
        m_expected.push_back({std::move(name), [answer](void* request) {
                                  return answer(*static_cast<Request*>(request));
                              }});
    }

    bool JumpToRow(JumpToRowRequest& request) override { return Answer("JumpToRow", &request); }
    bool NewColumn(NewColumnRequest& request) override { return Answer("NewColumn", &request); }
    bool DeleteColumn(DeleteColumnRequest& request) override
    {
        return Answer("DeleteColumn", &request);
    }
    bool RenameColumn(RenameColumnRequest& request) override
    {
        return Answer("RenameColumn", &request);
    }
    bool CombineColumns(CombineColumnsRequest& request) override
    {
        return Answer("CombineColumns", &request);
    }
    bool SetEntireColumn(SetEntireColumnRequest& request) override
    {
        return Answer("SetEntireColumn", &request);
    }
    bool ShiftCells(ShiftCellsRequest& request) override { return Answer("ShiftCells", &request); }
    bool Scope(ScopeRequest& request) override { return Answer("Scope", &request); }
    bool ExportHtml(ExportHtmlRequest& request) override { return Answer("ExportHtml", &request); }
    bool PrintOptions(PrintOptionsRequest& request) override
    {
        return Answer("PrintOptions", &request);
    }
    bool PrintSetup(PrintJobRequest& request) override { return Answer("PrintSetup", &request); }
    bool GraphOptions(GraphOptionsRequest& request) override
    {
        return Answer("GraphOptions", &request);
    }
    bool SpellCheck(SpellCheckRequest& request) override { return Answer("SpellCheck", &request); }

    bool Search(SearchRequest& request) override { return Answer("Search", &request); }
    bool SearchColumn(SearchColumnRequest& request) override
    {
        return Answer("SearchColumn", &request);
    }

    // The clipboard's and CSV files' dialogs.
    bool PasteMapping(PasteMappingRequest& request) override
    {
        return Answer("PasteMapping", &request);
    }
    bool PastePlace(PastePlaceRequest& request) override { return Answer("PastePlace", &request); }
    bool CopyColumns(CopyColumnsRequest& request) override
    {
        return Answer("CopyColumns", &request);
    }
    bool PasteColumn(PasteColumnRequest& request) override
    {
        return Answer("PasteColumn", &request);
    }
    bool ChooseCsvFile(CsvFileRequest& request) override
    {
        return Answer("ChooseCsvFile", &request);
    }

    void VerifyAllUsed()
    {
        for (const Expected& left : m_expected)
            ADD_FAILURE() << "expected dialog never shown: " << left.name;
        m_expected.clear();
    }

private:
    struct Expected
    {
        std::string name;
        std::function<bool(void*)> answer;
    };

    bool Answer(const std::string& name, void* request)
    {
        if (m_expected.empty()) {
            ADD_FAILURE() << "unexpected dialog: " << name;
            return false;
        }
        Expected next = std::move(m_expected.front());
        m_expected.pop_front();
        EXPECT_EQ(next.name, name);
        return next.name == name && next.answer(request);
    }

    std::deque<Expected> m_expected;
};

class FakeClipboard : public ost::Clipboard
{
public:
    bool Write(const std::vector<ost::ClipboardItem>& items) override
    {
        formats.clear();
        for (const ost::ClipboardItem& item : items)
            formats[item.format] = item.data;
        ++writes;
        return true;
    }
    std::optional<std::string> Read(std::string_view format) override
    {
        auto it = formats.find(std::string(format));
        return it == formats.end() ? std::nullopt : std::optional<std::string>(it->second);
    }
    std::map<std::string, std::string> formats;
    int writes = 0;
};

/// Records what the commands asked of the window.
class RecordingHost : public EditingHost
{
public:
    void CommitCellEdit() override { ++commits; }
    void SetBusy(bool on) override
    {
        EXPECT_NE(busy, on) << "busy set twice to the same value";
        busy = on;
    }
    void ShowFocusCell() override { ++focusShown; }
    bool MultilineEditing() const override { return multiline; }
    void ReopenEditor() override { ++editorReopened; }
    void MarkModified() override { ++modifiedMarks; }
    bool RunNewFile() override { return newFile ? newFile() : false; }
    bool RunOpenFile() override { return openFile ? openFile() : false; }
    bool OpenWithDefaultProgram(const std::string& path) override
    {
        opened.push_back(path);
        return openSucceeds;
    }
    std::unique_ptr<HtmlViewer> CreateHtmlViewer() override
    {
        return htmlViewer ? htmlViewer() : nullptr;
    }
    void ShowGraph(const GraphChart& chart) override { graphs.push_back(chart); }
    std::unique_ptr<ost::SpellDictionary> OpenSpellDictionary() override
    {
        return dictionary ? dictionary() : nullptr;
    }
    std::string PersonalWordListPath() override { return personalWordList; }

    struct ShownMatch
    {
        int row;
        int column;
        int start;
        int length;
    };
    void ShowCellMatch(int row, int column, int start, int length) override
    {
        matches.push_back({row, column, start, length});
    }
    void EndMultilineEditing() override
    {
        multiline = false;
        ++multilineEnded;
    }
    std::vector<ShownMatch> matches;
    int multilineEnded = 0;

    int commits = 0;
    bool busy = false;
    int focusShown = 0;
    bool multiline = false;
    int editorReopened = 0;
    int modifiedMarks = 0;
    std::function<bool()> newFile;
    std::function<bool()> openFile;
    std::vector<std::string> opened;
    bool openSucceeds = true;
    std::function<std::unique_ptr<HtmlViewer>()> htmlViewer;
    std::vector<GraphChart> graphs;
    std::function<std::unique_ptr<ost::SpellDictionary>()> dictionary;
    std::string personalWordList;
};

class SequenceRandom : public RandomSource
{
public:
    std::uint64_t Next() override { return ++m_next * 0x9E3779B97F4A7C15ull; }

private:
    std::uint64_t m_next = 0;
};

/// A document, open and unmodified, with everything a command's context needs.
struct EditingFixture
{
    ScriptedUi ui;
    ScriptedDialogs dialogs;
    FakeClipboard clipboard;
    RecordingHost host;
    EditingPreferences prefs;
    SequenceRandom random;
    EditingState state;
    TableDocument document{ui};
    ToolContext context{document, ui, dialogs, clipboard, host, prefs, random, state};

    /// Data columns named as given and 8-bit rows; the file counts as open.
    void Open(std::initializer_list<const char*> columns,
              std::initializer_list<std::initializer_list<const char*>> rows)
    {
        for (const char* name : columns)
            document.AddColumn(name);
        document.SetRowCount(static_cast<int>(rows.size()));
        int r = 0;
        for (const auto& row : rows) {
            int c = 1;
            for (const char* text : row)
                document.SetCellText8(r, c++, text);
            ++r;
        }
        document.SetFileOpen(true);
        document.SetModified(false);
    }

    /// Column 1 of every row in the order shown.
    std::vector<std::string> Shown(int column = 1) const
    {
        const TableControl& table = document.Table();
        std::vector<std::string> texts;
        for (int p = 0; p < table.VisibleRowCount(); ++p)
            texts.emplace_back(table.CellText8(table.RowAtDisplayPosition(p), column));
        return texts;
    }

    /// Column 1 of every row in file order.
    std::vector<std::string> Stored(int column = 1) const
    {
        std::vector<std::string> texts;
        for (int r = 0; r < document.RowCount(); ++r)
            texts.emplace_back(document.CellText8(r, column));
        return texts;
    }

    void Focus(int row, int column = 1) { document.Table().SetFocusCell(row, column); }
    void Select(std::initializer_list<int> rows)
    {
        for (int row : rows)
            document.Table().SetRowSelected(row, true);
    }
};

} // namespace quirnel::test
