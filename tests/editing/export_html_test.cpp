#include "editing/export_html.h"
#include "tests/support/editing_doubles.h"
#include "tests/support/temp_dir.h"
#include "view/html_table_writer.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

class ExportHtml : public ::testing::Test, public EditingFixture
{
protected:
    void SetUp() override { Open({"a", "b"}, {{"1", "x<y"}, {"2", "two\nlines"}}); }

    void Answer(bool toFile, std::string path)
    {
        dialogs.Expect<ExportHtmlRequest>("ExportHtml", [=, this](ExportHtmlRequest& request) {
            seen = request;
            request.toFile = toFile;
            request.path = path;
            return true;
        });
    }
    ExportHtmlRequest seen;
    TempDir dir;
};

TEST_F(ExportHtml, FileExportReportsSizeAndLinesAndOffersToOpenIt)
{
    const std::string path = (dir / "out.html").string();
    Answer(true, path);
    // 7 lines of head, 4 per row, 1 for the break inside a cell, 1 closing.
    ui.Expect("Export to HTML", "Export succeeded.\r\n\r\nSize: 330 bytes\r\nLines: 17",
              ost::kFirstExtraButtonId);
    ExportToHtmlCommand(context);
    const std::string written = ReadFile(path);
    EXPECT_EQ(written, HtmlTable(document.Table(), {}));
    EXPECT_EQ(written.size(), 330u);
    ASSERT_EQ(ui.Shown().size(), 1u);
    ASSERT_EQ(ui.Shown()[0].extraButtons.size(), 1u);
    EXPECT_EQ(ui.Shown()[0].extraButtons[0].caption, "Open File");
    EXPECT_EQ(ui.Shown()[0].extraButtons[0].tip, "Open the export file that was just created.");
    EXPECT_EQ(host.opened, std::vector<std::string>{path});
    // Remembered for next time; the table itself is untouched.
    EXPECT_TRUE(prefs.exportHtmlTo);
    EXPECT_EQ(prefs.exportHtmlFilepath, std::u16string(path.begin(), path.end()));
    EXPECT_FALSE(document.Modified());
    EXPECT_GE(host.commits, 1);
}

TEST_F(ExportHtml, DialogStartsFromTheRememberedChoice)
{
    prefs.exportHtmlTo = false;
    prefs.exportHtmlFilepath = u"/tmp/t\u00e4ble.html";
    dialogs.Expect<ExportHtmlRequest>("ExportHtml", [](ExportHtmlRequest& request) {
        EXPECT_FALSE(request.toFile);
        EXPECT_EQ(request.path, "/tmp/t\xC3\xA4"
                                "ble.html");
        request.toFile = true;
        return false;
    });
    ExportToHtmlCommand(context);
    EXPECT_FALSE(prefs.exportHtmlTo) << "a cancelled dialog keeps nothing";
}

TEST_F(ExportHtml, ClipboardGetsTheFragmentAsTextAndHtml)
{
    document.Table().SetRowHidden(1, true);
    Answer(false, "");
    ExportToHtmlCommand(context);
    const std::string html = HtmlTable(document.Table(), {});
    EXPECT_EQ(clipboard.formats["text/plain"], html);
    EXPECT_EQ(clipboard.formats["text/html"], html);
    EXPECT_EQ(html.find("two"), std::string::npos);
    EXPECT_FALSE(prefs.exportHtmlTo);
}

TEST_F(ExportHtml, FailuresAreToldAndNothingIsOpened)
{
    Answer(true, (dir / "missing" / "out.html").string());
    ui.Expect("Error", "Failed to create file.\r\n\r\nNo such file or directory");
    ExportToHtmlCommand(context);

    Answer(true, "");
    ui.Expect("Export to HTML", "Please enter the path of the file to export to.");
    ExportToHtmlCommand(context);

    const std::string path = (dir / "out.html").string();
    Answer(true, path);
    ui.Expect("Export to HTML", "Export succeeded.\r\n\r\nSize: 330 bytes\r\nLines: 17",
              ost::kFirstExtraButtonId);
    host.openSucceeds = false;
    ui.Expect("Export to HTML", "No program could be found to open the file.");
    ExportToHtmlCommand(context);
}

TEST(ExportHtmlEmpty, NeedsRows)
{
    EditingFixture f;
    f.Open({"a"}, {});
    f.ui.Expect("Export to HTML", "This tool cannot run on an empty table.");
    ExportToHtmlCommand(f.context);
}

TEST(ExportSucceededText, UsesTheByteSizeForm)
{
    EXPECT_EQ(ExportSucceededText(3174, 12), "Export succeeded.\r\n\r\nSize: 3.10 KB\r\nLines: 12");
}

} // namespace
} // namespace quirnel::test
