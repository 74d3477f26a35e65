#include "ostrand/settings/settings_file.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

using ost::SettingsFile;
using ost::SettingsLoadStatus;
using ost::SettingsValue;
using quirnel::test::ReadFile;
using quirnel::test::TempDir;
using quirnel::test::WriteFile;

SettingsFile Reparse(const SettingsFile& file)
{
    SettingsFile copy;
    EXPECT_EQ(copy.Parse(file.Serialize()), SettingsLoadStatus::Loaded) << file.Serialize();
    return copy;
}

struct ValueCase
{
    const char* name;
    SettingsValue value;
};

class SettingsValueRoundTrip : public ::testing::TestWithParam<ValueCase>
{};

TEST_P(SettingsValueRoundTrip, ComesBackIdenticalAndTheFileStaysUtf8)
{
    SettingsFile file;
    file.Set("Settings", "Before", SettingsValue(1));
    file.Set("Settings", "Key", GetParam().value);
    file.Set("Settings", "After", SettingsValue(2));
    SettingsFile copy = Reparse(file);
    ASSERT_NE(copy.Find("Settings", "Key"), nullptr);
    EXPECT_EQ(*copy.Find("Settings", "Key"), GetParam().value);
    ASSERT_NE(copy.Find("Settings", "After"), nullptr);
    EXPECT_EQ(*copy.Find("Settings", "After"), SettingsValue(2));
    // Every line must still be one line: nothing raw below a space except the newlines.
    for (char c : file.Serialize())
        EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20);
}

std::u16string LoneSurrogates()
{
    std::u16string text = u"x";
    text += char16_t(0xD800);
    text += u"y";
    text += char16_t(0xDFFF);
    return text;
}

INSTANTIATE_TEST_SUITE_P(
    Values, SettingsValueRoundTrip,
    ::testing::Values(
        ValueCase{"True", SettingsValue(true)}, ValueCase{"False", SettingsValue(false)},
        ValueCase{"Zero", SettingsValue(0)}, ValueCase{"IntMin", SettingsValue(INT_MIN)},
        ValueCase{"IntMax", SettingsValue(INT_MAX)}, ValueCase{"Ten", SettingsValue(10.0)},
        ValueCase{"Third", SettingsValue(1.0 / 3.0)}, ValueCase{"Tiny", SettingsValue(-5e-324)},
        ValueCase{"EmptyText", SettingsValue(std::string())},
        ValueCase{"EqualsText", SettingsValue(std::string("="))},
        ValueCase{"SectionLikeText", SettingsValue(std::string("[x]"))},
        ValueCase{"CommentLikeText", SettingsValue(std::string("; #"))},
        ValueCase{"LineBreaks", SettingsValue(std::string("a\r\nb\rc\n"))},
        ValueCase{"Backslashes", SettingsValue(std::string("C:\\x41\\n\\"))},
        ValueCase{"SpacesKept", SettingsValue(std::string("  padded  "))},
        ValueCase{"NulBytes", SettingsValue(std::string("a\0b\0", 4))},
        ValueCase{"NonUtf8Bytes", SettingsValue(std::string("caf\xE9 \xFF\xC3"))},
        ValueCase{"Utf8Bytes", SettingsValue(std::string("caf\xC3\xA9"))},
        ValueCase{"TypeLikeText", SettingsValue(std::string("i:5"))},
        ValueCase{"EmptyWide", SettingsValue(std::u16string())},
        ValueCase{"AstralWide", SettingsValue(std::u16string(u"a😀\U00010348 Ω\r\n\\"))},
        ValueCase{"LoneSurrogateWide", SettingsValue(LoneSurrogates())},
        ValueCase{"EscapeLikeWide", SettingsValue(std::u16string(u"\\u0041"))}),
    [](const ::testing::TestParamInfo<ValueCase>& param) { return param.param.name; });

TEST(SettingsFile, AwkwardKeysAndSectionsRoundTrip)
{
    const std::string keys[] = {
        "a=b", "[x]", ";c", "#d", " spaced ", "", "tab\there", "C:\\path\\file.csv", "\xFF"};
    const std::string sections[] = {"Settings", "a]b", " [", "", "line\nbreak"};
    SettingsFile file;
    int n = 0;
    for (const std::string& section : sections)
        for (const std::string& key : keys)
            file.Set(section, key, SettingsValue(n++));
    SettingsFile copy = Reparse(file);
    EXPECT_EQ(copy.Sections(), file.Sections());
    n = 0;
    for (const std::string& section : sections) {
        EXPECT_EQ(copy.Keys(section), file.Keys(section));
        for (const std::string& key : keys) {
            const SettingsValue* value = copy.Find(section, key);
            ASSERT_NE(value, nullptr) << section << "/" << key;
            EXPECT_EQ(*value, SettingsValue(n++));
        }
    }
}

