#pragma once
// The grid's model: columns, rows in storage order with their display order, cells, selection,
// hidden rows, sorting, widths, persisted view state, statistics and the two context menus as
// data. The Qt widget in view/qt/ only draws what this holds.
//
// Cell storage is built for million-row tables: a cell is one packed 64-bit reference (column-
// major, one array per data column) into immutable text chunks. Chunks are either buffers the
// loader adopted whole (no copy per cell) or append-only arenas for edited and converted text.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quirnel {

/// Column kinds.
inline constexpr int kColumnText = 1;     ///< text cells edited in place
inline constexpr int kColumnCheck = 2;    ///< two-state (check box) cells
inline constexpr int kColumnCheckAlt = 3; ///< two-state cells, second style
inline constexpr int kColumnChoice = 4;   ///< cells holding an integer choice

/// The empty value of a kind-4 cell.
inline constexpr std::int32_t kEmptyChoice = INT32_MIN;

/// TableColumn::flags bits.
inline constexpr std::uint32_t COLUMN_RIGHT = 1u << 0;
inline constexpr std::uint32_t COLUMN_NO_SEARCH = 1u << 3;
inline constexpr std::uint32_t COLUMN_NO_SORT = 1u << 6;
inline constexpr std::uint32_t COLUMN_NO_EDIT = 1u << 8;
inline constexpr std::uint32_t COLUMN_READ_ONLY = 1u << 10;
inline constexpr std::uint32_t COLUMN_CHOOSE_SORT = 1u << 23;
inline constexpr std::uint32_t COLUMN_CENTER = 1u << 27;
inline constexpr std::uint32_t COLUMN_CHOOSE_ALIGN = 1u << 28;
inline constexpr std::uint32_t COLUMN_RESETTABLE = 1u << 30;

/// CellFlags() bits.
inline constexpr std::uint32_t CELL_CHECKED = 1u << 0;
inline constexpr std::uint32_t CELL_WIDE = 1u << 1;

/// Style flags, set by the owner when the control is built.
inline constexpr std::uint32_t GRID_HIDE_COLUMNS = 1u << 0;
inline constexpr std::uint32_t GRID_REMEMBER_WIDTHS = 1u << 1;
inline constexpr std::uint32_t GRID_TAB_THRU = 1u << 2;
inline constexpr std::uint32_t GRID_PASTE_NEW_ROWS = 1u << 3;
inline constexpr std::uint32_t GRID_NO_CTRL_N_TEXT = 1u << 4;

/// Sort methods; the values are persisted in "SortMethods".
inline constexpr int kSortTextNoCase = 0;
inline constexpr int kSortNumeric = 1; ///< blanks = 0
inline constexpr int kSortDateTime = 2;
inline constexpr int kSortNumericLow = 3; ///< blanks before every number
inline constexpr int kSortTextCase = 4;
inline constexpr int kSortMemory = 5;
inline constexpr int kSortStoredValue = 6; ///< the cell's stored integer; never offered in menus

inline constexpr int kMinColumnWidth = 20;

/// A sort method as the menus and dialogs offer it.
struct SortMethodName
{
    int method;
    const char* text;
};
/// The six methods a user may choose, in the order menus and dialogs list them (the stored
/// value kSortStoredValue is never offered).
inline constexpr SortMethodName kSortMethodNames[] = {
    {kSortTextNoCase, "Text (case insensitive)"},
    {kSortTextCase, "Text (case sensitive)"},
    {kSortNumeric, "Numeric (blanks=0)"},
    {kSortNumericLow, "Numeric (blanks=-9999)"},
    {kSortDateTime, "Date/time"},
    {kSortMemory, "Memory (e.g. 3.1 KB)"},
};

enum class SelectionMode
{
    SingleRow,
    MultipleRows,
    Cells
};

enum class Alignment
{
    Left,
    Center,
    Right
};

