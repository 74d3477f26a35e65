#include "editing/text_matcher.h"
#include "editing/unicode_chars.h"

#include <gtest/gtest.h>

namespace quirnel::test {
namespace {

/// Where the first match starts and how long it is, in both cell widths; {-1, 0} for none.
struct Found
{
    long start = -1;
    long length = 0;
    bool operator==(const Found&) const = default;
};

std::ostream& operator<<(std::ostream& out, const Found& found)
{
    return out << "{" << found.start << ", " << found.length << "}";
}

Found In8(const TextMatcher& matcher, std::string_view cell, std::size_t from = 0)
{
    const auto match = matcher.Find(cell, from);
    return match ? Found{static_cast<long>(match->start), static_cast<long>(match->length)}
                 : Found{};
}

Found In16(const TextMatcher& matcher, std::u16string_view cell, std::size_t from = 0)
{
    const auto match = matcher.Find(cell, from);
    return match ? Found{static_cast<long>(match->start), static_cast<long>(match->length)}
                 : Found{};
}

TextMatcher Pattern(std::u16string_view text, unsigned flags)
{
    return TextMatcher::FromUtf16(text, flags);
}

TEST(TextMatcher, IgnoringCaseWorksBeyondAsciiInBothWidths)
{
    const TextMatcher accent = Pattern(u"É", kMatchIgnoreCase);
    EXPECT_EQ(In8(accent, "caf\xC3\xA9"), (Found{3, 2}));
    EXPECT_EQ(In16(accent, u"café"), (Found{3, 1}));
    const TextMatcher sigma = Pattern(u"ΣΟΦΟΣ", kMatchIgnoreCase);
    EXPECT_EQ(In16(sigma, u"ο σοφος"), (Found{2, 5})); // final sigma folds with the others
    EXPECT_EQ(In16(Pattern(u"жар", kMatchIgnoreCase), u"ЖАР"), (Found{0, 3}));
    // Characters outside ASCII that fold into it are found from an ASCII pattern.
    EXPECT_EQ(In8(Pattern(u"sk", kMatchIgnoreCase), "x\xC5\xBF\xE2\x84\xAA"), (Found{1, 5}));
    EXPECT_EQ(In16(Pattern(u"SK", kMatchIgnoreCase), u"ſ\u212A"), (Found{0, 2}));
    // Case counts when asked to, in both widths.
    EXPECT_EQ(In8(Pattern(u"É", 0), "caf\xC3\xA9"), Found{});
    EXPECT_EQ(In16(Pattern(u"É", 0), u"café"), Found{});
    EXPECT_EQ(In16(Pattern(u"é", 0), u"café"), (Found{3, 1}));
}

TEST(TextMatcher, WholeWordKnowsLettersAndDigitsBeyondAscii)
{
    const unsigned whole = kMatchWholeWord;
    EXPECT_EQ(In8(Pattern(u"caf", whole), "caf\xC3\xA9"), Found{});
    EXPECT_EQ(In16(Pattern(u"caf", whole), u"café"), Found{});
    EXPECT_EQ(In16(Pattern(u"fé", whole), u"café"), Found{});
    EXPECT_EQ(In16(Pattern(u"café", whole), u"un café."), (Found{3, 4}));
    EXPECT_EQ(In16(Pattern(u"(x)", whole), u"(x)"), (Found{0, 3}));
    EXPECT_EQ(In16(Pattern(u"x", whole), u"_x x1 x"), (Found{6, 1}));
    EXPECT_EQ(In16(Pattern(u"x", whole), u"中x"), Found{});
    EXPECT_EQ(In16(Pattern(u"x", whole), u"٣x"), Found{}); // an Arabic-Indic digit
    // A match that is no word is skipped for a later one in the same cell.
    EXPECT_EQ(In8(Pattern(u"ab", whole | kMatchIgnoreCase), "abc AB"), (Found{4, 2}));
    EXPECT_EQ(In8(Pattern(u"ab", whole), "abc ab"), (Found{4, 2}));
    // Emoji are not letters.
    EXPECT_EQ(In16(Pattern(u"x", whole), u"😀x😀"), (Found{2, 1}));
}

TEST(TextMatcher, OffsetsCountCodeUnitsOfTheCell)
{
    const TextMatcher x = Pattern(u"x", kMatchIgnoreCase);
    EXPECT_EQ(In8(x, "\xF0\x9F\x98\x80X"), (Found{4, 1}));
    EXPECT_EQ(In16(x, u"😀X"), (Found{2, 1}));
    EXPECT_EQ(In8(x, "x_x", 1), (Found{2, 1}));
    EXPECT_EQ(Utf16Offset(ByteCharset(), "\xF0\x9F\x98\x80\xC3\xA9X", 6), 3u);
}

TEST(TextMatcher, WildcardsMatchCharactersNotUnits)
{
    const unsigned any = kMatchAnyChar | kMatchAnyRun;
    EXPECT_EQ(In8(Pattern(u"c?t", any), "c\xC3\xA9t"), (Found{0, 4}));
    EXPECT_EQ(In16(Pattern(u"c?t", any), u"c😀t"), (Found{0, 4}));
    // "*" takes the shortest run that makes a match.
    EXPECT_EQ(In8(Pattern(u"a*c", any), "xabcbc"), (Found{1, 3}));
    EXPECT_EQ(In8(Pattern(u"a*c", any), "a"), Found{});
    EXPECT_EQ(In8(Pattern(u"a*b*c", any), "a-b-b-c"), (Found{0, 7}));
    // ...unless the word test wants it longer.
    EXPECT_EQ(In8(Pattern(u"a*c", any | kMatchWholeWord), "acx ac"), (Found{0, 6}));
    // Switched off, they are plain characters.
    EXPECT_EQ(In8(Pattern(u"a?", 0), "ab a?"), (Found{3, 2}));
    EXPECT_EQ(In8(Pattern(u"a*", kMatchIgnoreCase), "ab A*"), (Found{3, 2}));
}

TEST(TextMatcher, FindLastTakesTheLastMatchStartingBeforeTheLimit)
{
    const TextMatcher ab = Pattern(u"ab", kMatchIgnoreCase);
    const auto last = [&](std::string_view cell, std::size_t before) {
        const auto match = ab.FindLast(cell, before);
        return match ? static_cast<long>(match->start) : -1L;
    };
    EXPECT_EQ(last("abAB ab", std::string_view::npos), 5);
    EXPECT_EQ(last("abAB ab", 5), 2);
    EXPECT_EQ(last("abAB ab", 2), 0);
    EXPECT_EQ(last("abAB ab", 0), -1);
    const auto wide = Pattern(u"?", kMatchAnyChar).FindLast(std::u16string_view(u"a😀"), 99);
    ASSERT_TRUE(wide);
    EXPECT_EQ(wide->start, 1u);
    EXPECT_EQ(wide->length, 2u);
    const auto narrow = Pattern(u"?", kMatchAnyChar).FindLast(std::string_view("a\xC3\xA9"), 99);
    ASSERT_TRUE(narrow);
    EXPECT_EQ(narrow->start, 1u);
    EXPECT_EQ(narrow->length, 2u);
}

TEST(TextMatcher, EmptyPatternsAndBrokenTextFindNothingAndNeverFail)
{
    EXPECT_TRUE(Pattern(u"", 0).Empty());
    EXPECT_EQ(In8(Pattern(u"", kMatchIgnoreCase), "abc"), Found{});
    // Bytes that are no UTF-8 and lone surrogates read as replacement characters.
    EXPECT_EQ(In8(Pattern(u"b", kMatchIgnoreCase | kMatchWholeWord), "\xE2\x82 b\xFF"),
              (Found{3, 1}));
    const char16_t lone[] = {u'a', 0xD800, u'B', 0xDC00, 0};
    EXPECT_EQ(In16(Pattern(u"b", kMatchIgnoreCase | kMatchWholeWord), lone), (Found{2, 1}));
    EXPECT_EQ(In8(Pattern(u"é", kMatchIgnoreCase), "\xC3"), Found{});
}

TEST(TextMatcher, SingleByteCodePagesReadThroughTheirTable)
{
    const ByteCharset western = ByteCharset::ForCodePage(1252);
    ASSERT_FALSE(western.IsUtf8());
    const TextMatcher accent = TextMatcher::FromUtf16(u"É", kMatchIgnoreCase, western);
    EXPECT_EQ(In8(accent, "caf\xE9"), (Found{3, 1}));
    const TextMatcher word = TextMatcher::FromUtf16(u"caf", kMatchWholeWord, western);
    EXPECT_EQ(In8(word, "caf\xE9 caf"), (Found{5, 3}));
    std::string bytes;
    EXPECT_FALSE(western.Encode(U"a中", bytes));
    EXPECT_EQ(bytes, "a?");
    // A character the code page lacks is looked for as the "?" that stands in for it.
    EXPECT_EQ(In8(NarrowMatcher(u"中", 0, western), "x?"), (Found{1, 1}));
}

TEST(UnicodeChars, FoldAndWordTablesAgreeWithTheCharacters)
{
    EXPECT_EQ(FoldCase(U'A'), U'a');
    EXPECT_EQ(FoldCase(U'É'), U'é');
    EXPECT_EQ(FoldCase(U'ς'), U'σ');
    EXPECT_EQ(FoldCase(U'\u212A'), U'k'); // the Kelvin sign
    EXPECT_EQ(FoldCase(U'\U00010400'), U'\U00010428');
    EXPECT_EQ(FoldCase(U'ı'), U'ı'); // the dotless i has no other case of its own
    EXPECT_EQ(FoldCase(U'1'), U'1');
    EXPECT_TRUE(IsWordChar(U'_'));
    EXPECT_TRUE(IsWordChar(U'é'));
    EXPECT_TRUE(IsWordChar(U'中'));
    EXPECT_TRUE(IsWordChar(U'\u0301')); // a combining accent belongs to its letter
    EXPECT_TRUE(IsWordChar(U'٣'));
    EXPECT_FALSE(IsWordChar(U'-'));
    EXPECT_FALSE(IsWordChar(U'\u00A0'));
    EXPECT_FALSE(IsWordChar(U'😀'));
}

} // namespace
} // namespace quirnel::test
