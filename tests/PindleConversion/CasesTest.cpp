#include <algorithm>
#include <fstream>
#include <iterator>
#include <map>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "tests/PindleConversion/Judge.h"

namespace pindle::conversion::test {

namespace {

using nlohmann::json;

/// The cases of all languages, one file each.
std::vector<json> allCases() {
    return readCases(caseFiles(PINDLE_CONVERSION_CASES));
}

/// Cases that are not understood yet. They count against the rates below.
std::set<std::string> openCases() {
    std::ifstream file(std::string(PINDLE_CONVERSION_CASES) + "/open.txt");
    return {std::istream_iterator<std::string>(file), {}};
}

/// Whether the event is the wanted one; how neat its title looks is left to the rates.
bool isUnderstood(const Verdict &verdict) {
    return std::all_of(verdict.checks.begin(), verdict.checks.end(),
                       [](const auto &each) { return each.second || each.first == "tidy"; });
}

class ConversionCase : public testing::TestWithParam<json> {};

TEST_P(ConversionCase, givesTheEventACarefulPersonWouldEnter) {
    const Verdict verdict = judge(GetParam());
    const auto text = GetParam()["text"].get<std::string>();
    if (openCases().count(GetParam()["id"].get<std::string>()) > 0) {
        EXPECT_FALSE(isUnderstood(verdict)) << "understood by now; take it off open.txt: " << text;
        return;
    }
    for (const auto &[check, well] : verdict.checks)
        EXPECT_TRUE(well || check == "tidy") << check << ": " << text << "\n" << verdict.got;
}

INSTANTIATE_TEST_SUITE_P(Cases, ConversionCase, testing::ValuesIn(allCases()),
                         [](const testing::TestParamInfo<json> &info) {
                             auto name = info.param["id"].get<std::string>();
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

struct Rate {
    int good = 0;
    int all = 0;
    double percent() const { return all == 0 ? 100.0 : 100.0 * good / all; }
};

std::map<std::string, Rate> ratesOf(bool english) {
    std::map<std::string, Rate> rates;
    for (const json &each : allCases()) {
        if ((each["lang"] == "en") != english)
            continue;
        const Verdict verdict = judge(each);
        for (const auto &[check, well] : verdict.checks) {
            if (!counts(check, each))
                continue;
            rates[check].good += well ? 1 : 0;
            ++rates[check].all;
        }
        rates["all"].good += verdict.good() ? 1 : 0;
        ++rates["all"].all;
    }
    return rates;
}

void expectRates(bool english) {
    auto rates = ratesOf(english);
    const std::map<std::string, double> least{{"start", 97},   {"end", 95},    {"zone", 97},
                                              {"noevent", 97}, {"missed", 99}, {"location", 90},
                                              {"tidy", 90},    {"all", 85}};
    for (const auto &[check, percent] : least)
        EXPECT_GE(rates[check].percent(), percent)
            << check << ": " << rates[check].good << " of " << rates[check].all;
}

TEST(ConversionCases, mostEnglishTextsAreUnderstood) {
    expectRates(true);
}

TEST(ConversionCases, mostTextsOfOtherLanguagesAreUnderstood) {
    expectRates(false);
}

TEST(ConversionCases, aTidyTitleIsOneAPersonWouldLeaveAsItIs) {
    for (const char *title : {"Team lunch", "Dr. Meier", "Zahnarzt", "Call with O'Neill",
                              "Budget 2027", "5 Rhythms (beginners)", "Mock exam: maths",
                              "打ち合わせ", "¿Cenamos?", "Kindergarten am See"})
        EXPECT_TRUE(isTidy(title)) << title;
    for (const char *title :
         {"",
          "Lunch 12:30",
          "Lunch at 9 pm",
          "Probe 19 Uhr",
          "会議 3時",
          "Fair 2027-03-12",
          "Fair 12/3/2027",
          "Fair 12 March",
          "Fair March 12",
          "Subject: Lunch",
          "Betreff: Probe",
          "Lunch at",
          "Probe um",
          "Lunch,",
          "- Lunch",
          "Lunch | Luna",
          "Join https://x.example",
          "ask ada@x.example",
          "Lunch\nLuna",
          "Lunch ()",
          "A title that goes on and on until nobody would read it to its very end"})
        EXPECT_FALSE(isTidy(title)) << title;
}

TEST(ConversionCases, areManyAndOfManyKinds) {
    std::map<std::string, int> kinds;
    int refused = 0;
    const auto cases = allCases();
    for (const json &each : cases) {
        ++kinds[each["kind"].get<std::string>()];
        refused += each["expect"].contains("success") ? 1 : 0;
    }
    EXPECT_GE(cases.size(), 500U);
    EXPECT_GE(refused, 60);
    EXPECT_GE(kinds.size(), 15U);
}

} // namespace

} // namespace pindle::conversion::test