TEST(SettingsFile, WritesReadableLines)
{
    SettingsFile file;
    file.Set("Settings", "HideIndexColumn", SettingsValue(true));
    file.Set("Settings", "BackupLevels", SettingsValue(9));
    file.Set("Settings", "PrintSize", SettingsValue(10.5));
    file.Set("Settings", "CCSeparator", SettingsValue(std::string(", ")));
    file.Set("Window", "Title", SettingsValue(std::u16string(u"Grüße")));
    EXPECT_EQ(file.Serialize(), "[Settings]\n"
                                "HideIndexColumn=b:1\n"
                                "BackupLevels=i:9\n"
                                "PrintSize=d:10.5\n"
                                "CCSeparator=s:, \n"
                                "\n"
                                "[Window]\n"
                                "Title=w:Gr\xC3\xBC\xC3\x9F"
                                "e\n");
}

struct DamageCase
{
    const char* name;
    std::string line;
};

class SettingsDamagedLine : public ::testing::TestWithParam<DamageCase>
{};

TEST_P(SettingsDamagedLine, IsSkippedAndTheRestLoads)
{
    std::string text = "[Settings]\nFirst=i:1\n" + GetParam().line + "\nLast=s:end\n";
    SettingsFile file;
    EXPECT_EQ(file.Parse(text), SettingsLoadStatus::Damaged);
    EXPECT_EQ(file.DamagedLines(), 1);
    EXPECT_EQ(file.Keys("Settings"), (std::vector<std::string>{"First", "Last"}));
    EXPECT_EQ(file.GetText("Settings", "Last"), "end");
}

INSTANTIATE_TEST_SUITE_P(
    Lines, SettingsDamagedLine,
    ::testing::Values(DamageCase{"MissingEquals", "Broken"}, DamageCase{"MissingType", "Broken=5"},
                      DamageCase{"UnknownType", "Broken=q:5"}, DamageCase{"BadInt", "Broken=i:12x"},
                      DamageCase{"IntOverflow", "Broken=i:99999999999"},
                      DamageCase{"EmptyInt", "Broken=i:"}, DamageCase{"BadDouble", "Broken=d:1,5"},
                      DamageCase{"BadBool", "Broken=b:yes"},
                      DamageCase{"BadEscape", "Broken=s:a\\qb"},
                      DamageCase{"TruncatedEscape", "Broken=s:a\\x4"},
                      DamageCase{"InvalidUtf8InWide", "Broken=w:a\xFF"},
                      DamageCase{"TruncatedWideEscape", "Broken=w:\\u00"},
                      DamageCase{"Garbage", std::string("\x01\x02\0\xFF\xFE garbage", 13)}),
    [](const ::testing::TestParamInfo<DamageCase>& param) { return param.param.name; });

TEST(SettingsFile, TruncatedFileKeepsEverythingBeforeTheCut)
{
    SettingsFile full;
    full.Set("Settings", "A", SettingsValue(1));
    full.Set("Settings", "B", SettingsValue(std::u16string(u"wide😀")));
    full.Set("Window", "WindowPos", SettingsValue(std::string("1,2,3,4")));
    const std::string text = full.Serialize();
    const size_t endOfA = text.find("B=");
    const size_t endOfB = text.find("\n\n") + 1;
    for (size_t cut = 0; cut <= text.size(); ++cut) {
        SettingsFile file;
        file.Parse(text.substr(0, cut));
        EXPECT_LE(file.DamagedLines(), 1) << cut;
        if (cut >= endOfA) {
            ASSERT_NE(file.Find("Settings", "A"), nullptr) << cut;
            EXPECT_EQ(*file.Find("Settings", "A"), SettingsValue(1)) << cut;
        }
        if (cut >= endOfB) {
            ASSERT_NE(file.Find("Settings", "B"), nullptr) << cut;
            EXPECT_EQ(*file.Find("Settings", "B"), *full.Find("Settings", "B")) << cut;
        }
    }
}