/// The control's own commands, carried by menu entries. Owner entries carry the owner's ids.
/// The sort-method commands are consecutive: kSortMethodBase + method.
enum class GridCommand : int
{
    None = 0,
    SortAscending = 1,
    SortDescending,
    DontSort,
    ColumnWidthMaximize,
    ColumnWidthMinimize,
    CopyColumn,
    CheckAll,
    UncheckAll,
    ToggleAll,
    PasteNewRows,
    SearchColumn,
    SearchColumnContinue,
    SetEntireColumn,
    TrimColumnWhitespace,
    ResetColumn,
    AlignLeft,
    AlignCenter,
    AlignRight,
    SortMethodBase = 30, ///< + method 0..6
    CopyCellText = 40,
    AddRow,
    DeleteRows,
    DuplicateRow,
    MoveRowUp,
    MoveRowDown,
    DeselectAll,
    SelectAll,
    HideColumn,      ///< MenuEntry::argument = the column
    AltRowsDefault,  ///< tri-state 0
    AltRowsEnabled,  ///< 1
    AltRowsDisabled, ///< 2
    DividersDefault,
    DividersVisible,
    DividersHidden,
    TabThru,
    BookmarkReturn,
    BookmarkSet,
    JumpToRow,
    WidthsDefault,
    WidthsMaximize,
    WidthsMinimize,
    Statistics,
    DeleteAllRows,
    ImportCsv,
    ExportCsv,
};

enum class MenuMark
{
    None,
    Check,
    Radio
};

/// One entry of a context menu. An entry with a submenu carries no command.
struct MenuEntry
{
    std::string text; ///< UTF-8; a TAB separates the shortcut text
    int command = 0;  ///< a GridCommand value, or an owner's command id
    int argument = -1;
    MenuMark mark = MenuMark::None;
    bool checked = false;
    bool enabled = true;
    std::vector<MenuEntry> submenu;
};

struct TableColumn
{
    int kind = kColumnText;
    std::uint32_t flags = 0;
    int width = 100; ///< pixels
    /// The name: bytes in the system code page, or UTF-16 when `wide` is set.
    std::string headerText;
    std::u16string headerTextWide;
    bool wide = false;
    /// The flags of the cells' edit template; its COLUMN_READ_ONLY bit suppresses whole-column
    /// setting.
    std::uint32_t editTemplateFlags = 0;
    int sortMethod = kSortTextNoCase;
    double defaultWidthFactor = 1.0;
    bool hidden = false;
    /// The width the owner gave when adding the column ("Column widths: default"); the control
    /// sets it from `width` when the column is added.
    int initialWidth = 0;
};

/// A snapshot of one row, for callers that want the record form.
struct TableRow
{
    int id = -1; ///< storage index
    int displayPosition = -1;
    bool selected = false;
    bool hidden = false;
};

/// A snapshot of one cell. Views point into the control's storage: valid until the next change.
struct TableCell
{
    std::string_view text;        ///< when !(flags & CELL_WIDE)
    std::u16string_view textWide; ///< when flags & CELL_WIDE
    std::uint32_t flags = 0;
    std::int32_t value = kEmptyChoice;
};

/// Where the view state is kept: a named text value per key. The app adapts its settings store.
class ViewStateStore
{
public:
    virtual ~ViewStateStore() = default;
    /// nullopt when the key is missing.
    virtual std::optional<std::string> ReadText(const std::string& key) = 0;
    virtual void WriteText(const std::string& key, const std::string& value) = 0;
};

/// Text measuring in the control's font, so that widths need no font here. Pixels.
class TextMeasurer
{
public:
    virtual ~TextMeasurer() = default;
    virtual int TextWidth(std::string_view systemText) = 0;
    virtual int TextWidthWide(std::u16string_view text) = 0;
    /// What a cell draws around its text, left and right together.
    virtual int CellPadding() = 0;
    /// The mean advance of the digits and lowercase letters, which is what cell texts are
    /// mostly made of; a font's own average is often narrower than real text.
    virtual double AverageCharWidth() = 0;
};

/// What the control asks of, and tells, the window that owns it. Every hook has a harmless
/// default.
class TableControlOwner
{
public:
    virtual ~TableControlOwner() = default;
    virtual void OnSortChanged() {}
    /// Asked before each row duplication; false vetoes it.
    virtual bool AllowDuplicateRow(int /*sourceRow*/) { return true; }
    virtual void OnRowDuplicated(int /*sourceRow*/, int /*newRow*/) {}
    /// The owner's own header-menu entries for a column.
    virtual void AddColumnMenuEntries(int /*column*/, std::vector<MenuEntry>& /*entries*/) {}
    virtual bool ClipboardHasText() { return false; }
    virtual bool HasColumnSearch() { return false; }
    /// The user preference that tri-state 0 ("Default") follows.
    virtual bool PreferAltRows() { return false; }
    virtual bool PreferDividers() { return true; }
};

