#include "editing/print_table.h"
#include "tests/support/editing_doubles.h"
#include "tests/support/temp_dir.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace quirnel::test {
namespace {

/// Records what printing asked of the viewer; loads after `loadingPolls` polls.
struct FakeViewer : HtmlViewer
{
    struct Log
    {
        std::string path;
        std::string html;
        int polls = 0;
        int waits = 0;
        std::vector<PrintJobRequest> jobs;
        bool released = false;
    };
    explicit FakeViewer(Log& record) : log(record) {}
    ~FakeViewer() override { log.released = true; }
    bool Open(const std::string& path) override
    {
        log.path = path;
        log.html = ReadFile(path);
        return opens;
    }
    int ReadyState() override { return ++log.polls > loadingPolls ? kViewerComplete : 3; }
    void Wait(int milliseconds) override
    {
        EXPECT_EQ(milliseconds, 50);
        ++log.waits;
    }
    bool Print(const PrintJobRequest& job) override
    {
        log.jobs.push_back(job);
        return true;
    }
    Log& log;
    bool opens = true;
    int loadingPolls = 2;
};

class PrintTable : public ::testing::Test, public EditingFixture
{
protected:
    void SetUp() override
    {
        Open({"a", "b"}, {{"1", "x"}, {"2", "y"}});
        document.SetPath((dir / "sales.csv").string());
        host.htmlViewer = [this] { return std::make_unique<FakeViewer>(log); };
    }
    void AnswerOptions(bool used, double size)
    {
        dialogs.Expect<PrintOptionsRequest>("PrintOptions", [=](PrintOptionsRequest& request) {
            request.fontSizeUsed = used;
            request.fontSize = size;
            return true;
        });
    }
    void AnswerPrintDialog(bool print)
    {
        dialogs.Expect<PrintJobRequest>("PrintSetup", [print](PrintJobRequest& request) {
            EXPECT_EQ(request.title, "sales.csv");
            request.outputFile = "/tmp/out.pdf";
            return print;
        });
    }
    FakeViewer::Log log;
    TempDir dir;
};

TEST_F(PrintTable, WritesTheTableLoadsItAndPrintsUnderTheDocumentsTitle)
{
    AnswerOptions(true, 10.5);
    AnswerPrintDialog(true);
    PrintCommand(context, dir.Path().string());
    EXPECT_NE(log.html.find("align=center style=\"font-size: 10.5pt\">\r\n"), std::string::npos);
    EXPECT_NE(log.html.find("<td>x</td>"), std::string::npos);
    // Polled every 50 ms until complete, under the progress window.
    EXPECT_EQ(log.polls, 3);
    EXPECT_EQ(log.waits, 2);
    EXPECT_EQ(ui.ProgressTexts(), std::vector<std::string>{"Loading file..."});
    EXPECT_FALSE(ui.ProgressOpen());
    ASSERT_EQ(log.jobs.size(), 1u);
    EXPECT_EQ(log.jobs[0].title, "sales.csv");
    EXPECT_EQ(log.jobs[0].outputFile, "/tmp/out.pdf");
    EXPECT_TRUE(log.released);
    // The temporary file is gone, the choices remembered, the table untouched.
    EXPECT_FALSE(std::filesystem::exists(log.path));
    EXPECT_TRUE(prefs.printSizeUsed);
    EXPECT_EQ(prefs.printSize, 10.5);
    EXPECT_FALSE(document.Modified());
}

TEST_F(PrintTable, WithoutTheFontSizeOptionNoStyleAtAll)
{
    prefs.printSize = 12;
    AnswerOptions(false, 12);
    AnswerPrintDialog(true);
    PrintCommand(context, dir.Path().string());
    EXPECT_NE(log.html.find("align=center>\r\n"), std::string::npos);
    EXPECT_EQ(log.html.find("style=\"font-size: 12"), std::string::npos);
    EXPECT_FALSE(prefs.printSizeUsed);
    EXPECT_EQ(prefs.printSize, 12);
}

TEST_F(PrintTable, OptionsDialogStartsFromTheRememberedOptions)
{
    prefs.printSizeUsed = true;
    prefs.printSize = 14.5;
    dialogs.Expect<PrintOptionsRequest>("PrintOptions", [](PrintOptionsRequest& request) {
        EXPECT_TRUE(request.fontSizeUsed);
        EXPECT_EQ(request.fontSize, 14.5);
        request.fontSizeUsed = false;
        return false;
    });
    PrintCommand(context, dir.Path().string());
    EXPECT_TRUE(prefs.printSizeUsed) << "Cancel keeps the options as they were";
    EXPECT_TRUE(dir.Entries().empty());
}

TEST_F(PrintTable, CancelledLoadOrDialogPrintsNothingAndCleansUp)
{
    AnswerOptions(false, 10);
    ui.CancelProgressAt(1);
    PrintCommand(context, dir.Path().string());
    EXPECT_TRUE(log.jobs.empty());
    EXPECT_TRUE(log.released);
    EXPECT_FALSE(ui.ProgressOpen());
    EXPECT_TRUE(dir.Entries().empty());

    ui.CancelProgressAt(0);
    AnswerOptions(false, 10);
    AnswerPrintDialog(false);
    PrintCommand(context, dir.Path().string());
    EXPECT_TRUE(log.jobs.empty());
    EXPECT_TRUE(dir.Entries().empty());
}

TEST_F(PrintTable, FailuresAreToldWithTheirOwnMessages)
{
    AnswerOptions(false, 10);
    ui.Expect("Print", "Failed to create temporary file.");
    PrintCommand(context, (dir / "no such folder").string());

    AnswerOptions(false, 10);
    host.htmlViewer = [this] {
        auto viewer = std::make_unique<FakeViewer>(log);
        viewer->opens = false;
        return viewer;
    };
    ui.Expect("Print", "Failed to open temporary file into browser.");
    PrintCommand(context, dir.Path().string());
    EXPECT_TRUE(dir.Entries().empty());

    AnswerOptions(false, 10);
    host.htmlViewer = nullptr;
    ui.Expect("Print", "Failed to open temporary file into browser.");
    PrintCommand(context, dir.Path().string());
}

TEST(PrintTableNoFile, AsksForAFileFirst)
{
    EditingFixture f;
    f.ui.Expect("Print", "You must first open a file.");
    PrintCommand(f.context);
}

TEST(DocumentTitle, IsTheFileNameOrNewFile)
{
    EditingFixture f;
    EXPECT_EQ(DocumentTitle(f.document), "New file");
    f.document.SetPath("/home/u/data/t\xC3\xA4"
                       "ble.csv");
    EXPECT_EQ(DocumentTitle(f.document), "t\xC3\xA4"
                                         "ble.csv");
}

} // namespace
} // namespace quirnel::test
