#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include <unicode/timezone.h>

#include "PindleConversion/resolve/Resolve.h"
#include "tests/PindleConversion/Support.h"

namespace pindle::conversion::test {

namespace {

using nlohmann::json;

/// The cases of all languages, one file each.
std::vector<json> readCases() {
    std::vector<json> cases;
    for (const auto &entry : std::filesystem::directory_iterator(PINDLE_CONVERSION_CASES)) {
        if (entry.path().extension() != ".jsonl")
            continue;
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);)
            if (!line.empty())
                cases.push_back(json::parse(line));
    }
    return cases;
}

/// Cases that are not understood yet. They count against the rates below.
std::set<std::string> openCases() {
    std::ifstream file(std::string(PINDLE_CONVERSION_CASES) + "/open.txt");
    return {std::istream_iterator<std::string>(file), {}};
}

/// Letters and digits only, lower case.
std::string tight(const std::string &text) {
    std::string out;
    for (char c : text)
        if (std::isalnum(static_cast<unsigned char>(c)) || static_cast<unsigned char>(c) >= 0x80)
            out += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return out;
}

std::vector<std::string> listOf(const json &value) {
    return value.is_array() ? value.get<std::vector<std::string>>()
                            : std::vector{value.get<std::string>()};
}

bool isOneOf(const json &wanted, const std::string &value) {
    for (const std::string &each : listOf(wanted))
        if (each == value)
            return true;
    return false;
}

bool isPlace(const json &wanted, const std::string &value) {
    const std::string got = tight(value);
    for (const std::string &each : listOf(wanted)) {
        const std::string want = tight(each);
        if (want == got || (!want.empty() && got.find(want) != std::string::npos))
            return true;
    }
    return false;
}

bool hasKeywords(const json &keywords, const std::string &title) {
    const std::string got = tight(title);
    for (const std::string keyword : keywords) {
        bool any = false;
        for (std::size_t at = 0; at <= keyword.size();) {
            const auto bar = std::min(keyword.find('|', at), keyword.size());
            any = any || got.find(tight(keyword.substr(at, bar - at))) != std::string::npos;
            at = bar + 1;
        }
        if (!any)
            return false;
    }
    return true;
}

/// A zone counts by its offset at the event's noon; "" stands for the user's own.
bool isZone(const json &wanted, const Draft &draft) {
    const auto offset = [&](const std::string &zone) {
        const auto noon = parseDay(draft.startDate);
        std::int32_t raw = 0;
        std::int32_t saved = 0;
        UErrorCode status = U_ZERO_ERROR;
        const std::string id =
            zone.starts_with("UTC+") || zone.starts_with("UTC-") ? "GMT" + zone.substr(3) : zone;
        const std::unique_ptr<icu::TimeZone> found(
            icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(id)));
        if (noon)
            found->getOffset(static_cast<double>(noon->time_since_epoch().count()) * 86'400'000.0 +
                                 43'200'000.0,
                             0, raw, saved, status);
        return raw + saved;
    };
    for (const std::string &each : listOf(wanted))
        if (each == draft.timeZone || (!each.empty() && offset(each) == offset(draft.timeZone)))
            return true;
    return false;
}

/// What went wrong, by the checks that apply; empty when all is well.
struct Verdict {
    std::map<std::string, bool> checks;
    std::string got;

    bool good() const {
        for (const auto &[name, well] : checks)
            if (!well)
                return false;
        return true;
    }
};

bool isEmptyWanted(const json &wanted) {
    return isOneOf(wanted, "");
}

Verdict judge(const json &given) {
    const json &expect = given["expect"];
    const auto text = given["text"].get<std::string>();
    const Reply reply = convert({text, given["referenceDate"].get_ref<const std::string &>(),
                                 given["referenceTimezone"].get_ref<const std::string &>()});
    Verdict verdict;
    if (expect.contains("success")) {
        verdict.checks["noevent"] = !reply.draft && !reply.error.empty();
        return verdict;
    }
    verdict.checks["missed"] = reply.draft.has_value();
    const Draft draft = reply.draft.value_or(Draft{});
    verdict.got = draft.startDate + " " + draft.startTime + " - " + draft.endDate + " " +
                  draft.endTime + " " + draft.timeZone + " [" + draft.location + "] " + draft.title;
    verdict.checks["start"] = isOneOf(expect["startDate"], draft.startDate) &&
                              isOneOf(expect["startTime"], draft.startTime);
    const bool oneDay = isEmptyWanted(expect["endDate"]) && draft.endDate == draft.startDate;
    verdict.checks["end"] = (oneDay || isOneOf(expect["endDate"], draft.endDate)) &&
                            isOneOf(expect["endTime"], draft.endTime);
    verdict.checks["zone"] = isZone(expect["timeZone"], draft);
    if (expect.contains("location"))
        verdict.checks["location"] = isPlace(expect["location"], draft.location);
    verdict.checks["title"] = hasKeywords(expect["title"]["keywords"], draft.title);
    return verdict;
}

class ConversionCase : public testing::TestWithParam<json> {};

TEST_P(ConversionCase, givesTheEventACarefulPersonWouldEnter) {
    const Verdict verdict = judge(GetParam());
    const auto text = GetParam()["text"].get<std::string>();
    if (openCases().count(GetParam()["id"].get<std::string>()) > 0) {
        EXPECT_FALSE(verdict.good()) << "understood by now; take it off open.txt: " << text;
        return;
    }
    for (const auto &[check, well] : verdict.checks)
        EXPECT_TRUE(well) << check << ": " << text << "\n" << verdict.got;
}

INSTANTIATE_TEST_SUITE_P(Cases, ConversionCase, testing::ValuesIn(readCases()),
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
    for (const json &each : readCases()) {
        if ((each["lang"] == "en") != english)
            continue;
        const Verdict verdict = judge(each);
        for (const auto &[check, well] : verdict.checks) {
            // Only an end that the text names is an end found.
            if (check == "end" && isEmptyWanted(each["expect"]["endTime"]) &&
                isEmptyWanted(each["expect"]["endDate"]))
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
                                              {"title", 90},   {"all", 85}};
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

TEST(ConversionCases, areManyAndOfManyKinds) {
    std::map<std::string, int> kinds;
    int refused = 0;
    const auto cases = readCases();
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