/// Told after the control changed, so that a view can refresh itself.
class TableControlObserver
{
public:
    virtual ~TableControlObserver() = default;
    /// Rows, columns or display order changed: everything shown may be stale.
    virtual void OnTableReset() {}
    /// Only cell contents or column widths/flags changed.
    virtual void OnTableRepaint() {}
};

/// Identifies a text buffer adopted by the control.
using TextBufferHandle = int;

/// A packed cell that TableControl::PackBorrowed could not make.
inline constexpr std::uint64_t kUnpackedCell = ~0ull;

/// The view's geometry, which statistics and "keep the focus row in view" need.
struct ViewGeometry
{
    int clientWidth = 0; ///< pixels
    int firstVisiblePosition = 0;
    int completelyVisibleRows = 0;
    int partiallyVisibleRows = 0;
};

struct TableMemoryUsage
{
    std::size_t cellBytes = 0;    ///< packed cell references
    std::size_t rowBytes = 0;     ///< display order, positions and flags
    std::size_t arenaBytes = 0;   ///< copied and converted text
    std::size_t adoptedBytes = 0; ///< buffers adopted from the loader
    std::size_t sideBytes = 0;    ///< long texts and kind-4 values
    std::size_t Total() const
    {
        return cellBytes + rowBytes + arenaBytes + adoptedBytes + sideBytes;
    }
};

class TableControl
{
public:
    TableControl();
    ~TableControl();
    TableControl(const TableControl&) = delete;
    TableControl& operator=(const TableControl&) = delete;

    void SetOwner(TableControlOwner* owner) { m_owner = owner; }
    void AddObserver(TableControlObserver* observer);
    void RemoveObserver(TableControlObserver* observer);
    /// Tells the observers that everything may have changed (after deferred work).
    void Redraw();
    /// Between BeginChange and the matching EndChange the observers hear nothing; EndChange
    /// then tells them once, if anything changed. Calls nest. A command's many primitives thus
    /// reach the view as one change.
    void BeginChange() { ++m_changeDepth; }
    /// `firstPosition`: the first display position the change touched (rows above it look as
    /// before), kept in LastChangeFrom() for the observers.
    void EndChange(int firstPosition = 0);
    bool Changing() const { return m_changeDepth > 0; }
    int LastChangeFrom() const { return m_lastChangeFrom; }

    /// Empty: the view state is not persisted.
    void SetSettingsName(std::string name) { m_settingsName = std::move(name); }
    const std::string& SettingsName() const { return m_settingsName; }
    void SetStyle(std::uint32_t styleFlags) { m_style = styleFlags; }
    std::uint32_t Style() const { return m_style; }

    /// Column 0 is the index column "#", created with the control; it is never deleted or
    /// moved and holds no cells. Counts include it.
    int ColumnCount() const { return static_cast<int>(m_columns.size()); }
    /// A column out of range reads as an empty one flagged unsortable and read-only.
    const TableColumn& Column(int column) const;
    /// For fields that carry no invariant of the control (name, flags, width, factor, ...).
    TableColumn& MutableColumn(int column);
    /// Returns the new column's index. Its cells are empty.
    int AddColumn(TableColumn column);
    /// `at` in 1 .. ColumnCount(); false otherwise.
    bool InsertColumn(int at, TableColumn column);
    /// Clears the sort columns that name it; the rows of a table sorted by it stay where they are
    /// shown (see ShowsFileOrder). False for column 0 or out of range.
    bool DeleteColumn(int column);
    /// `from`, `to` in 1 .. ColumnCount() - 1. Sort columns follow the moved column.
    bool MoveColumn(int from, int to);
    /// The column's name as UTF-8 (8-bit names are taken as the system code page).
    std::string ColumnNameUtf8(int column) const;
    /// How 8-bit text becomes UTF-8 for menus and reports; identity by default.
    void SetSystemTextDecoder(std::string (*decoder)(std::string_view)) { m_decoder = decoder; }
    bool SetColumnHidden(int column, bool hidden);
    void SetColumnSortMethod(int column, int method);
    void SetColumnAlignment(int column, Alignment alignment);
    Alignment ColumnAlignment(int column) const;

