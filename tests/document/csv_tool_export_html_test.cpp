#include "tests/support/temp_dir.h"
#include "tools/quirnel-csv/csv_tool.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

TEST(CsvToolExportHtml, WritesTheTableWithTheFontSizeAsked)
{
    TempDir dir;
    WriteFile(dir / "in.csv", "name,note\r\nb\xC3\xA9,<b>x</b>\r\n");
    const std::string html = (dir / "out.html").string();
    std::string out;
    std::string err;
    EXPECT_EQ(RunCsvTool({"export-html", (dir / "in.csv").string(), html, "--font-size", "9.5"},
                         out, err),
              0)
        << err;
    const std::string written = ReadFile(html);
    EXPECT_NE(written.find("align=center style=\"font-size: 9.5pt\">\r\n"), std::string::npos);
    EXPECT_NE(written.find("<td>&lt;b&gt;x&lt;/b&gt;</td>\r\n"), std::string::npos) << written;
    EXPECT_EQ(written.substr(written.size() - 10), "</table>\r\n");

    err.clear();
    EXPECT_EQ(RunCsvTool({"export-html", (dir / "in.csv").string(), html, "--font-size"}, out, err),
              2);
    EXPECT_EQ(err, "quirnel-csv: --font-size needs a size in points\n");
    err.clear();
    EXPECT_EQ(RunCsvTool({"export-html", (dir / "in.csv").string(),
                          (dir / "missing" / "out.html").string()},
                         out, err),
              2);
    EXPECT_NE(err.find("cannot be created"), std::string::npos);
}

} // namespace
} // namespace quirnel::test
