#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <sstream>
#include <vector>

#include <gtest/gtest.h>
#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "PindleConversion/resolve/Resolve.h"
#include "tests/PindleConversion/Judge.h"
#include "tests/PindleConversion/Support.h"

namespace pindle::conversion::test {

namespace {

using nlohmann::json;

struct Given {
    std::string text, date, zone;
};

std::vector<Given> givenTexts() {
    std::vector<Given> all;
    for (const auto &each : readCases(caseFiles(PINDLE_CONVERSION_CASES)))
        all.push_back({each["text"], each["referenceDate"], each["referenceTimezone"]});
    return all;
}

Draft withoutDescription(const Reply &reply) {
    Draft draft = reply.draft.value_or(Draft{});
    draft.description.clear();
    return draft;
}

TEST(Conversion, blanksAroundTheTextDoNotChangeTheDraft) {
    for (const Given &given : givenTexts()) {
        const Draft plain = withoutDescription(convert({given.text, given.date, given.zone}));
        for (const auto &[before, after] : {std::pair{"  \t", "\n\n"}, std::pair{"\n \n", "   "}}) {
            const std::string padded = before + given.text + after;
            EXPECT_EQ(withoutDescription(convert({padded, given.date, given.zone})), plain)
                << given.text;
        }
    }
}

TEST(Conversion, quotesAroundTheTextDoNotChangeTheDraft) {
    for (const Given &given : givenTexts()) {
        if (given.text.find_first_of("\"'") != std::string::npos ||
            given.text.find("\u201C") != std::string::npos)
            continue;
        const Draft plain = withoutDescription(convert({given.text, given.date, given.zone}));
        for (const auto &[open, close] : {std::pair{"\"", "\""}, std::pair{"\u201C", "\u201D"},
                                          std::pair{"\u00AB ", " \u00BB"}})
            EXPECT_EQ(
                withoutDescription(convert({open + given.text + close, given.date, given.zone})),
                plain)
                << given.text;
    }
}

TEST(Conversion, aQuotedMailReadsLikeTheMail) {
    EXPECT_EQ(draftOf("> Lunch with Ada\r\n> tomorrow at 12:30\r\n> Cafe Luna").location,
              "Cafe Luna");
    EXPECT_EQ(draftOf("> Lunch with Ada\r\n> tomorrow at 12:30").startTime, "12:30");
}

bool hasEvidence(const Reply &reply, Fact fact) {
    return std::any_of(reply.evidence.begin(), reply.evidence.end(),
                       [&](const Evidence &each) { return each.fact == fact; });
}

bool lastsOneDay(const Draft &draft) {
    return draft.endDate.empty() || draft.endDate == draft.startDate;
}

TEST(Conversion, everyValueHasItsSpanInTheText) {
    for (const Given &given : givenTexts()) {
        const Reply reply = convert({given.text, given.date, given.zone});
        if (!reply.draft)
            continue;
        for (const Evidence &each : reply.evidence) {
            ASSERT_LT(each.begin, each.end) << given.text;
            ASSERT_LE(each.end, reply.cleanText.size()) << given.text;
        }
        const Draft &draft = *reply.draft;
        EXPECT_EQ(hasEvidence(reply, Fact::Title), !draft.title.empty()) << given.text;
        EXPECT_EQ(hasEvidence(reply, Fact::Location), !draft.location.empty()) << given.text;
        EXPECT_EQ(hasEvidence(reply, Fact::Time), !draft.startTime.empty()) << given.text;
        EXPECT_EQ(hasEvidence(reply, Fact::End), !(draft.endTime.empty() && lastsOneDay(draft)))
            << given.text;
        // The user's own zone is the stated default.
        EXPECT_TRUE(draft.timeZone == given.zone || hasEvidence(reply, Fact::Zone)) << given.text;
        EXPECT_TRUE(hasEvidence(reply, Fact::Date) || draft.startDate == given.date) << given.text;
    }
}

std::string onOneLine(const std::string &text) {
    std::istringstream in(text);
    std::string out;
    for (std::string word; in >> word;)
        out += (out.empty() ? "" : " ") + word;
    return out;
}

std::string lowered(const std::string &text) {
    std::string out;
    icu::UnicodeString::fromUTF8(text).toLower(icu::Locale::getRoot()).toUTF8String(out);
    return out;
}

/// Without the marks around a name: "“Green Campus” lecture" opens with one, its title does not.
std::string unquoted(std::string text) {
    for (const std::string_view mark : {"“", "”", "„", "「", "」", "『", "』", "\""})
        for (std::size_t at; (at = text.find(mark)) != std::string::npos;)
            text.erase(at, mark.size());
    return text;
}

TEST(Conversion, titleAndPlaceAreWordsOfTheText) {
    for (const Given &given : givenTexts()) {
        const Reply reply = convert({given.text, given.date, given.zone});
        for (const Evidence &each : reply.evidence) {
            if (each.fact != Fact::Title && each.fact != Fact::Location)
                continue;
            const auto &value =
                each.fact == Fact::Title ? reply.draft->title : reply.draft->location;
            const std::string words =
                onOneLine(reply.cleanText.substr(each.begin, each.end - each.begin));
            // Capitals of a whole title are softened.
            EXPECT_EQ(unquoted(lowered(value)), unquoted(lowered(words))) << given.text;
        }
    }
}

Draft later(const std::string &text, int days) {
    const Day day = *parseDay("2026-03-11") + std::chrono::days(days);
    return draftOf(text, "Europe/London", formatDay(day));
}

/// Where a text can be cut: before every character that follows a space or begins with several
/// bytes.
std::vector<std::size_t> cutsOf(const std::string &text) {
    std::vector<std::size_t> cuts;
    for (std::size_t i = 1; i < text.size(); ++i)
        if (text[i - 1] == ' ' || text[i - 1] == '\n' ||
            (static_cast<unsigned char>(text[i]) & 0xC0U) == 0xC0U)
            cuts.push_back(i);
    return cuts;
}

void expectAnswer(std::string_view text, const Given &given) {
    const Reply reply = convert({text, given.date, given.zone});
    ASSERT_EQ(reply.draft.has_value(), reply.error.empty()) << text;
    const std::size_t day = reply.draft ? given.date.size() : 0;
    ASSERT_EQ(reply.draft.value_or(Draft{}).startDate.size(), day) << text;
}

TEST(Conversion, aTextCutAnywhereIsAnswered) {
    for (const Given &given : givenTexts()) {
        const std::string_view text = given.text;
        for (const std::size_t cut : cutsOf(given.text)) {
            expectAnswer(text.substr(0, cut), given);
            expectAnswer(text.substr(cut), given);
        }
    }
}

TEST(Conversion, aTextJoinedByAnyMarkIsAnswered) {
    constexpr std::array<std::string_view, 6> joints{" | ", "\n", ": ", " - ", "\t", "; "};
    std::size_t next = 0;
    for (const Given &given : givenTexts())
        for (const std::size_t cut : cutsOf(given.text)) {
            std::string text = given.text;
            text.insert(cut, joints[next++ % joints.size()]);
            expectAnswer(text, given);
        }
}

TEST(Conversion, labelsWithoutValuesAreAnswered) {
    const Given given{"", "2026-03-11", "Europe/Berlin"};
    constexpr std::array<std::string_view, 10> words{
        "Where", "When", "Date:", "Title", "Start:", "Ort", "Wann:", "\u65E5\u6642", ":", "-"};
    for (const std::string_view a : words)
        for (const std::string_view b : words)
            for (const std::string_view c : words)
                for (const std::string_view joint : {" | ", "\t", "\n"})
                    expectAnswer(std::string(a) + std::string(joint) + std::string(b) + ' ' +
                                     std::string(c),
                                 given);
}

TEST(Conversion, relativeDatesMoveWithTheReferenceDate) {
    for (const char *text : {"Dentist tomorrow at 9:30", "Lunch in 3 days at 12:30 at Rosa's",
                             "Call today 4pm", "übermorgen um halb acht Probe",
                             "明後日の午後3時半から会議", "Review a week from today at 10am"}) {
        const Draft first = later(text, 0);
        ASSERT_FALSE(first.startDate.empty()) << text;
        for (int days = 1; days < 400; days += 13) {
            const Draft moved = later(text, days);
            EXPECT_EQ(*parseDay(moved.startDate) - *parseDay(first.startDate),
                      std::chrono::days(days))
                << text;
            EXPECT_EQ(moved.startTime, first.startTime) << text;
            EXPECT_EQ(moved.title, first.title) << text;
        }
    }
}

TEST(Conversion, weekdaysComeRoundEverySevenDays) {
    for (const char *text : {"Party on Saturday at 8pm", "nächsten Dienstag 14 Uhr Besprechung",
                             "来週の水曜日15時から打ち合わせ"})
        for (int days = 0; days < 70; ++days)
            EXPECT_EQ(*parseDay(later(text, days + 7).startDate) -
                          *parseDay(later(text, days).startDate),
                      std::chrono::days(7))
                << text << " " << days;
}

TEST(Conversion, blanksBetweenWordsDoNotChangeTheDraft) {
    const auto doubled = [](const std::string &text) {
        std::string out;
        for (char c : text)
            out += c == ' ' ? "  " : std::string(1, c);
        return out;
    };
    int same = 0;
    int all = 0;
    for (const Given &given : givenTexts()) {
        if (given.text.find("  ") != std::string::npos)
            continue;
        ++all;
        same += withoutDescription(convert({given.text, given.date, given.zone})) ==
                        withoutDescription(convert({doubled(given.text), given.date, given.zone}))
                    ? 1
                    : 0;
    }
    EXPECT_EQ(same, all);
}

TEST(Conversion, noEndIsInvented) {
    for (const char *text :
         {"Dentist tomorrow at 9:30", "Party on Saturday", "Lunch 12:30 Friday"}) {
        const Draft draft = draftOf(text);
        EXPECT_FALSE(draft.startDate.empty()) << text;
        EXPECT_EQ(draft.endTime, "") << text;
        EXPECT_EQ(draft.endDate, "") << text;
    }
}

std::string repeated(const std::string &unit, int count) {
    std::string text;
    for (int i = 0; i < count; ++i)
        text += unit;
    return text;
}

/// Processor time of this thread: what other programs do does not count.
std::chrono::nanoseconds worked() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::chrono::nanoseconds fastest(const std::string &text) {
    auto best = std::chrono::nanoseconds::max();
    for (int i = 0; i < 3; ++i) {
        const auto start = worked();
        convertText(text);
        best = std::min(best, worked() - start);
    }
    return best;
}

TEST(Conversion, theWorkGrowsNoFasterThanTheText) {
    constexpr int kSmall = 1000;
    constexpr int kTimesLonger = 16;
    constexpr int kGenerous = 4; // quadratic work would take 16 times as long again
    const std::vector<std::string> units{"Lunch on Friday at 5pm in the park, ",
                                         "at ",
                                         "1 2 3 ",
                                         "(",
                                         "((a",
                                         "next ",
                                         "a-b-c-",
                                         "5/6/",
                                         "in two weeks from ",
                                         "Where: x\n",
                                         "A: b\n",
                                         "| cell ",
                                         "forwarded message ",
                                         "Fri ",
                                         "5 - ",
                                         "The Park, ",
                                         "x@",
                                         "http://",
                                         "\"",
                                         "*",
                                         "the ",
                                         "[1",
                                         "end of "};
    for (const std::string &unit : units) {
        const auto small = fastest(repeated(unit, kSmall));
        const auto large = fastest(repeated(unit, kSmall * kTimesLonger));
        EXPECT_LT(large, kGenerous * kTimesLonger * small + std::chrono::milliseconds(5)) << unit;
    }
}

TEST(Conversion, everyYearIsWrittenWithFourDigitsOrMore) {
    const Day first = parseDay("0001-01-01").value();
    EXPECT_EQ(formatDay(first - std::chrono::days(1)), "0000-12-31");
    EXPECT_EQ(formatDay(first - std::chrono::days(367)), "-0001-12-31");
    EXPECT_EQ(formatDay(parseDay("0987-06-05").value()), "0987-06-05");
    EXPECT_EQ(formatDay(parseDay("9999-12-31").value() + std::chrono::days(1)), "10000-01-01");
}

} // namespace

} // namespace pindle::conversion::test
