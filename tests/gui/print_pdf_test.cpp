// Prints a small table through the Print command with the real HTML viewer into a PDF file,
// the system's print dialog answered by the scripted dialogs, and reads the PDF's text back.

#include "editing/print_table.h"
#include "editing/qt/qt_html_viewer.h"
#include "tests/support/editing_doubles.h"
#include "tests/support/temp_dir.h"

#include <QApplication>
#include <QProcess>
#include <QStandardPaths>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace quirnel::test {
namespace {

TEST(PrintToPdf, PrintsTheShownCellsAndNotTheHiddenOnes)
{
    EditingFixture f;
    f.Open({"name", "secret", "amount"},
           {{"alpha", "hiddencolumn", "10"}, {"betarow", "x", "20"}, {"gamma", "y", "30"}});
    f.document.SetPath("/data/ledger.csv");
    f.document.Table().SetColumnHidden(2, true);
    f.document.Table().SetRowHidden(1, true);
    f.host.htmlViewer = [] { return std::make_unique<QtHtmlViewer>(); };
    TempDir dir;
    const std::filesystem::path pdf = dir / "out.pdf";
    const std::filesystem::path scratch = dir / "scratch";
    std::filesystem::create_directory(scratch);
    f.dialogs.Expect<PrintOptionsRequest>("PrintOptions", [](PrintOptionsRequest& request) {
        request.fontSizeUsed = true;
        request.fontSize = 11;
        return true;
    });
    f.dialogs.Expect<PrintJobRequest>("PrintSetup", [&pdf](PrintJobRequest& request) {
        EXPECT_EQ(request.title, "ledger.csv");
        request.outputFile = pdf.string();
        return true;
    });
    PrintCommand(f.context, scratch.string());

    ASSERT_TRUE(std::filesystem::exists(pdf));
    const std::string bytes = ReadFile(pdf);
    EXPECT_EQ(bytes.substr(0, 5), "%PDF-");
    EXPECT_TRUE(std::filesystem::is_empty(scratch)) << "the temporary file is removed";

    const QString pdftotext = QStandardPaths::findExecutable(QStringLiteral("pdftotext"));
    if (pdftotext.isEmpty())
        GTEST_SKIP() << "pdftotext (poppler-utils) is not installed: the PDF's text is not read";
    QProcess process;
    process.start(pdftotext, {QString::fromStdString(pdf.string()), QStringLiteral("-")});
    ASSERT_TRUE(process.waitForFinished(30000));
    const std::string text = process.readAllStandardOutput().toStdString();
    for (const char* shown : {"name", "amount", "alpha", "10", "gamma", "30"})
        EXPECT_NE(text.find(shown), std::string::npos) << shown << " missing from:\n" << text;
    for (const char* hidden : {"secret", "hiddencolumn", "betarow", "20"})
        EXPECT_EQ(text.find(hidden), std::string::npos) << hidden << " printed:\n" << text;

    // The job carries the document's title.
    QProcess info;
    info.start(QStandardPaths::findExecutable(QStringLiteral("pdfinfo")),
               {QString::fromStdString(pdf.string())});
    ASSERT_TRUE(info.waitForFinished(30000));
    EXPECT_NE(info.readAllStandardOutput().toStdString().find("ledger.csv"), std::string::npos);
}

} // namespace
} // namespace quirnel::test

int main(int argc, char** argv)
{
    // Fonts and a paint device without a display.
    ::setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
