#include <gtest/gtest.h>

#include <string>

#include "bridge/Utf16.h"

using namespace Mero;

struct Utf16Case {
    const char* name;
    std::u16string utf16;
    std::string utf8;
};

class Utf16BothWays : public testing::TestWithParam<Utf16Case> {};

TEST_P(Utf16BothWays, ConvertsEachWayToTheOther)
{
    EXPECT_EQ(utf8FromUtf16(GetParam().utf16), GetParam().utf8);
    EXPECT_EQ(utf16FromUtf8(GetParam().utf8), GetParam().utf16);
}

INSTANTIATE_TEST_SUITE_P(Characters, Utf16BothWays,
                         testing::Values(Utf16Case{"Ascii", u"a=b&c", "a=b&c"},
                                         Utf16Case{"Zero", std::u16string(1, u'\0'), std::string(1, '\0')},
                                         Utf16Case{"TwoBytes", u"\u00e9", "\xC3\xA9"},
                                         Utf16Case{"ThreeBytes", u"\u4e2d\uFFFD", "\xE4\xB8\xAD\xEF\xBF\xBD"},
                                         Utf16Case{"SurrogatePair", u"\U0001F600", "\xF0\x9F\x98\x80"},
                                         // Long runs of ASCII go by blocks of sixteen; a character
                                         // that is not ASCII ends a block anywhere in it.
                                         Utf16Case{"AsciiRunsAroundOthers",
                                                   u"0123456789abcdef\u00e9123456789ABCDE\U0001F600tail of twenty chars",
                                                   "0123456789abcdef\xC3\xA9" "123456789ABCDE\xF0\x9F\x98\x80"
                                                   "tail of twenty chars"}),
                         [](const testing::TestParamInfo<Utf16Case>& param) { return std::string(param.param.name); });

TEST(Utf16, SurrogatesJoinInPairsAndLoneOnesOrBytesNotUtf8BecomeTheReplacementCharacter)
{
    // U+1F600 as modified UTF-8 writes it: two 3-byte surrogate halves.
    EXPECT_EQ(utf16FromUtf8("\xED\xA0\xBD\xED\xB8\x80"), u"\U0001F600");
    EXPECT_EQ(utf8FromUtf16(std::u16string{0xD83D, u'x'}), "\xEF\xBF\xBDx");
    EXPECT_EQ(utf8FromUtf16(std::u16string{0xDE00}), "\xEF\xBF\xBD");
    EXPECT_EQ(utf16FromUtf8(std::string("a\xFF") + "b"), u"a\uFFFDb");
    EXPECT_EQ(utf16FromUtf8("\xC0\x80"), u"\uFFFD\uFFFD");                      // overlong
    EXPECT_EQ(utf16FromUtf8("\xE4\xB8"), u"\uFFFD\uFFFD");                      // cut short
    EXPECT_EQ(utf16FromUtf8("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");  // past U+10FFFF
}
