#pragma once
// The one open CSV file: its path and format, the text mode of its cells, the load warnings and
// the modified flag, over the grid control that holds the cells. There is no second copy of the
// table: every cell operation goes to the control.

#include "document/file_format.h"
#include "view/table_control.h"

#include <string>
#include <string_view>
#include <vector>

namespace ost {
class UserInterface;
}

namespace quirnel {

class FileSystem;
class TableDocument;

/// One irregularity found while loading, listed beside the table.
struct CSV_Warning
{
    std::string message; ///< UTF-8
    int row = -1;        ///< row index, -1 for none
    /// Attached text the warnings list can copy (extra fields), in the document's 8-bit text
    /// or, for UTF-16 documents, as UTF-8.
    std::string extraData;
};

/// Where the document reaches the rest of the program. Every hook has a harmless default, so
/// the command-line tools and tests need none of them.
class DocumentHooks
{
public:
    virtual ~DocumentHooks() = default;
    /// Commits a cell edit in progress before the table is saved.
    virtual void CommitCellEdit() {}
    /// Applies the file's remembered view properties at the end of a load.
    virtual void RestoreFileProperties(TableDocument& /*document*/, FileFormat& /*format*/) {}
    /// Brings the warnings list up to date after a load.
    virtual void WarningsChanged() {}
    /// Asks for a path when a document without one is to be saved; false cancels.
    virtual bool ChooseSavePath(std::string& /*path*/) { return false; }
    /// Pixels; the initial column widths are capped at half of it.
    virtual int ScreenWidth() { return 1920; }
    /// Pixels the table view has for columns; 0 when there is no view.
    virtual int ViewWidth() { return 0; }
};

class TableDocument
{
public:
    /// `ui` must outlive the document. Files go through the real file system unless
    /// SetFileSystem says otherwise.
    explicit TableDocument(ost::UserInterface& ui);
    TableDocument(const TableDocument&) = delete;
    TableDocument& operator=(const TableDocument&) = delete;

    ost::UserInterface& Ui() { return m_ui; }
    FileSystem& Files() { return *m_files; }
    void SetFileSystem(FileSystem& files) { m_files = &files; }
    DocumentHooks& Hooks() { return *m_hooks; }
    /// Null restores the do-nothing hooks.
    void SetHooks(DocumentHooks* hooks);

    /// Preferences the reader and the saver obey ("WarnTooFew", "BackupLevels").
    bool WarnTooFew() const { return m_warnTooFew; }
    void SetWarnTooFew(bool on) { m_warnTooFew = on; }
    int BackupLevels() const { return m_backupLevels; }
    void SetBackupLevels(int levels) { m_backupLevels = levels; }

    TableControl& Table() { return m_table; }
    const TableControl& Table() const { return m_table; }

    const std::string& Path() const { return m_format.path; }
    void SetPath(std::string path) { m_format.path = std::move(path); }
    const FileFormat& Format() const { return m_format; }
    void StoreFormat(const FileFormat& format);
    /// The separator in force; 0 is written as ','.
    char Separator() const { return m_format.separator; }
    void SetSeparator(char separator) { m_format.separator = separator; }

    /// 0: cells hold 8-bit text in the system code page; 1: UTF-16.
    int TextMode() const { return m_textMode; }
    bool IsUnicode() const { return m_textMode != 0; }
    /// Sets the mode of the document and marks every column; cells are not converted.
    void SetTextMode(bool unicode);

    bool FileOpen() const { return m_fileOpen; }
    void SetFileOpen(bool open) { m_fileOpen = open; }
    bool Modified() const { return m_modified; }
    void SetModified(bool modified) { m_modified = modified; }

    const std::vector<CSV_Warning>& Warnings() const { return m_warnings; }
    void AddWarning(std::string message, int row, std::string extraData = {});
    void ClearWarnings() { m_warnings.clear(); }
    /// Removes one warning; false when there is no such warning.
    bool DeleteWarning(std::size_t index)
    {
        if (index >= m_warnings.size())
            return false;
        m_warnings.erase(m_warnings.begin() + static_cast<std::ptrdiff_t>(index));
        return true;
    }

    /// Counts include the index column 0; below 2 columns the table has no data column.
    int ColumnCount() const { return m_table.ColumnCount(); }
    int RowCount() const { return m_table.RowCount(); }
    /// The name in the document's text mode: 8-bit bytes, or UTF-8 in text mode 1.
    std::string ColumnName(int column) const;
    std::u16string ColumnNameWide(int column) const;
    /// Adds a data column at the end, named in the document's text mode (`name8` for 8-bit
    /// documents, `nameWide` for UTF-16 ones); returns its index. Data columns take the user's
    /// choice of alignment and sort method.
    int AddColumn(std::string_view name8, std::u16string_view nameWide = {});
    bool InsertColumn(int at, std::string_view name8, std::u16string_view nameWide = {});
    /// Renames a data column, the name given as for AddColumn. False for no data column.
    bool SetColumnName(int column, std::string_view name8, std::u16string_view nameWide = {});
    bool DeleteColumn(int column) { return m_table.DeleteColumn(column); }
    bool MoveColumn(int from, int to) { return m_table.MoveColumn(from, to); }

    void SetRowCount(int count) { m_table.SetRowCount(count); }
    bool InsertRows(int at, int count) { return m_table.InsertRows(at, count); }
    bool DeleteRows(int first, int count) { return m_table.DeleteRows(first, count); }
    bool MoveRow(int from, int to) { return m_table.MoveRow(from, to); }

    /// Cell text in the document's text mode (CellText8 for 8-bit documents, CellText16 for
    /// UTF-16 ones); missing cells, and the other width, read as empty.
    std::string_view CellText8(int row, int column) const;
    std::u16string_view CellText16(int row, int column) const;
    /// The cell as UTF-16, converting 8-bit text from the system code page.
    std::u16string CellTextWide(int row, int column) const;
    /// Every cell is stored in the document's text mode, so that it reads back and is saved:
    /// 8-bit text given to a UTF-16 document is converted from the system code page, UTF-16
    /// text given to an 8-bit document is converted to it ("?" for what it cannot hold).
    bool SetCellText8(int row, int column, std::string_view text);
    bool SetCellText16(int row, int column, std::u16string_view text);

    /// Removes all rows, columns and warnings.
    void Clear();
    /// Clear, and no file is open any more.
    void Release();

    /// "the file" without a path, else the file's name: the subject of the close question.
    std::string Description() const;

    /// Whether the current contents may be let go (before Close, Open, New File and exit).
    /// A modified document asks "Save changes to ...?" titled "Close"; saving that fails,
    /// and Cancel, keep the document and answer false.
    bool QueryRelease();

private:
    ost::UserInterface& m_ui;
    FileSystem* m_files;
    DocumentHooks m_defaultHooks;
    DocumentHooks* m_hooks = &m_defaultHooks;
    bool m_warnTooFew = true;
    int m_backupLevels = 9;
    TableControl m_table;
    FileFormat m_format;
    int m_textMode = 0;
    bool m_fileOpen = false;
    bool m_modified = false;
    std::vector<CSV_Warning> m_warnings;
};

} // namespace quirnel
