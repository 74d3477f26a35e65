#include "ostrand/core/string.h"

#include <gtest/gtest.h>

namespace {

using ost::String;

TEST(StringCheck, CodesFollowTheirOrder)
{
    char16_t buffer[4] = {u'a', 0, 0, 0};
    EXPECT_EQ(0, String::CheckRaw(nullptr, 0, 0));
    EXPECT_EQ(0, String::CheckRaw(buffer, 2, 8));
    EXPECT_EQ(1, String::CheckRaw(buffer, -2, 8));
    // Both lengths negative: the used length is checked first.
    EXPECT_EQ(1, String::CheckRaw(nullptr, -2, -2));
    EXPECT_EQ(2, String::CheckRaw(buffer, 2, -8));
    EXPECT_EQ(3, String::CheckRaw(nullptr, 2, 0));
    EXPECT_EQ(4, String::CheckRaw(nullptr, 0, 2));
    // No room for the terminator comes before a missing terminator.
    EXPECT_EQ(5, String::CheckRaw(buffer, 8, 8));
    EXPECT_EQ(5, String::CheckRaw(buffer, 6, 6));
    EXPECT_EQ(5, String::CheckRaw(buffer, 4, 4));
    buffer[1] = u'b';
    EXPECT_EQ(6, String::CheckRaw(buffer, 2, 8));
}

TEST(String, EmptyWithoutBufferReadsAsEmpty)
{
    String empty;
    EXPECT_EQ(0, empty.Check());
    EXPECT_EQ(0, empty.Length());
    EXPECT_EQ(std::u16string_view(u""), empty.View());
    EXPECT_EQ(u'\0', empty.Data()[0]);
}

TEST(String, GrowsAndStaysSound)
{
    String text(u"ab");
    for (int i = 0; i < 1000; ++i)
        text += u"xyz";
    EXPECT_EQ(3002, text.Length());
    EXPECT_EQ(0, text.Check());
    EXPECT_EQ(u'z', text[3001]);
    String copy = text;
    EXPECT_TRUE(copy == text);
    String moved = std::move(copy);
    EXPECT_EQ(0, copy.Check());
    EXPECT_EQ(3002, moved.Length());
}

TEST(String, Utf8RoundTripIncludingSurrogatePairs)
{
    const std::string utf8 = "caf\xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80";
    const String text = String::FromUtf8(utf8);
    EXPECT_EQ(9, text.Length());
    EXPECT_EQ(utf8, text.ToUtf8());
}

TEST(String, MalformedUtf8BecomesReplacementCharacters)
{
    EXPECT_EQ(u"a\uFFFDb", ost::Utf8ToUtf16("a\xFF"
                                            "b"));
    // A cut-off sequence gives one replacement per byte, so no byte goes unnoticed.
    EXPECT_EQ(u"\uFFFD\uFFFD", ost::Utf8ToUtf16("\xE2\x82"));
    EXPECT_EQ(u"\uFFFD\uFFFD", ost::Utf8ToUtf16("\xC0\xAF"));
}

TEST(StringDeathTest, CheckingVariantReportsTheDamage)
{
    EXPECT_DEATH(String::ReportDamage(5, 4, 4),
                 "Damaged String \\(5\\):\r\nused length=4\r\nallocated length=4");
}

TEST(StringDeathTest, IndexPastTheEndIsFatal)
{
    String text(u"ab");
    EXPECT_DEATH((void)text[2], "String\\[2\\]");
}

} // namespace
