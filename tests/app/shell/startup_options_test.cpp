#include "app/startup_options.h"

#include <gtest/gtest.h>

#include <optional>

namespace quirnel {
namespace {

const std::string kFolder = "/home/user/data";

/// Fields left out are the defaults: no path, no delimiter, no association list, switches off.
struct OptionsCase
{
    const char* name;
    const char* commandLine;
    const char* path = "";
    char delimiter = 0;
    std::optional<std::vector<std::string>> associations = std::nullopt;
    bool noConfirm = false;
    bool reportSuccess = false;
    bool newVersion = false;
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
    EXPECT_EQ(options->associationList, c.associations);
    EXPECT_EQ(options->noConfirm, c.noConfirm);
    EXPECT_EQ(options->reportSuccess, c.reportSuccess);
    EXPECT_EQ(options->newVersion, c.newVersion);
}

const char* const kInFolder = "/home/user/data/a.csv";

INSTANTIATE_TEST_SUITE_P(
    Table, StartupOptionsAccepted,
    testing::Values(
        OptionsCase{.name = "Empty", .commandLine = ""},
        OptionsCase{.name = "RelativePath", .commandLine = "a.csv", .path = kInFolder},
        OptionsCase{.name = "DotDotPath", .commandLine = "../b.csv", .path = "/home/user/b.csv"},
        OptionsCase{.name = "AbsolutePath", .commandLine = "/tmp/x.csv", .path = "/tmp/x.csv"},
        OptionsCase{.name = "QuotedPathWithSpaces",
                    .commandLine = "\"/tmp/my files/x y.csv\"",
                    .path = "/tmp/my files/x y.csv"},
        OptionsCase{.name = "QuoteInsideToken",
                    .commandLine = "/tmp/\"my files\"/x.csv",
                    .path = "/tmp/my files/x.csv"},
        OptionsCase{.name = "SepTwoIsTab",
                    .commandLine = "/sep2 a.csv",
                    .path = kInFolder,
                    .delimiter = '\t'},
        OptionsCase{.name = "SepOneDash",
                    .commandLine = "-sep1 a.csv",
                    .path = kInFolder,
                    .delimiter = ','},
        OptionsCase{.name = "SepThree", .commandLine = "/sep3", .delimiter = ';'},
        OptionsCase{.name = "SepPlusFour", .commandLine = "/sep+4", .delimiter = '|'},
        OptionsCase{.name = "SepEqualsIgnored", .commandLine = "/sep=2 a.csv", .path = kInFolder},
        OptionsCase{.name = "SepFiveIgnored", .commandLine = "/sep5"},
        OptionsCase{.name = "SepAloneIgnored", .commandLine = "/sep"},
        OptionsCase{.name = "AssociationList",
                    .commandLine = "/a\"csv?txt\"",
                    .associations = std::vector<std::string>{"csv", "txt"}},
        OptionsCase{.name = "AssociationWithSwitches",
                    .commandLine = "/nc /rs -a\".csv\"",
                    .associations = std::vector<std::string>{".csv"},
                    .noConfirm = true,
                    .reportSuccess = true},
        OptionsCase{.name = "NewVersion", .commandLine = "/ost_new_version", .newVersion = true},
        OptionsCase{.name = "BlankPathKept", .commandLine = "\"   \"", .path = "   "}),
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
