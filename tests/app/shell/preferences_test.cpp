#include "app/preferences.h"
#include "ostrand/settings/settings_exchange.h"
#include "ostrand/settings/settings_file.h"

#include <gtest/gtest.h>

namespace quirnel {
namespace {

TEST(ExchangePreferences, WritesTheWholeSectionInItsOrder)
{
    ost::SettingsFile file;
    Preferences preferences;
    ost::SettingsExchange write(file, ost::SettingsDirection::Write);
    ExchangePreferences(write, preferences);
    // clang-format off
    const std::vector<std::string> keys = {
        "NoConfirmDeleteRow", "HideIndexColumn", "Charset", "BackupLevels", "DefaultEncdoing",
        "ShiftLeft", "NFLCC", "CCSeparator", "CCAlwaysSeparate", "WarnTooFew", "TrimLinesEnd",
        "TrimReduce", "CopyRowsNoColumnNames", "PasteRowsLocation", "FilterCS", "FilterWW",
        "Scope", "GraphAmount1Used", "GraphAmount", "GraphAmountW", "GraphAmount2Used",
        "GraphAmount2", "GraphAmountW2", "GraphDate", "GraphDateW", "GraphDateFormat",
        "GraphDivision", "GraphTitleUsed", "GraphTitle", "ExportHTMLTo", "ExportHTMLFilepath",
        "PrintSizeUsed", "PrintSize",
    };
    // clang-format on
    EXPECT_EQ(file.Keys("Settings"), keys);
}

TEST(ExchangePreferences, DefaultsWhenTheFileIsEmpty)
{
    ost::SettingsFile file;
    Preferences p;
    p.charset = 77; // the exchange must not touch values whose key is missing
    ost::SettingsExchange read(file, ost::SettingsDirection::Read);
    ExchangePreferences(read, p);
    EXPECT_EQ(p.charset, 77);
    Preferences fresh;
    EXPECT_EQ(fresh.charset, 1);
    EXPECT_EQ(fresh.backupLevels, 9);
    EXPECT_EQ(fresh.defaultEncoding, 0);
    EXPECT_TRUE(fresh.shiftLeft);
    EXPECT_TRUE(fresh.newFileLaunchesCreateColumn);
    EXPECT_TRUE(fresh.warnTooFew);
    EXPECT_EQ(fresh.scope, 1);
    EXPECT_TRUE(fresh.graphAmount1Used);
    EXPECT_TRUE(fresh.exportHtmlTo);
    EXPECT_FALSE(fresh.printSizeUsed);
    EXPECT_DOUBLE_EQ(fresh.printSize, 10.0);
}

TEST(ExchangePreferences, RoundTripsThroughText)
{
    Preferences out;
    out.noConfirmDeleteRow = true;
    out.backupLevels = 3;
    out.defaultEncoding = 1;
    out.combineSeparator = "; ";
    out.graphTitle = u"Umsatz \u00fcber Zeit";
    out.printSize = 12.5;
    DocumentFrameSettings frameOut;
    frameOut.lastDocument = "/tmp/a b.csv";
    frameOut.autoOpen = true;
    frameOut.fullPath = true;
    WindowPlacement placeOut{true, 10, -20, 800, 600, true};

    ost::SettingsFile file;
    ost::SettingsExchange write(file, ost::SettingsDirection::Write);
    ExchangePreferences(write, out);
    ExchangeDocumentFrame(write, frameOut);
    ExchangeWindowPlacement(write, placeOut);
    std::string text = file.Serialize();
    EXPECT_NE(text.find("DefaultEncdoing="), std::string::npos);
    EXPECT_NE(text.find("WindowPos=s:10,-20,800,600,1"), std::string::npos);

    ost::SettingsFile again;
    again.Parse(text);
    Preferences in;
    DocumentFrameSettings frameIn;
    WindowPlacement placeIn;
    ost::SettingsExchange read(again, ost::SettingsDirection::Read);
    ExchangePreferences(read, in);
    ExchangeDocumentFrame(read, frameIn);
    ExchangeWindowPlacement(read, placeIn);
    EXPECT_TRUE(in.noConfirmDeleteRow);
    EXPECT_EQ(in.backupLevels, 3);
    EXPECT_EQ(in.defaultEncoding, 1);
    EXPECT_EQ(in.combineSeparator, "; ");
    EXPECT_EQ(in.graphTitle, out.graphTitle);
    EXPECT_DOUBLE_EQ(in.printSize, 12.5);
    EXPECT_EQ(frameIn.lastDocument, "/tmp/a b.csv");
    EXPECT_TRUE(frameIn.autoOpen);
    EXPECT_TRUE(frameIn.fullPath);
    EXPECT_EQ(FormatWindowPlacement(placeIn), "10,-20,800,600,1");
}

TEST(ExchangePreferences, OutOfRangeBackupLevelsAreClamped)
{
    ost::SettingsFile file;
    file.Parse("[Settings]\nBackupLevels=i:150\n");
    Preferences p;
    ost::SettingsExchange read(file, ost::SettingsDirection::Read);
    ExchangePreferences(read, p);
    EXPECT_EQ(p.backupLevels, 99);
}

TEST(ParseWindowPlacement, RejectsDamagedText)
{
    for (const char* bad : {"", "1,2,3,4", "1,2,3,4,5,6", "1,2,0,4,0", "a,2,3,4,0", "1,2,3,4,0 "})
        EXPECT_FALSE(ParseWindowPlacement(bad)) << bad;
    EXPECT_TRUE(ParseWindowPlacement("-5,0,300,200,0"));
}

TEST(ParseBackupLevels, ClampsToTwoDigitRange)
{
    EXPECT_EQ(ParseBackupLevels("7"), 7);
    EXPECT_EQ(ParseBackupLevels("-5"), 0);
    EXPECT_EQ(ParseBackupLevels("150"), 99);
    EXPECT_EQ(ParseBackupLevels(""), 0);
    EXPECT_EQ(ParseBackupLevels("x"), 0);
    EXPECT_EQ(ParseBackupLevels("99999999999999999999"), 99);
}

TEST(PreferencesRequest, GridTriStatesMapToStoredValues)
{
    // Stored: 1 Default, 2 Enabled/Visible, 0 Disabled/Hidden.
    EXPECT_EQ(StoredFromGridTriState(0), 1);
    EXPECT_EQ(StoredFromGridTriState(1), 2);
    EXPECT_EQ(StoredFromGridTriState(2), 0);
    for (int stored : {0, 1, 2})
        EXPECT_EQ(StoredFromGridTriState(GridTriStateFromStored(stored)), stored);
}

TEST(PreferencesRequest, OkCopiesBackAndClamps)
{
    Preferences p;
    DocumentFrameSettings frame;
    PreferencesRequest request = MakePreferencesRequest(p, frame, 1, 2, -1);
    EXPECT_EQ(request.altRows, 2);
    EXPECT_EQ(request.rowDividers, 0);
    EXPECT_EQ(request.backupLevels, "9");
    request.backupLevels = "-5";
    request.hideIndexColumn = true;
    request.fullPath = true;
    request.defaultEncoding = 1;
    ApplyPreferencesRequest(request, p, frame);
    EXPECT_EQ(p.backupLevels, 0);
    EXPECT_TRUE(p.hideIndexColumn);
    EXPECT_TRUE(frame.fullPath);
    EXPECT_EQ(p.defaultEncoding, 1);
}

} // namespace
} // namespace quirnel
