#include <gtest/gtest.h>

#include "PindleConversion/clean/CleanText.h"

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

TEST(CleanText, lettersBesideOddOnesStay) {
    EXPECT_EQ(cleanText("Caf\u00E9\u200B Miro\u00A0at \uFF18\uFF1A\uFF130, ok"),
              "Caf\u00E9 Miro at 8:30, ok");
    EXPECT_EQ(cleanText("bell\a and \xFF byte"), "bell  and   byte");
}

} // namespace

} // namespace pindle::conversion::test
