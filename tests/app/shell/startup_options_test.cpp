#include "app/startup_options.h"

#include <gtest/gtest.h>

namespace quirnel {
namespace {

const std::string kFolder = "/home/user/data";

struct OptionsCase
{
    const char* name;
    const char* commandLine;
    const char* path;
    char delimiter;
    std::vector<std::string> associations; // empty with hasAssociations false: absent
    bool hasAssociations;
    bool noConfirm;
    bool reportSuccess;
    bool newVersion;
};

class StartupOptionsAccepted : public testing::TestWithParam<OptionsCase>
{};

TEST_P(StartupOptionsAccepted, GivesOptions)
{
    const OptionsCase& c = GetParam();
    std::string message;
    auto options = ParseStartupOptions(TokenizeCommandLine(c.commandLine), kFolder, &message);
    ASSERT_TRUE(options) << message;
    EXPECT_EQ(options->path, c.path);
    EXPECT_EQ(options->delimiter, c.delimiter);
    EXPECT_EQ(options->associationList.has_value(), c.hasAssociations);
    if (options->associationList) {
        EXPECT_EQ(*options->associationList, c.associations);
    }
    EXPECT_EQ(options->noConfirm, c.noConfirm);
    EXPECT_EQ(options->reportSuccess, c.reportSuccess);
    EXPECT_EQ(options->newVersion, c.newVersion);
}

INSTANTIATE_TEST_SUITE_P(
    Table, StartupOptionsAccepted,
    testing::Values(
        OptionsCase{"Empty", "", "", 0, {}, false, false, false, false},
        OptionsCase{
            "RelativePath", "a.csv", "/home/user/data/a.csv", 0, {}, false, false, false, false},
        OptionsCase{
            "DotDotPath", "../b.csv", "/home/user/b.csv", 0, {}, false, false, false, false},
        OptionsCase{"AbsolutePath", "/tmp/x.csv", "/tmp/x.csv", 0, {}, false, false, false, false},
        OptionsCase{"QuotedPathWithSpaces",
                    "\"/tmp/my files/x y.csv\"",
                    "/tmp/my files/x y.csv",
                    0,
                    {},
                    false,
                    false,
                    false,
                    false},
        OptionsCase{"QuoteInsideToken",
                    "/tmp/\"my files\"/x.csv",
                    "/tmp/my files/x.csv",
                    0,
                    {},
                    false,
                    false,
                    false,
                    false},
        OptionsCase{"SepTwoIsTab",
                    "/sep2 a.csv",
                    "/home/user/data/a.csv",
                    '\t',
                    {},
                    false,
                    false,
                    false,
                    false},
        OptionsCase{"SepOneDash",
                    "-sep1 a.csv",
                    "/home/user/data/a.csv",
                    ',',
                    {},
                    false,
                    false,
                    false,
                    false},
        OptionsCase{"SepThree", "/sep3", "", ';', {}, false, false, false, false},
        OptionsCase{"SepPlusFour", "/sep+4", "", '|', {}, false, false, false, false},
        OptionsCase{"SepEqualsIgnored",
                    "/sep=2 a.csv",
                    "/home/user/data/a.csv",
                    0,
                    {},
                    false,
                    false,
                    false,
                    false},
        OptionsCase{"SepFiveIgnored", "/sep5", "", 0, {}, false, false, false, false},
        OptionsCase{"SepAloneIgnored", "/sep", "", 0, {}, false, false, false, false},
        OptionsCase{
            "AssociationList", "/a\"csv?txt\"", "", 0, {"csv", "txt"}, true, false, false, false},
        OptionsCase{"AssociationWithSwitches",
                    "/nc /rs -a\".csv\"",
                    "",
                    0,
                    {".csv"},
                    true,
                    true,
                    true,
                    false},
        OptionsCase{"NewVersion", "/ost_new_version", "", 0, {}, false, false, false, true},
        OptionsCase{"BlankPathKept", "\"   \"", "   ", 0, {}, false, false, false, false}),
    [](const testing::TestParamInfo<OptionsCase>& param) { return param.param.name; });

struct FaultCase
{
    const char* name;
    const char* commandLine;
    const char* message;
};

class StartupOptionsRefused : public testing::TestWithParam<FaultCase>
{};

TEST_P(StartupOptionsRefused, GivesMessage)
{
    std::string message;
    auto options =
        ParseStartupOptions(TokenizeCommandLine(GetParam().commandLine), kFolder, &message);
    EXPECT_FALSE(options);
    EXPECT_EQ(message, GetParam().message);
}

const char* const kTwoFiles =
    "Only one project file may be specified on the command line.\r\n\r\nIf the project file's "
    "name contains spaces, you must enclose it in quotes.";

INSTANTIATE_TEST_SUITE_P(
    Table, StartupOptionsRefused,
    testing::Values(FaultCase{"UnknownSwitch", "/x a.csv", "Invalid command line switch:\r\n/x"},
                    FaultCase{"SwitchIsCaseExact", "/NC", "Invalid command line switch:\r\n/NC"},
                    FaultCase{"PrefixOfExactName", "/ncx", "Invalid command line switch:\r\n/ncx"},
                    FaultCase{"AssociationWithoutQuote", "/acsv",
                              "Invalid command line switch:\r\n/acsv"},
                    FaultCase{"SecondAssociation", "/a\"csv\" /a\"txt\"",
                              "Invalid command line switch:\r\n/a\"txt\""},
                    FaultCase{"TwoPaths", "a.csv b.csv", kTwoFiles},
                    FaultCase{"UnquotedSpaces", "my file.csv", kTwoFiles}),
    [](const testing::TestParamInfo<FaultCase>& param) { return param.param.name; });

TEST(TokenizeCommandLine, QuotedStretchesDoNotCut)
{
    EXPECT_EQ(TokenizeCommandLine("  /sep2\t\"a b\"c  d "),
              (std::vector<std::string>{"/sep2", "\"a b\"c", "d"}));
    EXPECT_EQ(TokenizeCommandLine("\"\""), (std::vector<std::string>{"\"\""}));
}

TEST(HasHelpSwitch, EitherSwitchCharacter)
{
    EXPECT_TRUE(HasHelpSwitch({"a.csv", "/help"}));
    EXPECT_TRUE(HasHelpSwitch({"-help"}));
    EXPECT_FALSE(HasHelpSwitch({"help"}));
    EXPECT_FALSE(HasHelpSwitch({"/helpme"}));
}

TEST(HasNonBlank, OnlySpaceTabAndNewlinesAreBlank)
{
    EXPECT_FALSE(HasNonBlank(" \t\r\n"));
    EXPECT_TRUE(HasNonBlank(" x "));
}

} // namespace
} // namespace quirnel
