#pragma once
// Everything a table-editing command may touch, handed to it as one context: the document,
// the person at the screen (boxes, typed dialogs), the clipboard, the preferences editing keeps,
// a random source and the host window's duties. Nothing here knows a widget, so every command
// runs the same under a test's scripted answers as in the editor.

#include "editing/search_options.h"

#include <cstdint>
#include <memory>
#include <string>

namespace ost {
class Clipboard;
class UserInterface;
class SpellDictionary;
} // namespace ost

namespace quirnel {

class TableDocument;
struct ExportHtmlRequest;
class HtmlViewer;
struct CombineColumnsRequest;
struct DeleteColumnRequest;
struct JumpToRowRequest;
struct PrintJobRequest;
struct PrintOptionsRequest;
struct NewColumnRequest;
struct RenameColumnRequest;
struct SetEntireColumnRequest;
struct ShiftCellsRequest;
struct ScopeRequest;
struct SearchRequest;
struct SearchColumnRequest;
struct PasteMappingRequest;
struct PastePlaceRequest;
struct CopyColumnsRequest;
struct PasteColumnRequest;
struct CsvFileRequest;
struct GraphOptionsRequest;
struct GraphChart;
struct SpellCheckRequest;

/// One virtual per dialog of the editing commands. Each takes a request that carries the
/// defaults in and the user's choices out; false means the user cancelled.
class EditingDialogs
{
public:
    virtual ~EditingDialogs() = default;
    virtual bool JumpToRow(JumpToRowRequest& request) = 0;
    /// Create Column, Insert Column Before and Insert Column After.
    virtual bool NewColumn(NewColumnRequest& request) = 0;
    virtual bool DeleteColumn(DeleteColumnRequest& request) = 0;
    virtual bool RenameColumn(RenameColumnRequest& request) = 0;
    virtual bool CombineColumns(CombineColumnsRequest& request) = 0;
    virtual bool SetEntireColumn(SetEntireColumnRequest& request) = 0;
    virtual bool ShiftCells(ShiftCellsRequest& request) = 0;
    /// The scope question of the editing tools, with the tool's own options.
    virtual bool Scope(ScopeRequest& request) = 0;
    /// "Export HTML": clipboard or file, and the file's path.
    virtual bool ExportHtml(ExportHtmlRequest& request) = 0;
    /// The "Print" options: the font size.
    virtual bool PrintOptions(PrintOptionsRequest& request) = 0;
    /// The system's print dialog: printer or file, copies, pages.
    virtual bool PrintSetup(PrintJobRequest& request) = 0;

    /// "Search": the options of Find and Find/Replace.
    virtual bool Search(SearchRequest& request) = 0;
    /// "Search Column": the text and two options of the grid's column search.
    virtual bool SearchColumn(SearchColumnRequest& request) = 0;
    // The clipboard's and CSV files' dialogs. A front end without one of them answers
    // Cancel, so the command ends without a change.
    /// Which clipboard column goes to which table column (Paste Row(s), Import).
    virtual bool PasteMapping(PasteMappingRequest&) { return false; }
    /// Where Paste Row(s) inserts its rows.
    virtual bool PastePlace(PastePlaceRequest&) { return false; }
    /// Copy Column and Cut Column: the columns and whether their names go too.
    virtual bool CopyColumns(CopyColumnsRequest&) { return false; }
    /// Paste Column: where, and the new columns' names.
    virtual bool PasteColumn(PasteColumnRequest&) { return false; }
    /// A CSV file to read from or to write to.
    virtual bool ChooseCsvFile(CsvFileRequest&) { return false; }
    /// The "Graph" options.
    virtual bool GraphOptions(GraphOptionsRequest& request) = 0;
    /// One unknown word of "Spell Check Table"; false stops the check.
    virtual bool SpellCheck(SpellCheckRequest& request) = 0;
};

/// What only the window can do for a command.
class EditingHost
{
public:
    virtual ~EditingHost() = default;
    /// Puts a cell edit in progress (in-place editor or Editor pane) into the table.
    virtual void CommitCellEdit() = 0;
    /// Set for the length of a structural change, so that the view's change notices do not
    /// re-enter editing code.
    virtual void SetBusy(bool busy) = 0;
    /// The control's focus cell was set by the core: make the view show and follow it.
    virtual void ShowFocusCell() = 0;
    /// True while the multiline Editor pane is open.
    virtual bool MultilineEditing() const = 0;
    /// Loads the focus cell into the Editor pane again after a change.
    virtual void ReopenEditor() = 0;
    /// The document was just marked modified: bring the caption up to date.
    virtual void MarkModified() = 0;
    /// The framework's New File and Open File actions, dialogs included. False when the user
    /// cancelled or the action failed.
    virtual bool RunNewFile() = 0;
    virtual bool RunOpenFile() = 0;
    /// Opens the file with the desktop's default program for its type; false when that failed.
    virtual bool OpenWithDefaultProgram(const std::string& path) = 0;
    /// A fresh HTML viewer for printing; nullptr when none can be made.
    virtual std::unique_ptr<HtmlViewer> CreateHtmlViewer() = 0;