    int RowCount() const { return m_rowCount; }
    int VisibleRowCount() const { return m_visibleCount; }
    /// Grows with empty rows or shrinks from the end. Growth reserves exactly, so a loader that
    /// grows ahead in big steps pays few reallocations.
    void SetRowCount(int count);
    /// Appends one empty row; returns its index.
    int AddRow();
    /// Inserts empty rows before storage index `at` (0 .. RowCount()). Shown in file order they
    /// show in storage order; otherwise at `displayPosition`, or with -1 before the row that
    /// held index `at` (at the end of the shown rows for an append).
    bool InsertRows(int at, int count, int displayPosition = -1);
    bool DeleteRows(int first, int count);
    /// `rows` in any order; repeats and invalid entries are ignored.
    void DeleteRows(std::span<const int> rows);
    /// Moves the row (cells and flags) to storage index `to`.
    bool MoveRow(int from, int to);
    /// Inserts a copy directly below `sourceRow`; the owner may veto. The new index or -1.
    int DuplicateRow(int sourceRow);
    /// The same for many rows in one pass (any order, repeats ignored): each copy lands
    /// directly below its source. Returns the copies' final indices in ascending order.
    std::vector<int> DuplicateRows(std::span<const int> sourceRows);
    /// Rearranges the rows so that storage index i holds the row that was at from[i]. Cells,
    /// flags and the focus travel with their rows. A sorted table keeps showing each row where
    /// it was; in file order the screen follows storage; an order kept from an earlier sort
    /// keeps showing each storage index where it was, so rows that trade storage places trade
    /// screen places too. False (nothing changed) unless `from` is a permutation of
    /// 0 .. RowCount() - 1.
    bool ReorderRows(std::span<const int> from);
    /// Rearranges the rows in a random order; the table becomes unsorted.
    void Shuffle(std::uint64_t seed);
    /// Removes every row and data column, resets sort, focus and selection, and lets go of
    /// adopted buffers and arenas.
    void Clear();

    int RowAtDisplayPosition(int position) const;
    int DisplayPosition(int row) const;
    /// The row the view shows at line `viewIndex` (0 .. VisibleRowCount() - 1): the first visible
    /// display positions, with a visible trailing row as the last line.
    int RowAtViewIndex(int viewIndex) const;
    int ViewIndexOfRow(int row) const;
    TableRow Row(int row) const;

    bool IsRowHidden(int row) const;
    /// True only when the flag changed. Hiding deselects in multi-row mode. Without
    /// `deferRedraw` the display order (hidden rows last) is restored and the view told; with
    /// it, call Redraw() when done.
    bool SetRowHidden(int row, bool hidden, bool deferRedraw = false);
    int TrailingRow() const { return m_trailingRow; }
    void SetTrailingRow(int row);

    SelectionMode Selection() const { return m_selectionMode; }
    void SetSelectionMode(SelectionMode mode);
    bool IsRowSelected(int row) const;
    void SetRowSelected(int row, bool selected);
    void SelectAllRows();
    void DeselectAllRows();
    int SelectedRowCount() const { return m_selectedCount; }
    /// Selected rows in storage order; the focus row alone in single-row mode.
    std::vector<int> SelectedRows() const;
    /// The focus row is a storage index; -1 when none.
    int FocusRow() const { return m_focusRow; }
    int FocusColumn() const { return m_focusColumn; }
    /// Out-of-range values become -1.
    void SetFocusCell(int row, int column);

    /// Empty for missing cells, column 0, and cells of the other width.
    std::string_view CellText8(int row, int column) const;
    std::u16string_view CellText16(int row, int column) const;
    /// CellText8 of the row's data cells, columns 1 to ColumnCount() - 1, into `out`, which
    /// has room for them all: one bounds check for a whole row, for writers that visit every
    /// cell. Nothing is written for a missing row.
    void RowText8(int row, std::string_view* out) const;
    bool CellIsWide(int row, int column) const;
    bool CellIsEmpty(int row, int column) const;
    TableCell Cell(int row, int column) const;
    std::uint32_t CellFlags(int row, int column) const;
    /// Setters return false for a missing cell. Text is copied into an arena.
    bool SetCellText8(int row, int column, std::string_view text);
    bool SetCellText16(int row, int column, std::u16string_view text);
    /// SetCellText16 for a text the caller writes itself: the cell gets `units` new UTF-16
    /// units, returned to be filled before the next change to the table; nullptr for a missing
    /// cell or no units. Saves a converting loader a copy per cell.
    char16_t* NewCellText16(int row, int column, std::size_t units);
    bool ClearCell(int row, int column);
    bool CellChecked(int row, int column) const;
    bool SetCellChecked(int row, int column, bool checked);
    /// kEmptyChoice when the cell holds no integer.
    std::int32_t CellValue(int row, int column) const;
    bool SetCellValue(int row, int column, std::int32_t value);

