#include "app/association.h"
#include "tests/support/scripted_ui.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace quirnel {
namespace {

using test::ScriptedUi;
constexpr auto kClasses = AssociationRoot::Classes;
constexpr auto kUser = AssociationRoot::CurrentUser;
const std::string kProgram = "/opt/quirnel/bin/quirnel";
const std::string kUserChoice =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\.csv\\UserChoice";
const std::string kFileExtsCsv =
    "Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\.csv";

class AssociateExtensionTest : public testing::Test
{
protected:
    AssociateOptions Default(bool suppress = true)
    {
        AssociateOptions options;
        options.suppressSuccess = suppress;
        return options;
    }
    std::string Value(AssociationRoot root, const std::string& key, const std::string& name = "")
    {
        return store.ReadValue(root, key, name).value_or("<none>");
    }
    void OtherProgramOwnsCsv()
    {
        store.WriteValue(kClasses, ".csv", "", "Other.Sheet");
        store.WriteValue(kClasses, "Other.Sheet\\shell\\open\\command", "",
                         "\"C:\\Other\\sheet.exe\" \"%1\"");
    }

    InMemoryAssociationStore store;
    ScriptedUi ui;
};

TEST_F(AssociateExtensionTest, WritesClassAsDefaultOpener)
{
    EXPECT_FALSE(AssociateExtension({".csv"}, Default(), store, ui, kProgram));
    EXPECT_EQ(Value(kClasses, ".csv"), "Veltrane Quirnel");
    EXPECT_EQ(Value(kClasses, ".csv", "Quirnel Backup"), "<none>");
    EXPECT_FALSE(store.HasKey(kClasses, ".csv\\ShellNew"));
    EXPECT_EQ(Value(kClasses, "Veltrane Quirnel"), "Comma Separated Values");
    EXPECT_EQ(Value(kClasses, "Veltrane Quirnel\\shell"), "open");
    EXPECT_EQ(Value(kClasses, "Veltrane Quirnel\\shell\\open"), "Open");
    EXPECT_EQ(Value(kClasses, "Veltrane Quirnel\\shell\\open\\command"),
              "\"/opt/quirnel/bin/quirnel\" \"%1\"");
    EXPECT_EQ(Value(kClasses, "Veltrane Quirnel\\DefaultIcon"), "/opt/quirnel/bin/quirnel,0");
    EXPECT_EQ(store.Notifications(), 1);
}

TEST_F(AssociateExtensionTest, EditVerbWithoutShellDefaultAndWithNewFileEntry)
{
    AssociateOptions options = Default();
    options.asDefault = false;
    options.addNewFileEntry = true;
    EXPECT_FALSE(AssociateExtension({"exe"}, options, store, ui, kProgram));
    EXPECT_EQ(Value(kClasses, ".exe"), "Veltrane Quirnel");
    EXPECT_EQ(Value(kClasses, ".exe\\ShellNew", "NullFile"), "");
    EXPECT_EQ(Value(kClasses, "Veltrane Quirnel\\shell"), "<none>");
    EXPECT_EQ(Value(kClasses, "Veltrane Quirnel\\shell\\edit"), "Edit with Quirnel");
    EXPECT_EQ(Value(kClasses, "Veltrane Quirnel\\shell\\edit\\command"),
              "\"/opt/quirnel/bin/quirnel\" \"%1\"");
}

TEST_F(AssociateExtensionTest, RefusesProgramTypesAsDefaultOpener)
{
    for (const char* extension : {"exe", "BAT", ".pif", "com", "dll", "scr"}) {
        std::string shown = extension[0] == '.' ? extension + 1 : extension;
        ui.Expect("Associate",
                  "You are not allowed to change the association for \"." + shown + "\" files.");
        EXPECT_FALSE(AssociateExtension({extension}, Default(), store, ui, kProgram));
    }
    EXPECT_TRUE(store.Keys().empty());
}

TEST_F(AssociateExtensionTest, AsksBeforeTakingOverAndKeepsBackup)
{
    OtherProgramOwnsCsv();
    const std::string question =
        ".csv files are currently associated with:\r\n\r\nC:\\Other\\sheet.exe\r\n\r\n"
        "Should the association be changed?";
    // No changes nothing, not even a notification.
    auto before = store.Keys();
    ui.Expect("Associate", question, ost::kButtonNo);
    EXPECT_FALSE(AssociateExtension({"csv"}, Default(), store, ui, kProgram));
    EXPECT_EQ(store.Keys(), before);
    EXPECT_EQ(store.Notifications(), 0);

    ui.Expect("Associate", question, ost::kButtonYes);
    EXPECT_FALSE(AssociateExtension({"csv"}, Default(), store, ui, kProgram));
    EXPECT_EQ(Value(kClasses, ".csv"), "Veltrane Quirnel");
    EXPECT_EQ(Value(kClasses, ".csv", "Quirnel Backup"), "Other.Sheet");
}

TEST_F(AssociateExtensionTest, SkippedConfirmationAsksNothing)
{
    OtherProgramOwnsCsv();
    AssociateOptions options = Default();
    options.skipConfirmation = true;
    AssociateExtension({"csv"}, options, store, ui, kProgram);
    EXPECT_EQ(Value(kClasses, ".csv", "Quirnel Backup"), "Other.Sheet");
}

TEST_F(AssociateExtensionTest, RemovesTheUsersOwnChoice)
{
    store.WriteValue(kUser, kUserChoice, "Progid", "Other.Sheet");
    store.WriteValue(kUser, kFileExtsCsv, "Progid", "Other.Sheet");
    store.WriteValue(kUser, kFileExtsCsv, "Keep", "1");
    AssociateExtension({"csv"}, Default(), store, ui, kProgram);
    EXPECT_FALSE(store.HasKey(kUser, kUserChoice));
    EXPECT_EQ(Value(kUser, kFileExtsCsv, "Progid"), "<none>");
    EXPECT_EQ(Value(kUser, kFileExtsCsv, "Keep"), "1");
}

TEST_F(AssociateExtensionTest, SuccessBoxOffersAnother)
{
    ui.Expect("Associate", "The association was successful.", ost::kFirstExtraButtonId);
    EXPECT_TRUE(AssociateExtension({"csv"}, Default(false), store, ui, kProgram));
    ASSERT_EQ(ui.Shown().size(), 1u);
    ASSERT_EQ(ui.Shown()[0].extraButtons.size(), 1u);
    EXPECT_EQ(ui.Shown()[0].extraButtons[0].caption, "Another");
    EXPECT_EQ(ui.Shown()[0].extraButtons[0].tip, "Make another association.");

    ui.Expect("Associate", "The association was successful.", ost::kButtonOk);
    EXPECT_FALSE(AssociateExtension({"txt"}, Default(false), store, ui, kProgram));
}

TEST_F(AssociateExtensionTest, AccessDeniedWithoutElevationFails)
{
    store.Deny(kClasses, "Veltrane Quirnel", StoreResult::AccessDenied);
    ui.Expect("Associate",
              "The association failed.  This is usually caused by registry security settings.");
    EXPECT_FALSE(AssociateExtension({"csv"}, Default(false), store, ui, kProgram));
    EXPECT_EQ(store.Notifications(), 0);
}

TEST_F(AssociateExtensionTest, OtherFailureNamesTheKey)
{
    store.Deny(kClasses, ".csv", StoreResult::Failed);
    ui.Expect("Associate", "Failed to open/create registry key.\r\n\r\n.csv");
    EXPECT_FALSE(AssociateExtension({"csv"}, Default(false), store, ui, kProgram));
}

class ElevatingStore : public InMemoryAssociationStore
{
public:
    bool CanElevate() override { return true; }
    void RestartElevated(const std::string& parameters) override { restartedWith = parameters; }
    std::string restartedWith;
};

TEST(AssociateExtension, AccessDeniedRestartsElevatedWhereThatExists)
{
    ElevatingStore store;
    ScriptedUi ui;
    store.Deny(kClasses, ".csv", StoreResult::AccessDenied);
    EXPECT_FALSE(AssociateExtension({".csv"}, AssociateOptions{}, store, ui, kProgram));
    EXPECT_EQ(store.restartedWith, "/nc /rs /a\"csv\"");
}

TEST(DisplayedCommand, StripsPlaceholderAndQuotes)
{
    EXPECT_EQ(DisplayedCommand("\"C:\\A b\\x.exe\" \"%1\""), "C:\\A b\\x.exe");
    EXPECT_EQ(DisplayedCommand("x.exe %1 /y"), "x.exe  /y");
}

TEST(FreedesktopAssociationStore, WritesDesktopEntryAndDefaultApplication)
{
    test::TempDir dir;
    std::filesystem::create_directories(dir / "config");
    std::filesystem::create_directories(dir / "data/applications");
    test::WriteFile(dir / "config/mimeapps.list",
                    "[Default Applications]\ntext/csv=other.desktop\ntext/html=web.desktop\n");
    test::WriteFile(dir / "data/applications/other.desktop",
                    "[Desktop Entry]\nName=Other\nExec=/usr/bin/other --open %U\n");
    FreedesktopAssociationStore store((dir / "data").string(), (dir / "config").string());
    ScriptedUi ui;
    ui.Expect("Associate",
              ".csv files are currently associated with:\r\n\r\n/usr/bin/other --open\r\n\r\n"
              "Should the association be changed?",
              ost::kButtonYes);
    AssociateOptions options;
    options.suppressSuccess = true;
    AssociateExtension({"csv", "tsv"}, options, store, ui, kProgram);
    EXPECT_TRUE(store.LastCommitOk());

    std::string desktop = test::ReadFile(dir / "data/applications/quirnel.desktop");
    EXPECT_NE(desktop.find("Exec=\"/opt/quirnel/bin/quirnel\" %f\n"), std::string::npos);
    EXPECT_NE(desktop.find("MimeType=text/csv;text/tab-separated-values;\n"), std::string::npos);
    std::string apps = test::ReadFile(dir / "config/mimeapps.list");
    EXPECT_NE(apps.find("text/csv=quirnel.desktop\n"), std::string::npos);
    EXPECT_NE(apps.find("text/tab-separated-values=quirnel.desktop\n"), std::string::npos);
    EXPECT_NE(apps.find("text/html=web.desktop\n"), std::string::npos);

    FreedesktopAssociationStore reread((dir / "data").string(), (dir / "config").string());
    EXPECT_EQ(reread.ReadValue(kClasses, ".csv", ""),
              std::optional<std::string>(kAssociationClass));
}

} // namespace
} // namespace quirnel