    /// Makes the cell current and shows its text with [start, start + length) selected; the
    /// offsets count UTF-16 units of the text as shown.
    virtual void ShowCellMatch(int row, int column, int start, int length) = 0;
    /// Turns multiline editing mode off: the Editor pane closes.
    virtual void EndMultilineEditing() = 0;
    /// Opens the graph window over a finished chart (a window of its own, not modal).
    virtual void ShowGraph(const GraphChart& chart) = 0;
    /// The spelling dictionary of the user's language (English when there is none); nullptr
    /// when no dictionary is installed.
    virtual std::unique_ptr<ost::SpellDictionary> OpenSpellDictionary() = 0;
    /// Where the words the user added to the dictionary are kept; empty: not kept.
    virtual std::string PersonalWordListPath() = 0;
};

/// The "Settings" values editing commands read and write. The application's preferences
/// derive from this record, so a command's change is what gets saved.
struct EditingPreferences
{
    /// "Don't confirm row deletion"; also set by the question's "Never ask this question
    /// again" check box.
    bool noConfirmDeleteRow = false;
    bool shiftLeft = true;
    std::string combineSeparator;
    bool combineAlwaysSeparate = false;
    bool trimLinesEnd = false;
    bool trimReduce = false;
    bool copyRowsNoColumnNames = false;
    int pasteRowsLocation = 0;
    int scope = 1;
    /// Export to HTML: true for a file, false for the clipboard; and the file's path.
    bool exportHtmlTo = true;
    std::u16string exportHtmlFilepath;
    /// Print: whether the font size is given, and the size in points.
    bool printSizeUsed = false;
    double printSize = 10.0;
    /// The last "Graph" choices. Columns are remembered by name: 8-bit names as they are,
    /// UTF-16 names as UTF-8 in the "W" keys.
    bool graphAmount1Used = true;
    std::string graphAmount;
    std::string graphAmountW;
    bool graphAmount2Used = false;
    std::string graphAmount2;
    std::string graphAmountW2;
    std::string graphDate;
    std::string graphDateW;
    int graphDateFormat = 2; ///< 0 month-first, 1 day-first, 2 the regional order
    int graphDivision = 0;   ///< a division code; 0 daily
    bool graphTitleUsed = false;
    std::u16string graphTitle;
};

/// Where shuffles get their randomness; tests give a fixed sequence.
class RandomSource
{
public:
    virtual ~RandomSource() = default;
    virtual std::uint64_t Next() = 0;
};

/// Editing state that lives as long as the open file: the bookmarked cell. The searches keep
/// their options for as long as the window lives; their matches go with the file.
struct EditingState
{
    /// Storage row and column; -1 when none.
    int bookmarkRow = -1;
    int bookmarkColumn = -1;
    void Forget()
    {
        bookmarkRow = bookmarkColumn = -1;
        ForgetSearches();
    }

    SearchState search;
    ColumnSearchState columnSearch;
    void ForgetSearches()
    {
        search.made = false;
        search.row = search.column = -1;
        columnSearch.made = false;
        columnSearch.row = columnSearch.column = -1;
    }
};

struct ToolContext
{
    TableDocument& document;
    ost::UserInterface& ui;
    EditingDialogs& dialogs;
    ost::Clipboard& clipboard;
    EditingHost& host;
    EditingPreferences& prefs;
    RandomSource& random;
    EditingState& state;
};

} // namespace quirnel