    /// Keeps `buffer` alive for as long as the control holds cells (until Clear()); cells set
    /// with SetCellText8Borrowed may then point into it.
    TextBufferHandle AdoptTextBuffer(std::shared_ptr<const std::string> buffer);
    /// `text` must lie inside the adopted buffer `handle`; nothing is copied. Text outside it
    /// (or beyond the packed limits) is copied instead.
    bool SetCellText8Borrowed(int row, int column, std::string_view text, TextBufferHandle handle);
    /// SetCellText8Borrowed for a whole row at once: texts[i] goes to column i + 1, for
    /// i < count (and below ColumnCount() - 1). For loaders that fill millions of cells.
    void SetRowText8Borrowed(int row, const std::string_view* texts, int count,
                             TextBufferHandle handle);
    /// A cell for SetRowsPacked: 8-bit `text` lying in the adopted buffer `handle`, whose
    /// first byte is `base`, packed as the control holds it. Empty text packs as 0; text that
    /// cannot be packed so (too long, or too far into the buffer) as kUnpackedCell, for the
    /// caller to set with SetCellText8. Needs no access to the control: loaders pack cells on
    /// threads of their own.
    static std::uint64_t PackBorrowed(TextBufferHandle handle, const char* base,
                                      std::string_view text);
    /// Sets the data cells of the existing rows first .. first + count - 1 at once: column c
    /// (from 1) takes packed[c - 1][0 .. count - 1], cells made by PackBorrowed for the adopted
    /// buffer they point into. Cells packed as kUnpackedCell are left empty.
    void SetRowsPacked(int first, int count, std::span<const std::uint64_t* const> packed);
    /// A hint before many SetCellText16 calls (e.g. a converted file): arena room in UTF-16 units.
    void ReserveTextWide(std::size_t units);

    /// Trims the cell in place. Mask: 1 leading, 2 trailing spaces and tabs, 4 spaces and tabs
    /// at the end of every line, 8 runs of spaces to one. Characters removed, or -1.
    int TrimCell(int row, int column, int mask);

    /// Lets go of text that no cell shows any more: edited-over copies and buffers whose cells
    /// were all replaced (after a conversion, replace-all or trim over the table). O(cells).
    void CompactText();
    /// What the control holds in memory, by part (capacities, not sizes).
    TableMemoryUsage MemoryUsage() const;

    int SortColumn() const { return m_sortColumn; }
    /// True when the rows show in storage order (hidden rows and the trailing row last): the
    /// table is unsorted and shows no order left over from a sort. Deleting the sort column
    /// leaves the rows in their sorted places without a sort column; rows then keep their
    /// places on screen until the next sort, "Don't sort rows" or shuffle, and rows the filter
    /// shows again, having no place of their own, come after the rows shown.
    bool ShowsFileOrder() const { return m_sortColumn < 0 && !m_orderKept; }
    bool SortAscending() const { return m_sortAscending; }
    /// Most recent first; -1 when none.
    int PreviousSortColumn(int which) const { return m_previousSort[which == 0 ? 0 : 1]; }
    /// False for a column out of range or marked COLUMN_NO_SORT. The same column and direction
    /// again does nothing.
    bool SetSort(int column, bool ascending, bool sortNow = true);
    /// Orders the rows by the current sort state (storage order when unsorted).
    void Sort();
    /// "Don't sort rows".
    void Unsort();
    /// Threads a sort shares its work between: 0 (the default) one per processor for big
    /// tables, else exactly this many. The order is the same whatever the count.
    void SetSortThreads(int threads) { m_sortThreads = std::max(threads, 0); }
    /// Dates are read day-first when true, month-first otherwise; the regional order at first.
    void SetDayFirst(bool dayFirst) { m_dayFirst = dayFirst; }
    bool DayFirst() const { return m_dayFirst; }

