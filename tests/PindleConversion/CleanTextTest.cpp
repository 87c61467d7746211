#include <gtest/gtest.h>

#include "PindleConversion/clean/CleanText.h"
#include "PindleConversion/clean/Utf8.h"

namespace pindle::conversion::test {

namespace {

TEST(CleanText, marksOfQuotesAndHeadsGoOnlyBeforeALine) {
    EXPECT_EQ(cleanText("a > b\n> > c # d\n## e"), "a > b\nc # d\ne");
    EXPECT_EQ(cleanText("a\r\n>b"), "a\nb");
    EXPECT_EQ(cleanText("a<br>> b"), "a\nb");
}

TEST(CleanText, emphasisGoesAndMarksInsideWordsStay) {
    EXPECT_EQ(cleanText("so **very** late, *a* b"), "so very late, a b");
    EXPECT_EQ(cleanText("snake_case and _this_ 2 * 3"), "snake_case and this 2 * 3");
    EXPECT_EQ(cleanText("* one\n* two"), "\u2022 one\n\u2022 two");
}

TEST(CleanText, entitiesAndTagsGoWhereverTheyStand) {
    EXPECT_EQ(cleanText("A&amp;B &lt;3 & C"), "A&B <3 & C");
    EXPECT_EQ(cleanText("x<b>y</b> 1 < 2"), "xy 1 < 2");
}

TEST(CleanText, aPictureWithItsBlanksPartsWordsAsTheBlanksAloneDo) {
    EXPECT_EQ(cleanText("hall B \u2605 free"), "hall B free");
    EXPECT_EQ(cleanText("hall B\u2605free"), "hall B free");
    EXPECT_EQ(cleanText("hall B  \u2605  free"), "hall B  free");
}

TEST(CleanText, aNumberThatIsNoCharacterStaysAsWritten) {
    EXPECT_EQ(cleanText("a &#8211; b &#x2013; c"), "a \u2013 b \u2013 c");
    for (const char *text :
         {"a &#55296; b", "a &#xDFFF; b", "a &#1114112; b", "a &#7; b", "a &#; b"})
        EXPECT_EQ(cleanText(text), text);
}

TEST(CleanText, everyCharacterIsReadAlikeWithinALineAndAtItsStart) {
    for (std::int32_t c = 0x80; c < 0x30000; ++c) {
        if (c >= 0xD800 && c <= 0xDFFF)
            continue;
        std::string rest;
        appendPoint(rest, c);
        rest += 'b';
        const std::string within = cleanText("a" + rest);
        EXPECT_EQ(cleanText("a\n" + rest), "a\n" + within.substr(1)) << c;
    }
}

TEST(CleanText, lettersBesideOddOnesStay) {
    EXPECT_EQ(cleanText("Caf\u00E9\u200B Miro\u00A0at \uFF18\uFF1A\uFF130, ok"),
              "Caf\u00E9 Miro at 8:30, ok");
    EXPECT_EQ(cleanText("bell\a and \xFF byte"), "bell  and   byte");
}

} // namespace

} // namespace pindle::conversion::test
