#include "ostrand/codepage/code_page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace {

using ost::CodePageConverter;

struct RoundTripCase
{
    const char* name;
    unsigned codePage;
    std::u16string text;
    /// One character of `text` and its bytes in the code page, to pin the mapping itself.
    std::u16string sample;
    std::string sampleBytes;
};

class CodePageRoundTrip : public ::testing::TestWithParam<RoundTripCase>
{};

TEST_P(CodePageRoundTrip, TextSurvivesBothWays)
{
    const RoundTripCase& c = GetParam();
    CodePageConverter converter(c.codePage);
    ASSERT_TRUE(converter.IsValid());
    // Twice over: converters remember what they learnt about characters, and the second
    // answer must match the first.
    for (int pass = 0; pass < 2; ++pass) {
        std::string bytes;
        bool replaced = true;
        ASSERT_TRUE(converter.FromUtf16(c.text, bytes, '?', &replaced));
        EXPECT_FALSE(replaced);
        std::u16string back;
        ASSERT_TRUE(converter.ToUtf16(bytes, back));
        EXPECT_EQ(back, c.text) << "pass " << pass;
    }
}

TEST_P(CodePageRoundTrip, SampleHasItsKnownBytes)
{
    const RoundTripCase& c = GetParam();
    CodePageConverter converter(c.codePage);
    // The output replaces what the buffers held.
    std::string bytes = "stale";
    std::u16string text = u"stale";
    ASSERT_TRUE(converter.FromUtf16(c.sample, bytes, '?'));
    EXPECT_EQ(bytes, c.sampleBytes);
    ASSERT_TRUE(converter.ToUtf16(c.sampleBytes, text));
    EXPECT_EQ(text, c.sample);
}

INSTANTIATE_TEST_SUITE_P(
    CodePages, CodePageRoundTrip,
    ::testing::Values(RoundTripCase{"Cyrillic1251", 1251, u"Привет, мир; a,b \"q\"", u"П", "\xCF"},
                      RoundTripCase{"Western1252", 1252, u"Grüße, café € — naïve", u"€", "\x80"},
                      RoundTripCase{"Greek1253", 1253, u"Καλημέρα κόσμε 1,5", u"Κ", "\xCA"},
                      RoundTripCase{"Japanese932", 932, u"日本語,テキスト ソ\\表", u"ソ",
                                    "\x83\x5C"},
                      RoundTripCase{"Chinese936", 936, u"中文字符 abc 汉字", u"中", "\xD6\xD0"},
                      RoundTripCase{"Korean949", 949, u"한국어 텍스트 x", u"한", "\xC7\xD1"},
                      RoundTripCase{"Chinese950", 950, u"繁體中文 許功蓋", u"中", "\xA4\xA4"},
                      RoundTripCase{"Thai874", 874, u"ภาษาไทย 123", u"ภ", "\xC0"},
                      RoundTripCase{"Utf8", 65001, u"Grüße 日本 😀", u"😀", "\xF0\x9F\x98\x80"},
                      RoundTripCase{"Jis50220", 50220, u"A日B本C", u"日", "\x1B$BF|\x1B(B"},
                      RoundTripCase{"Koi8R20866", 20866, u"Привет", u"П", "\xF0"},
                      RoundTripCase{"EucJp51932", 51932, u"丂 and 日本", u"丂", "\x8F\xB0\xA1"},
                      RoundTripCase{"Gb18030", 54936, u"中文 ø 😀", u"中", "\xD6\xD0"}),
    [](const ::testing::TestParamInfo<RoundTripCase>& param) { return param.param.name; });

struct EncodeCase
{
    const char* name;
    unsigned codePage;
    std::u16string text;
    char replacement;
    std::string bytes;
    bool replaced;
};

class CodePageEncode : public ::testing::TestWithParam<EncodeCase>
{};