    int AltRows() const { return m_altRows; }
    void SetAltRows(int triState);
    int Grid() const { return m_grid; }
    void SetGrid(int triState);
    bool EffectiveAltRows() const;
    bool EffectiveGrid() const;
    bool TabThru() const { return m_tabThru; }
    void SetTabThru(bool on);

    void SetTextMeasurer(TextMeasurer* measurer) { m_measurer = measurer; }
    void SetGeometry(const ViewGeometry& geometry);
    const ViewGeometry& Geometry() const { return m_geometry; }
    /// The header text's width in the control's font; 10 pixels a character without a font.
    int HeaderTextWidth(int column) const;
    /// Header text width + 4 (+ the cell padding unless `bare`), at least 20.
    int NaturalWidth(int column, bool bare = false) const;
    void MaximizeColumn(int column);
    void MinimizeColumn(int column);
    void MaximizeAllColumns();
    void MinimizeAllColumns();
    void DefaultWidths();
    /// The loader's widths: `longestLength[c]` for c >= 1 is the longest text in column c.
    void ApplyInitialWidths(std::span<const int> longestLength, int screenWidth, int viewWidth);

    void LoadViewState(ViewStateStore& store);
    void SaveViewState(ViewStateStore& store) const;

    /// Out-of-range columns give no column-specific entries.
    std::vector<MenuEntry> HeaderMenu(int column);
    /// `column` -1 (or `row` -1) when the click was not on a cell.
    std::vector<MenuEntry> CellMenu(int row, int column);
    /// Carries out the commands the control owns itself (sort, widths, alignment, sort method,
    /// selection, display options, hiding). False when the command is the owner's.
    bool HandleCommand(int command, int argument, int column);

    /// The "Statistics" report, UTF-8, lines ended by CR LF.
    std::string StatisticsReport() const;

private:
    struct Storage;
    void NotifyReset();
    void NotifyRepaint();
    const std::uint64_t* CellRef(int row, int column) const;
    std::uint64_t* CellRef(int row, int column);
    /// Replaces the text part of a cell reference, keeping its checked bit.
    bool StoreText(int row, int column, std::uint64_t textRef);
    /// A command that sets cells one by one inside a change gets the view repainted at its
    /// end; outside a change (loading, the view's own edits) nobody is told, as before.
    void NoteCellChanged()
    {
        if (m_changeDepth > 0)
            m_repaintPending = true;
    }
    /// Puts hidden rows, then the trailing row, last; storage order first when `fromStorage`.
    void RestoreOrder(bool fromStorage);
    void FillPositions();
    void RecountRows();
    /// The ordering of a sort (keys, comparator, hidden and trailing rows, positions).
    void SortRows();
    void KeepFocusInView();
    int SortThreads(std::size_t rows) const;
    /// `displayPosition` -1: where an unsorted table puts them (storage order).
    void InsertRowsAt(int at, int count, int displayPosition);
    /// Moves rows so that new storage index i holds old row `from[i]`.
    void PermuteRows(const std::vector<std::int32_t>& from);
    void ColumnsShifted(int removed, int inserted);

    std::unique_ptr<Storage> m_store;
    std::vector<TableColumn> m_columns;
    int m_rowCount = 0;
    int m_visibleCount = 0;
    int m_selectedCount = 0;
    int m_focusRow = -1;
    int m_focusColumn = -1;
    int m_trailingRow = -1;
    SelectionMode m_selectionMode = SelectionMode::MultipleRows;
    int m_sortColumn = -1;
    bool m_sortAscending = true;
    /// Unsorted, yet the rows show in the order a sort left them (its column was deleted).
    bool m_orderKept = false;
    int m_previousSort[2] = {-1, -1};
    bool m_dayFirst = true;
    int m_sortThreads = 0;
    int m_altRows = 0;
    int m_grid = 0;
    bool m_tabThru = false;
    std::uint32_t m_style = 0;
    std::string m_settingsName;
    TableControlOwner* m_owner = nullptr;
    std::vector<TableControlObserver*> m_observers;
    TextMeasurer* m_measurer = nullptr;
    ViewGeometry m_geometry;
    std::string (*m_decoder)(std::string_view) = nullptr;
    int m_changeDepth = 0;
    int m_lastChangeFrom = 0;
    bool m_resetPending = false;
    bool m_repaintPending = false;
};

} // namespace quirnel