TEST(SettingsFile, KeysUnderADamagedHeaderAreNotFiledElsewhere)
{
    SettingsFile file;
    EXPECT_EQ(file.Parse("[Settings]\nA=i:1\n[Broken\nB=i:2\n[Window]\nC=i:3\n"),
              SettingsLoadStatus::Damaged);
    EXPECT_EQ(file.DamagedLines(), 2);
    EXPECT_EQ(file.Keys("Settings"), std::vector<std::string>{"A"});
    EXPECT_EQ(file.Keys("Window"), std::vector<std::string>{"C"});
}

TEST(SettingsFile, ToleratesHandEditing)
{
    SettingsFile file;
    EXPECT_EQ(file.Parse("\xEF\xBB\xBF; comment\r\n\r\n  [ Settings ]  \r\n"
                         "  Key  =  i:7\r\n# another\r\nDup=i:1\r\nDup=i:2\r\n"),
              SettingsLoadStatus::Loaded);
    ASSERT_NE(file.Find("Settings", "Key"), nullptr);
    EXPECT_EQ(*file.Find("Settings", "Key"), SettingsValue(7));
    EXPECT_EQ(file.Keys("Settings"), (std::vector<std::string>{"Key", "Dup"}));
    EXPECT_EQ(*file.Find("Settings", "Dup"), SettingsValue(2));
}

TEST(SettingsFile, SetKeepsPlaceAndTypeFollowsTheNewValue)
{
    SettingsFile file;
    file.Parse("[Settings]\nA=i:1\nB=i:2\n");
    file.Set("Settings", "A", SettingsValue(std::string("now text")));
    EXPECT_EQ(file.Keys("Settings"), (std::vector<std::string>{"A", "B"}));
    EXPECT_EQ(file.GetText("Settings", "A"), "now text");
    EXPECT_EQ(file.GetText("Settings", "B"), std::nullopt);
    EXPECT_TRUE(file.Remove("Settings", "A"));
    EXPECT_FALSE(file.Remove("Settings", "A"));
    EXPECT_TRUE(file.RemoveSection("Settings"));
    EXPECT_TRUE(file.Sections().empty());
}

class SettingsFileOnDisk : public ::testing::Test
{
protected:
    void TearDown() override { SettingsFile::FailCallForTest(0); }

    TempDir dir;
    std::filesystem::path path = dir / "quiredit.dat";
};

TEST_F(SettingsFileOnDisk, MissingFileIsFirstRunAndAFolderIsUnreadable)
{
    SettingsFile file;
    file.Set("Settings", "Stale", SettingsValue(1));
    EXPECT_EQ(file.Load(path), SettingsLoadStatus::FirstRun);
    EXPECT_TRUE(file.Sections().empty());
    std::filesystem::create_directory(path);
    EXPECT_EQ(file.Load(path), SettingsLoadStatus::Unreadable);
}

TEST_F(SettingsFileOnDisk, UnknownKeysAndSectionsSurviveARewrite)
{
    WriteFile(path, "[Settings]\nFuture=s:kept\nBackupLevels=i:3\n\n[Plugin]\nX=d:2.5\n");
    SettingsFile file;
    ASSERT_EQ(file.Load(path), SettingsLoadStatus::Loaded);
    file.Set("Settings", "BackupLevels", SettingsValue(5));
    file.Set("Window", "WindowPos", SettingsValue(std::string("0,0,640,480")));
    ASSERT_TRUE(file.Save(path));
    EXPECT_EQ(ReadFile(path), "[Settings]\nFuture=s:kept\nBackupLevels=i:5\n\n[Plugin]\nX=d:2.5\n"
                              "\n[Window]\nWindowPos=s:0,0,640,480\n");
    EXPECT_EQ(dir.Entries(), std::vector<std::string>{"quiredit.dat"});
}

TEST_F(SettingsFileOnDisk, SaveCreatesTheFileAndLoadReadsItBack)
{
    SettingsFile file;
    file.Set("Settings", "Text", SettingsValue(std::string("a\r\nb\0c", 6)));
    ASSERT_TRUE(file.Save(path));
    SettingsFile loaded;
    ASSERT_EQ(loaded.Load(path), SettingsLoadStatus::Loaded);
    EXPECT_EQ(loaded.GetText("Settings", "Text"), std::string("a\r\nb\0c", 6));
}

