#include "tests/view/table_test_util.h"
#include "view/html_table_writer.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

constexpr const char* kTableTag =
    "<table width=\"100%\" cellpadding=2 cellspacing=0 rules=all border=2 frame=box align=center";

class HtmlTableWriter : public ::testing::Test
{
protected:
    /// Two shown columns (one named beyond ASCII), a hidden third column and a hidden row.
    void SetUp() override
    {
        Fill(table,
             {"Name",
              "Gr\xC3\xB6\xC3\x9F"
              "e",
              "Secret"},
             {{"a", "two\nlines", "s0"}, {"h", "hidden", "s1"}, {"x  y", "\xC3\xA9", "s2"}});
        table.MutableColumn(1).width = 80;
        table.MutableColumn(2).width = 120;
        table.SetColumnHidden(3, true);
        table.SetRowHidden(1, true);
        options.codePage = 65001;
    }
    TableControl table;
    HtmlTableOptions options;
};

TEST_F(HtmlTableWriter, SmallTableExactBytes)
{
    const std::string body = "<col width=\"80*\">\r\n"
                             "<col width=\"120*\">\r\n"
                             "<thead style=\"font-weight: bold; font-size: 1.1em\"><tr>\r\n"
                             "<td>Name</td>\r\n"
                             "<td>Gr&#246;&#223;e</td>\r\n"
                             "</tr></thead>\r\n"
                             "<tr>\r\n"
                             "<td>a</td>\r\n"
                             "<td>two<br>\r\nlines</td>\r\n"
                             "</tr>\r\n"
                             "<tr>\r\n"
                             "<td>x&nbsp;&nbsp;y</td>\r\n"
                             "<td>&#233;</td>\r\n"
                             "</tr>\r\n"
                             "</table>\r\n";
    EXPECT_EQ(HtmlTable(table, options), std::string(kTableTag) + ">\r\n" + body);
    options.fontSize = 10.5;
    EXPECT_EQ(HtmlTable(table, options),
              std::string(kTableTag) + " style=\"font-size: 10.5pt\">\r\n" + body);
}

TEST_F(HtmlTableWriter, FontSizeInItsShortestForm)
{
    const struct
    {
        double size;
        const char* style;
    } cases[] = {{12, " style=\"font-size: 12pt\">"},
                 {4.5, " style=\"font-size: 4.5pt\">"},
                 {99, " style=\"font-size: 99pt\">"},
                 {0.1, " style=\"font-size: 0.1pt\">"},
                 {0, ">"},
                 {-3, ">"}};
    for (const auto& c : cases) {
        options.fontSize = c.size;
        const std::string html = HtmlTable(table, options);
        EXPECT_EQ(html.substr(0, html.find("\r\n")), std::string(kTableTag) + c.style) << c.size;
    }
}

TEST(HtmlText, CellsCannotBecomeMarkup)
{
    const struct
    {
        std::u16string text;
        const char* html;
    } cases[] = {
        {u"<script>alert('x')</script>", "&lt;script&gt;alert(&#39;x&#39;)&lt;/script&gt;"},
        {u"a & b \"q\"", "a &amp; b &quot;q&quot;"},
        {u"&amp;", "&amp;amp;"},
        {u"]]>", "]]&gt;"},
        // Line ends of every kind become one break each.
        {u"1\r\n2\n3\r4", "1<br>\r\n2<br>\r\n3<br>\r\n4"},
        // Spaces a browser would fold or drop are kept; a lone inner one may wrap.
        {u" a b  c ", "&nbsp;a b&nbsp;&nbsp;c&nbsp;"},
        {u"x \ny", "x&nbsp;<br>\r\ny"},
        {u"\u20ac \U0001F600", "&#8364; &#128512;"},
        {u"bad \xD800!", "bad &#65533;!"},
    };
    for (const auto& c : cases) {
        std::string out;
        AppendHtmlText(c.text, out);
        EXPECT_EQ(out, c.html);
    }
}

