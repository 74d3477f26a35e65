#include "app/preferences.h"

#include "ostrand/settings/settings_exchange.h"

#include <charconv>
#include <cstdio>

namespace quirnel {

void ExchangePreferences(ost::SettingsExchange& ex, Preferences& p)
{
    ex.Section(kSettingsSection);
    ex.Bool("NoConfirmDeleteRow", p.noConfirmDeleteRow);
    ex.Bool("HideIndexColumn", p.hideIndexColumn);
    ex.Int("Charset", p.charset);
    ex.Int("BackupLevels", p.backupLevels);
    // Kept as spelt: existing settings files use this key.
    ex.Int("DefaultEncdoing", p.defaultEncoding);
    ex.Bool("ShiftLeft", p.shiftLeft);
    ex.Bool("NFLCC", p.newFileLaunchesCreateColumn);
    ex.Text("CCSeparator", p.combineSeparator);
    ex.Bool("CCAlwaysSeparate", p.combineAlwaysSeparate);
    ex.Bool("WarnTooFew", p.warnTooFew);
    ex.Bool("TrimLinesEnd", p.trimLinesEnd);
    ex.Bool("TrimReduce", p.trimReduce);
    ex.Bool("CopyRowsNoColumnNames", p.copyRowsNoColumnNames);
    ex.Int("PasteRowsLocation", p.pasteRowsLocation);
    ex.Bool("FilterCS", p.filterCaseSensitive);
    ex.Bool("FilterWW", p.filterWholeWord);
    ex.Int("Scope", p.scope);
    ex.Bool("GraphAmount1Used", p.graphAmount1Used);
    ex.Text("GraphAmount", p.graphAmount);
    ex.Text("GraphAmountW", p.graphAmountW);
    ex.Bool("GraphAmount2Used", p.graphAmount2Used);
    ex.Text("GraphAmount2", p.graphAmount2);
    ex.Text("GraphAmountW2", p.graphAmountW2);
    ex.Text("GraphDate", p.graphDate);
    ex.Text("GraphDateW", p.graphDateW);
    ex.Int("GraphDateFormat", p.graphDateFormat);
    ex.Int("GraphDivision", p.graphDivision);
    ex.Bool("GraphTitleUsed", p.graphTitleUsed);
    ex.Wide("GraphTitle", p.graphTitle);
    ex.Bool("ExportHTMLTo", p.exportHtmlTo);
    ex.Wide("ExportHTMLFilepath", p.exportHtmlFilepath);
    ex.Bool("PrintSizeUsed", p.printSizeUsed);
    ex.Double("PrintSize", p.printSize);
    if (ex.IsReading()) {
        if (p.backupLevels < 0)
            p.backupLevels = 0;
        if (p.backupLevels > 99)
            p.backupLevels = 99;
    }
}

void ExchangeDocumentFrame(ost::SettingsExchange& ex, DocumentFrameSettings& frame)
{
    ex.Section(kDocumentSection);
    ex.Text("LastDocument", frame.lastDocument);
    ex.Text("LastDirectory", frame.lastDirectory);
    ex.Bool("RecordHistory", frame.recordHistory);
    ex.Bool("DetectChanges", frame.detectChanges);
    ex.Bool("FullPath", frame.fullPath);
    ex.Bool("AutoOpen", frame.autoOpen);
}

std::string FormatWindowPlacement(const WindowPlacement& w)
{
    char text[96];
    std::snprintf(text, sizeof text, "%d,%d,%d,%d,%d", w.left, w.top, w.width, w.height,
                  w.maximized ? 1 : 0);
    return text;
}

std::optional<WindowPlacement> ParseWindowPlacement(std::string_view text)
{
    int numbers[5];
    const char* at = text.data();
    const char* end = text.data() + text.size();
    for (int i = 0; i < 5; ++i) {
        auto [next, error] = std::from_chars(at, end, numbers[i]);
        if (error != std::errc())
            return std::nullopt;
        at = next;
        if (i < 4) {
            if (at == end || *at != ',')
                return std::nullopt;
            ++at;
        }
    }
    if (at != end || numbers[2] <= 0 || numbers[3] <= 0)
        return std::nullopt;
    return WindowPlacement{true, numbers[0], numbers[1], numbers[2], numbers[3], numbers[4] != 0};
}

void ExchangeWindowPlacement(ost::SettingsExchange& ex, WindowPlacement& placement)
{
    ex.Section(kWindowSection);
    if (ex.IsReading()) {
        if (auto text = ex.ReadText("WindowPos"))
            if (auto parsed = ParseWindowPlacement(*text))
                placement = *parsed;
    } else if (placement.valid) {
        ex.WriteText("WindowPos", FormatWindowPlacement(placement));
    }
}

int StoredFromGridTriState(int triState)
{
    // The grid counts 0 default, 1 on, 2 off; the dialog stores 1 default, 2 on, 0 off.
    switch (triState) {
    case 1:
        return 2;
    case 2:
        return 0;
    default:
        return 1;
    }
}

int GridTriStateFromStored(int stored)
{
    switch (stored) {
    case 2:
        return 1;
    case 0:
        return 2;
    default:
        return 0;
    }
}

int ParseBackupLevels(std::string_view text)
{
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t'))
        text.remove_prefix(1);
    if (!text.empty() && text.front() == '+')
        text.remove_prefix(1);
    long value = 0;
    auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    (void)end;
    if (error == std::errc::result_out_of_range)
        return text.front() == '-' ? 0 : 99;
    if (error != std::errc())
        return 0;
    if (value < 0)
        return 0;
    if (value > 99)
        return 99;
    return static_cast<int>(value);
}

PreferencesRequest MakePreferencesRequest(const Preferences& p, const DocumentFrameSettings& frame,
                                          int altRowsTriState, int dividersTriState, int fontSize)
{
    PreferencesRequest r;
    r.noConfirmDeleteRow = p.noConfirmDeleteRow;
    r.hideIndexColumn = p.hideIndexColumn;
    r.altRows = StoredFromGridTriState(altRowsTriState);
    r.rowDividers = StoredFromGridTriState(dividersTriState);
    r.fontSize = fontSize;
    r.autoOpen = frame.autoOpen;
    r.recordHistory = frame.recordHistory;
    r.detectChanges = frame.detectChanges;
    r.fullPath = frame.fullPath;
    r.newFileLaunchesCreateColumn = p.newFileLaunchesCreateColumn;
    r.defaultEncoding = p.defaultEncoding;
    r.backupLevels = std::to_string(p.backupLevels);
    return r;
}

void ApplyPreferencesRequest(const PreferencesRequest& r, Preferences& p,
                             DocumentFrameSettings& frame)
{
    p.noConfirmDeleteRow = r.noConfirmDeleteRow;
    p.hideIndexColumn = r.hideIndexColumn;
    frame.autoOpen = r.autoOpen;
    frame.recordHistory = r.recordHistory;
    frame.detectChanges = r.detectChanges;
    frame.fullPath = r.fullPath;
    p.newFileLaunchesCreateColumn = r.newFileLaunchesCreateColumn;
    p.defaultEncoding = r.defaultEncoding;
    p.backupLevels = ParseBackupLevels(r.backupLevels);
}

} // namespace quirnel