// Each file call of a save fails in turn, a write also after half of its bytes: the file is
// then always the old one or the new one, whole, and no temporary file is left.
TEST_F(SettingsFileOnDisk, EveryFailingCallLeavesTheOldOrTheNewFile)
{
    const std::string old = "[Settings]\nBackupLevels=i:3\n";
    const std::string updated = "[Settings]\nBackupLevels=i:7\nCCSeparator=s:;\n";
    SettingsFile file;
    ASSERT_EQ(file.Parse(updated), SettingsLoadStatus::Loaded);
    WriteFile(path, old);
    SettingsFile::FailCallForTest(0);
    ASSERT_TRUE(file.Save(path));
    const int calls = SettingsFile::CallsForTest();
    int faults = 0;
    for (int call = 1; call <= calls; ++call) {
        for (bool midway : {false, true}) {
            WriteFile(path, old);
            SettingsFile::FailCallForTest(call, EIO, midway);
            const bool saved = file.Save(path);
            ++faults;
            EXPECT_EQ(ReadFile(path), saved ? updated : old) << "call " << call;
            EXPECT_EQ(dir.Entries(), std::vector<std::string>{"quiredit.dat"}) << "call " << call;
        }
    }
    EXPECT_GE(calls, 7);
    RecordProperty("InjectedFaults", faults);
    std::printf("settings file: %d faults injected over %d calls\n", faults, calls);
}

TEST_F(SettingsFileOnDisk, UnreadableFileIsLeftAlone)
{
    const std::string kept = "[Settings]\nBackupLevels=i:3\n";
    WriteFile(path, kept);
    SettingsFile file;
    SettingsFile::FailCallForTest(2, EIO); // the first read
    EXPECT_EQ(file.Load(path), SettingsLoadStatus::Unreadable);
    SettingsFile::FailCallForTest(0);
    EXPECT_EQ(file.LoadStatus(), SettingsLoadStatus::Unreadable);
    EXPECT_EQ(file.LoadError(), EIO);
    EXPECT_TRUE(file.Sections().empty());
    file.Set("Settings", "BackupLevels", SettingsValue(9));
    EXPECT_FALSE(file.Save(path));
    EXPECT_FALSE(file.Save(dir / "." / "quiredit.dat"));
    EXPECT_EQ(ReadFile(path), kept);
    // Any other file is written; and once the file reads again, so is it.
    EXPECT_TRUE(file.Save(dir / "other.dat"));
    EXPECT_EQ(file.Load(path), SettingsLoadStatus::Loaded);
    EXPECT_EQ(file.LoadError(), 0);
    EXPECT_TRUE(file.Save(path));
    EXPECT_EQ(ost::UnreadableSettingsMessage("/home/u/.config/Quirnel/quiredit.dat", EACCES),
              "The settings file \"/home/u/.config/Quirnel/quiredit.dat\" could not be read.  "
              "Until it can, the program uses its default settings and leaves the file as it "
              "is.\r\n\r\nPermission denied");
}

TEST_F(SettingsFileOnDisk, SaveThroughALinkKeepsTheLink)
{
    std::filesystem::create_directory(dir / "dotfiles");
    WriteFile(dir / "dotfiles" / "quiredit.dat", "[Settings]\nBackupLevels=i:3\n");
    std::filesystem::create_symlink("dotfiles/quiredit.dat", path);
    SettingsFile file;
    ASSERT_EQ(file.Load(path), SettingsLoadStatus::Loaded);
    file.Set("Settings", "BackupLevels", SettingsValue(4));
    ASSERT_TRUE(file.Save(path));
    EXPECT_TRUE(std::filesystem::is_symlink(path));
    EXPECT_EQ(ReadFile(dir / "dotfiles" / "quiredit.dat"), "[Settings]\nBackupLevels=i:4\n");
    EXPECT_EQ(dir.Entries(), (std::vector<std::string>{"dotfiles", "quiredit.dat"}));
}

TEST_F(SettingsFileOnDisk, SaveIntoMissingFolderFails)
{
    SettingsFile file;
    file.Set("Settings", "A", SettingsValue(1));
    EXPECT_FALSE(file.Save(dir / "missing" / "quiredit.dat"));
    EXPECT_TRUE(dir.Entries().empty());
}

} // namespace
