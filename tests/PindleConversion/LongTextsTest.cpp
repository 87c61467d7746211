#include <string>

#include <gtest/gtest.h>

#include "tests/PindleConversion/Support.h"

namespace pindle::conversion::test {

namespace {

std::string repeated(std::string_view piece, std::size_t bytes) {
    std::string text;
    while (text.size() < bytes)
        text += piece;
    return text;
}

constexpr std::string_view kNote = "The garden belongs to all who work in it. ";
constexpr std::string_view kEvent = "Choir rehearsal on 20 May at 18:30 in the town hall.";

TEST(LongTexts, anEventBehindLongProseIsFound) {
    const Draft draft = draftOf(repeated(kNote, 60'000) + std::string(kEvent));
    EXPECT_EQ(draft.startDate, "2026-05-20");
    EXPECT_EQ(draft.startTime, "18:30");
    EXPECT_EQ(draft.title, "Choir rehearsal");
    EXPECT_EQ(draft.location, "the town hall");
}

TEST(LongTexts, titleAndPlaceAreSoughtNearTheDate) {
    const Draft draft = draftOf(repeated(kNote, 8'000) + "\n" + std::string(kEvent) + "\n" +
                                repeated(kNote, 8'000) + "\nWhere: Lisbon");
    EXPECT_EQ(draft.title, "Choir rehearsal");
    EXPECT_EQ(draft.location, "the town hall");
}

TEST(LongTexts, aLongListOfDatesIsDraftedFromItsHead) {
    const std::string list = repeated("12 March 2027 10:00 Rowing\n", 100'000);
    const Reply reply = convertText(list);
    EXPECT_EQ(reply.draft.value_or(Draft{}).startDate, "2027-03-12");
    EXPECT_EQ(reply.draft.value_or(Draft{}).title, "Rowing");
    EXPECT_LT(reply.cleanText.size(), list.size() / 2) << "the rest is not even read";
}

TEST(LongTexts, aListIsCutBetweenLetters) {
    for (std::string_view letter : {"\xE6\x97\xA5", "\xF0\x9F\x93\x85", "\x80", "\xC3\xA9", "x"})
        for (std::string_view before : {"", "a", "ab", "abc"}) {
            const Reply reply = convertText(std::string(before) + repeated("3月4日", 9'000) +
                                            repeated(letter, 40'000));
            EXPECT_EQ(reply.draft.value_or(Draft{}).startDate, "2027-03-04") << letter;
        }
}

TEST(LongTexts, figuresThatNoWordExplainsAreNoDates) {
    EXPECT_FALSE(convertText(repeated("3/4 12:30, ", 2'000)).draft);
    EXPECT_TRUE(convertText("Lunch 3/4 12:30").draft);
}

} // namespace

} // namespace pindle::conversion::test