TEST(HtmlText, EightBitAndWideCellsEscapeAlike)
{
    // The 8-bit path copies runs of plain bytes; it must agree with the general escaper on
    // every mix of specials, spaces and line ends.
    const char alphabet[] = {'a', ' ', ' ', '\r', '\n', '<', '&', '"', '\'', '\t', 'z'};
    std::uint32_t seed = 7;
    for (int round = 0; round < 2000; ++round) {
        std::string text;
        const int length = static_cast<int>(seed % 9);
        for (int i = 0; i < length; ++i) {
            seed = seed * 1664525u + 1013904223u;
            text.push_back(alphabet[(seed >> 16) % sizeof alphabet]);
        }
        seed = seed * 1664525u + 1013904223u;
        TableControl eight;
        Fill(eight, {"c"}, {{text.c_str()}});
        TableControl wide;
        Fill(wide, {"c"}, {{""}});
        wide.SetCellText16(0, 1, std::u16string(text.begin(), text.end()));
        ASSERT_EQ(HtmlTable(eight, {}), HtmlTable(wide, {})) << "cell: " << text;
    }
}

TEST(HtmlText, EightBitCellsAreReadInTheirCodePage)
{
    TableControl table;
    Fill(table, {"\xE9t\xE9"}, {{"caf\xE9 \x80"}, {"ok"}});
    HtmlTableOptions options;
    options.codePage = 1252;
    const std::string html = HtmlTable(table, options);
    EXPECT_NE(html.find("<td>&#233;t&#233;</td>"), std::string::npos) << html;
    EXPECT_NE(html.find("<td>caf&#233; &#8364;</td>"), std::string::npos) << html;

    // Bytes that are no UTF-8 become one replacement character each.
    options.codePage = 65001;
    std::string out;
    AppendHtmlTextUtf8("a\xFF"
                       "b\xC3",
                       out);
    EXPECT_EQ(out, "a&#65533;b&#65533;");
}

TEST(HtmlText, OutputIsSevenBitWhateverTheCells)
{
    TableControl table;
    TableColumn column;
    column.wide = true;
    column.headerTextWide = u"\u540d\u524d";
    table.AddColumn(column);
    table.SetRowCount(1);
    table.SetCellText16(0, 1, u"\u00fc\u00df\U0001F600\u0000x");
    const std::string html = HtmlTable(table, {});
    for (char c : html)
        EXPECT_LT(static_cast<unsigned char>(c), 0x80u);
    EXPECT_NE(html.find("<td>&#21517;&#21069;</td>"), std::string::npos);
}

TEST(HtmlTableWriterEdges, OnlyTheIndexColumnGivesEmptyHeaderAndRows)
{
    TableControl table;
    table.SetRowCount(2);
    EXPECT_EQ(HtmlTable(table, {}), std::string(kTableTag) +
                                        ">\r\n"
                                        "<thead style=\"font-weight: bold; font-size: 1.1em\">"
                                        "<tr>\r\n</tr></thead>\r\n"
                                        "<tr>\r\n</tr>\r\n<tr>\r\n</tr>\r\n</table>\r\n");
}

TEST(HtmlTableWriterEdges, RowsFollowTheOrderShownAndAFailingSinkStops)
{
    TableControl table;
    Fill(table, {"n"}, {{"2"}, {"1"}, {"3"}});
    table.SetColumnSortMethod(1, kSortNumeric);
    table.SetSort(1, true);
    const std::string html = HtmlTable(table, {});
    EXPECT_LT(html.find("<td>1</td>"), html.find("<td>2</td>"));
    EXPECT_LT(html.find("<td>2</td>"), html.find("<td>3</td>"));
    int calls = 0;
    EXPECT_FALSE(WriteHtmlTable(table, {}, [&calls](std::string_view) {
        ++calls;
        return false;
    }));
    EXPECT_EQ(calls, 1);
}

} // namespace
} // namespace quirnel::test
