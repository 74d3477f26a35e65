#include "document/open_nonstandard_file.h"
#include "tests/document/document_fixture.h"

#include <gtest/gtest.h>

#include <optional>

namespace quirnel {
namespace {

using test::DocumentTest;
using test::Table;

/// Answers the dialog with fixed choices, or cancels.
class ScriptedDialogs : public DocumentDialogs
{
public:
    bool OpenNonstandardFile(OpenNonstandardFileRequest& request) override
    {
        seen = request;
        if (!answer)
            return false;
        request = *answer;
        return true;
    }
    std::optional<OpenNonstandardFileRequest> answer;
    OpenNonstandardFileRequest seen;
};

class OpenNonstandardFileTest : public DocumentTest
{
protected:
    ScriptedDialogs m_dialogs;
};

TEST_F(OpenNonstandardFileTest, CancelLoadsNothing)
{
    test::WriteFile(Path(), "a\n1\n");
    EXPECT_FALSE(OpenNonstandardFile(m_document, m_dialogs, Path(), 0));
    EXPECT_FALSE(m_document.FileOpen());
}

TEST_F(OpenNonstandardFileTest, ChoicesShapeTheLoad)
{
    test::WriteFile(Path(), "#c\n1|caf\xE9\n");
    OpenNonstandardFileRequest answer = MakeNonstandardRequest(0);
    answer.noColumnNames = true;
    answer.separator = '|';
    answer.useCharacterSet = true;
    answer.codePage = 1252;
    answer.ignoreComments = true;
    m_dialogs.answer = answer;
    ASSERT_TRUE(OpenNonstandardFile(m_document, m_dialogs, Path(), 0));
    EXPECT_EQ((Table{{"A", "B"}, {"1", "caf\xC3\xA9"}}), Contents());
    EXPECT_EQ(1252u, m_document.Format().codePage);
}

TEST_F(OpenNonstandardFileTest, FailuresCarryTheDialogTitle)
{
    test::WriteFile(Path(), "\xFF\xFE");
    m_dialogs.answer = MakeNonstandardRequest(0);
    m_ui.Expect("Open Nonstandard File",
                "The file is in unicode.  Sorry, unicode is not yet supported.");
    EXPECT_FALSE(OpenNonstandardFile(m_document, m_dialogs, Path(), 0));
}

TEST(MakeNonstandardRequest, PreselectsRememberedCodePageOnlyWhenSpecial)
{
    EXPECT_FALSE(MakeNonstandardRequest(0).useCharacterSet);
    EXPECT_FALSE(MakeNonstandardRequest(65001).useCharacterSet);
    const OpenNonstandardFileRequest request = MakeNonstandardRequest(1251);
    EXPECT_TRUE(request.useCharacterSet);
    EXPECT_EQ(1251u, request.codePage);
    EXPECT_EQ(65001u, request.codePages.front());
    EXPECT_EQ(kSeparatorAuto, request.separator);
}

TEST(FormatFromRequest, UncheckedCharacterSetIsSystemCodePage)
{
    OpenNonstandardFileRequest request = MakeNonstandardRequest(1251);
    request.useCharacterSet = false;
    EXPECT_EQ(0u, FormatFromRequest(request, "/x.csv").codePage);
    EXPECT_EQ("/x.csv", FormatFromRequest(request, "/x.csv").path);
}

} // namespace
} // namespace quirnel
