#pragma once
// Every command number of the editor. Menus, toolbar buttons, context menus and accelerators
// carry only these numbers; a number never changes once given, because saved toolbar
// customisations refer to it.

namespace quirnel::cmd {

// The framework's standard commands (11000..11999).
/// Flips the boolean an Options check entry is bound to; nothing else happens.
inline constexpr int kToggleBoundOption = 11000;
inline constexpr int kExit = 11140;
inline constexpr int kMinimizeColumnWidths = 11145;
inline constexpr int kTableStatistics = 11151;
inline constexpr int kDeselectAllRows = 11152;
inline constexpr int kSaveFileAs = 11158;
inline constexpr int kSelectAllRows = 11212;
inline constexpr int kImportCsvFile = 11297;
inline constexpr int kMoveRowUp = 11299;
inline constexpr int kMoveRowDown = 11300;
inline constexpr int kJumpToRow = 11303;
inline constexpr int kCustomizeToolbar = 11367;
inline constexpr int kNewFile = 11373;
inline constexpr int kOpenFile = 11374;
inline constexpr int kSaveFile = 11375;
inline constexpr int kCloseFile = 11376;
inline constexpr int kMaximizeColumnWidths = 11456;
inline constexpr int kPrint = 11467;
inline constexpr int kDisplayToolbar = 11517;

// The editor's own commands (16150..16223).
inline constexpr int kPreferences = 16150;
inline constexpr int kRowMenu = 16151;
inline constexpr int kCreateColumn = 16152;
inline constexpr int kInsertColumnBefore = 16153;
inline constexpr int kInsertColumnAfter = 16154;
inline constexpr int kCreateRow = 16155;
inline constexpr int kInsertRowBefore = 16156;
inline constexpr int kInsertRowAfter = 16157;
inline constexpr int kDuplicateRows = 16158;
inline constexpr int kDeleteColumn = 16159;
inline constexpr int kDeleteRows = 16160;
inline constexpr int kMultilineEditingMode = 16161;
inline constexpr int kRenameColumn = 16162;
inline constexpr int kWarningsVisible = 16163;
inline constexpr int kGoToWarning = 16164;
inline constexpr int kDismissWarning = 16165;
inline constexpr int kShiftCells = 16166;
inline constexpr int kSpellCheckTable = 16167;
inline constexpr int kTrimWhitespace = 16168;
inline constexpr int kFind = 16169;
inline constexpr int kFindReplace = 16170;
inline constexpr int kFindNext = 16171;
inline constexpr int kFilterEnabled = 16172;
inline constexpr int kFilterText = 16173;
inline constexpr int kDeduplicateRows = 16174;
inline constexpr int kColumnMenu = 16175;
inline constexpr int kAssociateFileType = 16176;
inline constexpr int kMoveColumnLeft = 16177;
inline constexpr int kMoveColumnRight = 16178;
/// The Options menu's check entry; same effect as kMultilineEditingMode.
inline constexpr int kMultilineEditingOption = 16179;
/// The Options menu's check entry; same effect as kWarningsVisible.
inline constexpr int kDisplayWarnings = 16180;
inline constexpr int kSearchColumn = 16181;
inline constexpr int kSearchColumnContinue = 16182;
inline constexpr int kSetEntireColumn = 16183;
// Sent by the column-heading menu: they act on the clicked column, not the current one.
inline constexpr int kHeadingDeleteColumn = 16184;
inline constexpr int kHeadingInsertColumnBefore = 16185;
inline constexpr int kHeadingInsertColumnAfter = 16186;
inline constexpr int kHeadingMoveColumnLeft = 16187;
inline constexpr int kHeadingMoveColumnRight = 16188;
inline constexpr int kHeadingRenameColumn = 16189;
inline constexpr int kHeadingSearchColumn = 16190;
inline constexpr int kHeadingSearchColumnContinue = 16191;
inline constexpr int kTrimColumnWhitespace = 16192;
inline constexpr int kCutRows = 16193;
inline constexpr int kCopyRows = 16194;
inline constexpr int kPasteRows = 16195;
inline constexpr int kOpenNonstandardFile = 16196;
inline constexpr int kPasteColumn = 16197;
inline constexpr int kCopyColumn = 16198;
inline constexpr int kHeadingCopyColumn = 16199;
inline constexpr int kHelpOptionsMenu = 16200;
inline constexpr int kHelpColumnMenu = 16201;
inline constexpr int kHelpRowMenu = 16202;
inline constexpr int kHelpToolsMenu = 16203;
inline constexpr int kCutColumn = 16204;
inline constexpr int kFileProperties = 16205;
inline constexpr int kCopyWarningExtraData = 16206;
inline constexpr int kCombineColumns = 16207;
inline constexpr int kHeadingCombineColumns = 16208;
inline constexpr int kFindPrevious = 16209;
inline constexpr int kExploreFolder = 16210;
/// Both filter option entries send this; the entry's bound boolean tells them apart.
inline constexpr int kFilterOptionChanged = 16211;
inline constexpr int kGraph = 16214;
inline constexpr int kExportToHtml = 16215;
inline constexpr int kShuffleRows = 16216;
inline constexpr int kPasteRowsWithMapping = 16217;
inline constexpr int kSortOnColumnMenu = 16219;
inline constexpr int kCellMenu = 16220;
inline constexpr int kBookmarkReturn = 16221;
inline constexpr int kBookmarkSet = 16222;
inline constexpr int kHelpTableMenu = 16223;

// Numbers this program chose for entries that carry a value; each is a base plus the value,
// so one number still says everything and OnCommand stays a plain switch on ranges.
/// + 0 left, + 1 center, + 2 right: the current column's alignment.
inline constexpr int kColumnAlignmentBase = 17000;
/// + sort method value (0..5): the current column's sort method.
inline constexpr int kSortMethodBase = 17010;
/// The Options menu's "Character set" popup.
inline constexpr int kCharacterSetMenu = 17020;
/// + position in the character-set list handed to the menu.
inline constexpr int kCharacterSetBase = 17100;
inline constexpr int kCharacterSetLast = 17399;
/// + position in the recent-files list (0 = most recent).
inline constexpr int kRecentFileBase = 17400;
inline constexpr int kRecentFileLast = 17499;
/// + position in the toolbar's size choices; handled by the toolbar itself.
inline constexpr int kToolbarSizeBase = 17500;
/// "Balloon help disabled" of the toolbar's context menu; handled by the toolbar itself.
inline constexpr int kToolbarNoTips = 17510;
/// + column index; kSortOnColumnBase - 1 is "No sorting" (value -1). Open-ended upwards,
/// since a table may have any number of columns; kept above every other number.
inline constexpr int kSortOnColumnBase = 20000;

} // namespace quirnel::cmd
