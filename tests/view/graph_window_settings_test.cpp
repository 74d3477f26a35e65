#include "tests/support/temp_dir.h"
#include "view/graph_window_settings.h"

#include <gtest/gtest.h>

namespace quirnel {
namespace {

TEST(GraphWindowSettings, FileRoundTripsEveryValue)
{
    test::TempDir dir;
    GraphWindowSettings out;
    out.horizontalLines = false;
    out.verticalLines = true;
    out.style = kGraphStyleRibbon;
    out.hasPosition = true;
    out.left = -20;
    out.top = 35;
    out.width = 590;
    out.height = 440;
    ASSERT_TRUE(SaveGraphWindowSettings(out, dir / "graph.xml"));
    const GraphWindowSettings in = LoadGraphWindowSettings(dir / "graph.xml");
    EXPECT_FALSE(in.horizontalLines);
    EXPECT_TRUE(in.verticalLines);
    EXPECT_EQ(in.style, kGraphStyleRibbon);
    EXPECT_TRUE(in.hasPosition);
    EXPECT_EQ(in.left, -20);
    EXPECT_EQ(in.top, 35);
    EXPECT_EQ(in.width, 590);
    EXPECT_EQ(in.height, 440);
    EXPECT_EQ(dir.Entries(), std::vector<std::string>{"graph.xml"});
}

TEST(GraphWindowSettings, DamagedOrMissingFilesGiveDefaultsForWhatIsBroken)
{
    test::TempDir dir;
    const GraphWindowSettings missing = LoadGraphWindowSettings(dir / "graph.xml");
    EXPECT_TRUE(missing.horizontalLines);
    EXPECT_FALSE(missing.hasPosition);

    const char* const damaged[] = {
        "",
        "\xff\xfe<<<<",
        "<GraphNode><Setting name=\"Style\" value=\"Ribbon",
        "<Setting name=DrawHorizontalLines value=0/>",
        "<Setting name=\"WindowPosition\" value=\"1,2,0,4\"/>",
        "<Setting name=\"WindowPosition\" value=\"1,2,3\"/>",
        "<Setting name=\"WindowPosition\" value=\"1,2,99999999999,4\"/>",
        "<Setting name=\"DrawHorizontalLines\" value=\"maybe\"/>",
        "<Setting value=\"Ribbon\"/><Setting name=\"Style\"",
    };
    for (const char* text : damaged) {
        SCOPED_TRACE(text);
        test::WriteFile(dir / "graph.xml", text);
        const GraphWindowSettings s = LoadGraphWindowSettings(dir / "graph.xml");
        EXPECT_TRUE(s.horizontalLines);
        EXPECT_EQ(s.style, kGraphStyleLine);
        EXPECT_FALSE(s.hasPosition);
    }

    // Good entries survive their broken neighbours.
    test::WriteFile(dir / "graph.xml",
                    "<GraphNode><Setting name=\"Style\" value=\"Ribbon\"/><Setting name="
                    "\"WindowPosition\" value=\"x\"/><Setting  name = 'DrawVerticalLines' "
                    "value='1' /></Graph");
    const GraphWindowSettings mixed = LoadGraphWindowSettings(dir / "graph.xml");
    EXPECT_EQ(mixed.style, kGraphStyleRibbon);
    EXPECT_TRUE(mixed.verticalLines);
    EXPECT_FALSE(mixed.hasPosition);
}

TEST(GraphWindowSettings, SavingIntoAMissingFolderFailsWithoutLeavingFiles)
{
    test::TempDir dir;
    EXPECT_FALSE(SaveGraphWindowSettings(GraphWindowSettings(), dir / "gone" / "graph.xml"));
    EXPECT_TRUE(dir.Entries().empty());
}

} // namespace
} // namespace quirnel
