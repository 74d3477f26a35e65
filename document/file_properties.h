#pragma once
// A file's properties: the view state remembered per path in the file history (widths, sort,
// alignment, focus cell, flags, code page), the File Properties dialog's choices with the
// conversion of every cell when the text mode changes, and the New File dialog's setup.

#include "document/file_format.h"
#include "document/file_history.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quirnel {

class TableControl;
class TableDocument;

/// "Flags" bits of a remembered record.
inline constexpr int kFilePropertyCellEditor = 1;
inline constexpr int kFilePropertyDelimitAll = 2;
inline constexpr int kFilePropertySortDescending = 4;

/// The parts of an open document a record is made from and applied to.
struct FilePropertiesTarget
{
    TableControl& table;
    FileFormat& format;
    /// The cell editor ("Editor" pane) mode of the main window.
    bool& cellEditorMode;
};

/// The record for the document as it is now.
FileRecord MakeFileRecord(const TableControl& table, const FileFormat& format, bool cellEditorMode);
/// Applies a record: widths, sort methods, flags, sort column with direction, focus cell,
/// alignment. Damaged values are skipped one by one.
void ApplyFileRecord(const FileRecord& record, FilePropertiesTarget target);

/// Puts the document's record under its path (nothing for an empty path) and trims the
/// history to 100 entries.
void StoreFileProperties(FileHistory& history, const TableControl& table, const FileFormat& format,
                         bool cellEditorMode);
/// At the end of a successful load: applies the path's record when there is one. False when
/// the history knows nothing of the path.
bool RestoreFileProperties(const FileHistory& history, FilePropertiesTarget target);
/// The same for the open document: its table, format and path.
void StoreFileProperties(FileHistory& history, const TableDocument& document, bool cellEditorMode);
bool RestoreFileProperties(const FileHistory& history, TableDocument& document, FileFormat& format,
                           bool& cellEditorMode);
/// Before a load: the remembered "CodePage" of the path, if any.
std::optional<std::uint32_t> RememberedCodePage(const FileHistory& history, std::string_view path);

/// Comma lists in column order (the index column included), as the history keeps them.
std::string FormatWidths(const TableControl& table);
std::string FormatSortMethods(const TableControl& table);
/// 0 left, 1 center, 2 right per column.
std::string FormatAlignments(const TableControl& table);
/// Decimal numbers separated by commas; nullopt when any piece is not a number.
std::optional<std::vector<int>> ParseNumberList(std::string_view text);

// ---- File Properties dialog ----

struct LabelledValue
{
    std::string label;
    int value;
};

struct NewlineChoice
{
    const char* label;
    const char* newline;
};

inline constexpr NewlineChoice kNewlineChoices[] = {{"CR+LF (Windows)", "\r\n"},
                                                    {"LF (Linux, Unix)", "\n"},
                                                    {"CR (older Mac OS)", "\r"},
                                                    {"LF+CR (RISC OS)", "\n\r"}};

/// "8-bit ASCII (System Default)" 0, "UTF-8 (Unicode)" 65001, then the other code pages
/// (65000 left out).
std::vector<LabelledValue> CharacterSetChoices();
/// ",", ";", "|", "tab" as 44, 59, 124, 9.
std::vector<LabelledValue> SeparatorChoices();

struct FilePropertiesRequest
{
    std::uint32_t codePage = 0;
    /// One of SeparatorChoices' values; a separator not offered shows as ','.
    int separator = ',';
    /// Index into kNewlineChoices; an unknown newline shows as the first.
    int newline = 0;
    bool noColumnNames = false;
    bool delimitAllCells = false;
};

inline constexpr const char* kFilePropertiesRefusal =
    "You must first open the file that you wish to edit the properties for.";

FilePropertiesRequest MakeFilePropertiesRequest(const FileFormat& format);

/// Stores an accepted request in the format and, when the text mode changes (UTF-16 for every
/// code page but 0), converts every column name and cell. Returns the new text mode.
int ApplyFilePropertiesRequest(const FilePropertiesRequest& request, FileFormat& format,
                               int textMode, TableControl& table);

/// Converts every name and cell between 8-bit text and UTF-16. Going to UTF-16 the 8-bit text
/// is read in `codePage`; going to 8-bit it is written in the system code page, with '?' for
/// characters that page lacks.
void ConvertTextMode(TableControl& table, int fromTextMode, int toTextMode, std::uint32_t codePage);

// ---- New File dialog ----

struct NewFileRequest
{
    /// 0 8-bit cells, 1 UTF-16 cells ("DefaultEncdoing" preselects it).
    int encoding = 0;
    /// 44, 9, 59 or 124; commas preselected.
    int separator = ',';
};

/// "Commas" 44, "Tabs" 9, "Semi-colons" 59, "Vertical bars" 124.
std::vector<LabelledValue> NewFileSeparatorChoices();
/// "ASCII (8-bit characters)" 0, "UTF-8 (16-bit characters)" 1.
std::vector<LabelledValue> NewFileEncodingChoices();

/// The new document's format: code page 0 even for UTF-16 cells (saved in the system code page
/// until File Properties changes it), every flag off, CR LF, the chosen separator.
FileFormat NewFileFormat(const NewFileRequest& request);

} // namespace quirnel