TEST_P(CodePageEncode, ReplacesWhatTheCodePageLacks)
{
    const EncodeCase& c = GetParam();
    CodePageConverter converter(c.codePage);
    std::string bytes;
    bool replaced = !c.replaced;
    ASSERT_TRUE(converter.FromUtf16(c.text, bytes, c.replacement, &replaced));
    EXPECT_EQ(replaced, c.replaced);
    EXPECT_EQ(bytes, c.bytes);
    // Each conversion starts afresh, whatever state the last one ended in.
    ASSERT_TRUE(converter.FromUtf16(u"A", bytes, '?', &replaced));
    EXPECT_EQ(bytes, "A");
    EXPECT_FALSE(replaced);
}

INSTANTIATE_TEST_SUITE_P(
    Texts, CodePageEncode,
    ::testing::Values(
        // The saver converts with 08 first and looks for it to learn whether text was lost.
        EncodeCase{"GreekInto1252WithMarker", 1252, u"aΩz", '\x08', "a\x08z", true},
        EncodeCase{"GreekInto1252WithQuestionMark", 1252, u"aΩb", '?', "a?b", true},
        EncodeCase{"NothingLostInto1252", 1252, u"ab", '?', "ab", false},
        EncodeCase{"SurrogatePairIsOneReplacedCharacter", 1252, u"x😀y", '?', "x?y", true},
        EncodeCase{"StatefulReturnsToAsciiAfterReplacement", 50220, u"日😀A", '?',
                   "\x1B$BF|\x1B(B?A", true},
        EncodeCase{"SurrogatePairsIntoUtf8", ost::kCodePageUtf8, u"a\U0001F600\U00010348z", '?',
                   "a\xF0\x9F\x98\x80\xF0\x90\x8D\x88z", false},
        EncodeCase{"LoneSurrogatesIntoUtf8", ost::kCodePageUtf8, u"a\xD83Dz\xDE00", '?',
                   "a\xEF\xBF\xBDz\xEF\xBF\xBD", true}),
    [](const ::testing::TestParamInfo<EncodeCase>& param) { return param.param.name; });

TEST(CodePageConverter, DoubleByteReplacementKeepsNeighbours)
{
    CodePageConverter converter(932);
    std::string bytes;
    bool replaced = false;
    ASSERT_TRUE(converter.FromUtf16(u"日Ωй😀本", bytes, '?', &replaced));
    // Greek and Cyrillic exist in Shift-JIS; the emoji does not.
    EXPECT_TRUE(replaced);
    std::u16string back;
    converter.ToUtf16(bytes, back);
    EXPECT_EQ(back, u"日Ωй?本");
}

struct BadBytesCase
{
    const char* name;
    unsigned codePage;
    std::string bytes;
    std::u16string expected;
};

class UndecodableBytes : public ::testing::TestWithParam<BadBytesCase>
{};

TEST_P(UndecodableBytes, BecomeReplacementCharacters)
{
    const BadBytesCase& c = GetParam();
    CodePageConverter converter(c.codePage);
    std::u16string text;
    ASSERT_TRUE(converter.ToUtf16(c.bytes, text));
    EXPECT_EQ(text, c.expected);
}

INSTANTIATE_TEST_SUITE_P(
    Bytes, UndecodableBytes,
    ::testing::Values(
        BadBytesCase{"Utf8StrayContinuation", 65001,
                     "a\x80"
                     "b",
                     u"a\uFFFDb"},
        BadBytesCase{"Utf8InvalidByte", 65001,
                     "a\xFF\xFE"
                     "b",
                     u"a\uFFFD\uFFFDb"},
        BadBytesCase{"Utf8TruncatedSequenceKeepsAscii", 65001,
                     "\xE2\x82"
                     "A",
                     u"\uFFFDA"},
        BadBytesCase{"Utf8TruncatedAtEnd", 65001, "ok\xF0\x9F\x98", u"ok\uFFFD"},
        BadBytesCase{"Utf8Overlong", 65001, "\xC0\xAF", u"\uFFFD\uFFFD"},
        BadBytesCase{"Utf8EncodedSurrogate", 65001, "\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"},
        BadBytesCase{"Utf8AboveUnicode", 65001, "\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"},
        BadBytesCase{"Utf8AstralDecodesToPair", 65001, "\xF0\x9F\x98\x80", u"\U0001F600"},
        BadBytesCase{"Greek1253Hole", 1253,
                     "a\xAA"
                     "b",
                     u"a\uFFFDb"},
        BadBytesCase{"ShiftJisLeadAtEnd", 932, "x\x93", u"x\uFFFD"},
        BadBytesCase{"ShiftJisBadByteKeepsRest", 932, "\xA0\x93\xFA", u"\uFFFD日"}),
    [](const ::testing::TestParamInfo<BadBytesCase>& param) { return param.param.name; });

