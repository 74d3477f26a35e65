#pragma once
// The main window's persisted settings: the whole "Settings" section, the document frame's
// keys, the window placement, and the Preferences dialog's choices and their stored values.

#include "editing/tool_context.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ost {
class SettingsExchange;
}

namespace quirnel {

/// Everything the main window keeps under "Settings"; ExchangePreferences fixes the order in
/// which the keys are read and written. The editing commands' own values sit in the base.
struct Preferences : EditingPreferences
{
    bool hideIndexColumn = false;
    int charset = 1;
    int backupLevels = 9;
    /// 0 8-bit cells, 1 UTF-16 cells for a new file.
    int defaultEncoding = 0;
    bool newFileLaunchesCreateColumn = true;
    bool warnTooFew = true;
    bool filterCaseSensitive = false;
    bool filterWholeWord = false;
};

/// The document frame's keys: the last document and folder, and the file switches.
struct DocumentFrameSettings
{
    std::string lastDocument;
    std::string lastDirectory;
    bool recordHistory = true;
    bool detectChanges = true;
    bool fullPath = false;
    bool autoOpen = false;
};

/// Window placement in pixels; `valid` false until something was stored.
struct WindowPlacement
{
    bool valid = false;
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    bool maximized = false;
};

inline constexpr std::string_view kSettingsSection = "Settings";
inline constexpr std::string_view kDocumentSection = "Document";
inline constexpr std::string_view kWindowSection = "Window";

/// Reads or writes the whole "Settings" section, key by key in a fixed order.
void ExchangePreferences(ost::SettingsExchange& exchange, Preferences& preferences);
/// "LastDocument", "LastDirectory", "RecordHistory", "DetectChanges", "FullPath", "AutoOpen".
void ExchangeDocumentFrame(ost::SettingsExchange& exchange, DocumentFrameSettings& frame);
/// "WindowPos" under "Window" as "left,top,width,height,maximized".
void ExchangeWindowPlacement(ost::SettingsExchange& exchange, WindowPlacement& placement);

std::string FormatWindowPlacement(const WindowPlacement& placement);
/// nullopt for anything but five numbers with a positive size.
std::optional<WindowPlacement> ParseWindowPlacement(std::string_view text);

/// One entry of a choice list: what the list shows and what is stored.
struct Choice
{
    const char* label;
    int value;
};

inline constexpr Choice kAltRowsChoices[] = {{"Default", 1}, {"Enabled", 2}, {"Disabled", 0}};
inline constexpr Choice kRowDividerChoices[] = {{"Default", 1}, {"Visible", 2}, {"Hidden", 0}};
inline constexpr Choice kFontSizeChoices[] = {{"Huge", 3},   {"Large", 2},  {"Big", 1},
                                              {"Normal", 0}, {"Small", -1}, {"Tiny", -2}};
inline constexpr Choice kDefaultEncodingChoices[] = {{"ASCII (8-bit characters)", 0},
                                                     {"UTF-8 (16-bit characters)", 1}};

/// The dialog's stored value for the grid's tri-state (0 default, 1 on, 2 off) and back.
int StoredFromGridTriState(int triState);
int GridTriStateFromStored(int stored);

/// What the Preferences dialog shows and returns; the dialog fills it on OK.
struct PreferencesRequest
{
    bool noConfirmDeleteRow = false;
    bool hideIndexColumn = false;
    int altRows = 1;     ///< stored value of kAltRowsChoices
    int rowDividers = 1; ///< stored value of kRowDividerChoices
    int fontSize = 0;
    bool autoOpen = false;
    bool recordHistory = true;
    bool detectChanges = true;
    bool fullPath = false;
    bool newFileLaunchesCreateColumn = true;
    int defaultEncoding = 0;
    /// As typed; at most two characters.
    std::string backupLevels = "9";
};

/// The field's text as a level: an integer clamped to 0..99; text that is no number is 0.
int ParseBackupLevels(std::string_view text);

/// Fills the request from the current values.
PreferencesRequest MakePreferencesRequest(const Preferences& preferences,
                                          const DocumentFrameSettings& frame, int altRowsTriState,
                                          int dividersTriState, int fontSize);
/// Copies an accepted request back (the grid's three values are the caller's).
void ApplyPreferencesRequest(const PreferencesRequest& request, Preferences& preferences,
                             DocumentFrameSettings& frame);

} // namespace quirnel