TEST(CodePageConverter, UnknownCodePageFailsEveryConversion)
{
    EXPECT_FALSE(ost::IsKnownCodePage(12345));
    EXPECT_EQ(ost::CodePageDisplayName(12345), "");
    CodePageConverter converter(12345);
    EXPECT_FALSE(converter.IsValid());
    EXPECT_EQ(converter.CodePage(), 12345u);
    std::u16string text = u"stale";
    EXPECT_FALSE(converter.ToUtf16("abc", text));
    EXPECT_TRUE(text.empty());
    std::string bytes = "stale";
    bool replaced = true;
    EXPECT_FALSE(converter.FromUtf16(u"abc", bytes, '?', &replaced));
    EXPECT_TRUE(bytes.empty());
    EXPECT_FALSE(replaced);
}

TEST(CodePageConverter, SystemCodePageIsUtf8UnderTheCLocale)
{
    // Test programs never call setlocale, so they run in the C locale, as CI does.
    EXPECT_EQ(ost::SystemCharset(), "UTF-8");
    EXPECT_TRUE(ost::IsKnownCodePage(ost::kCodePageSystem));
    CodePageConverter converter(ost::kCodePageSystem);
    ASSERT_TRUE(converter.IsValid());
    EXPECT_EQ(converter.CodePage(), ost::kCodePageSystem);
    std::u16string text;
    ASSERT_TRUE(converter.ToUtf16("caf\xC3\xA9", text));
    EXPECT_EQ(text, u"café");
    std::string bytes;
    ASSERT_TRUE(converter.FromUtf16(u"Ω", bytes, '?'));
    EXPECT_EQ(bytes, "\xCE\xA9");
}

TEST(CodePageConverter, EmptyInputGivesEmptyOutput)
{
    for (unsigned codePage : {65001u, 1252u, 932u, 50220u}) {
        CodePageConverter converter(codePage);
        std::u16string text = u"x";
        std::string bytes = "x";
        EXPECT_TRUE(converter.ToUtf16("", text));
        EXPECT_TRUE(converter.FromUtf16(u"", bytes, '?'));
        EXPECT_TRUE(text.empty()) << codePage;
        EXPECT_TRUE(bytes.empty()) << codePage;
    }
}

TEST(CodePageLists, OfferEightBitCodePagesOnly)
{
    std::vector<unsigned> pages = ost::AvailableCodePages();
    for (unsigned excluded : {0u, 65001u, 65000u, 1200u, 1201u, 12000u, 12001u})
        EXPECT_EQ(std::count(pages.begin(), pages.end(), excluded), 0) << excluded;
    for (unsigned wanted : {1250u, 1251u, 1252u, 932u, 936u, 949u, 950u, 874u, 437u, 850u, 866u,
                            20866u, 21866u, 28591u, 28605u, 10000u})
        EXPECT_EQ(std::count(pages.begin(), pages.end(), wanted), 1) << wanted;
    for (unsigned page : pages) {
        EXPECT_TRUE(ost::IsKnownCodePage(page)) << page;
        EXPECT_FALSE(ost::CodePageDisplayName(page).empty()) << page;
        EXPECT_TRUE(CodePageConverter(page).IsValid()) << page;
    }
    EXPECT_EQ(ost::CodePageDisplayName(1252), "Western European (Windows-1252)");
}

} // namespace
