#include <algorithm>
#include <cctype>
#include <filesystem>
#include <fstream>
#include <vector>

#include <gtest/gtest.h>

#include "tests/PindleConversion/Support.h"

namespace pindle::conversion::test {

namespace {

using nlohmann::json;

std::vector<json> readCases(const std::string &name) {
    std::vector<json> cases;
    std::ifstream file(std::string(PINDLE_CONVERSION_CASES) + "/" + name);
    for (std::string line; std::getline(file, line);)
        if (!line.empty())
            cases.push_back(json::parse(line));
    return cases;
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

/// Every case of every language.
std::vector<json> allCases() {
    std::vector<std::filesystem::path> files;
    for (const auto &file : std::filesystem::directory_iterator(PINDLE_CONVERSION_CASES))
        if (file.path().extension() == ".jsonl")
            files.push_back(file.path().filename());
    std::sort(files.begin(), files.end());
    std::vector<json> cases;
    for (const auto &file : files)
        for (json &each : readCases(file.string()))
            cases.push_back(std::move(each));
    return cases;
}

class GivenCase : public testing::TestWithParam<json> {};

TEST_P(GivenCase, givesTheEventACarefulPersonWouldEnter) {
    const json &given = GetParam();
    const json &expect = given["expect"];
    if (given.contains("open"))
        GTEST_SKIP() << given["open"];
    const auto text = given["text"].get<std::string>();
    const Reply reply = convert({text, given["referenceDate"].get_ref<const std::string &>(),
                                 given["referenceTimezone"].get_ref<const std::string &>()});
    if (expect.contains("success")) {
        EXPECT_FALSE(reply.draft) << text;
        EXPECT_FALSE(reply.error.empty());
        return;
    }
    ASSERT_TRUE(reply.draft) << text << "\n" << reply.error;
    const Draft &draft = *reply.draft;
    EXPECT_TRUE(isOneOf(expect["startDate"], draft.startDate)) << text << "\n" << draft.startDate;
    EXPECT_TRUE(isOneOf(expect["startTime"], draft.startTime)) << text << "\n" << draft.startTime;
    EXPECT_TRUE(isOneOf(expect["endDate"], draft.endDate)) << text << "\n" << draft.endDate;
    EXPECT_TRUE(isOneOf(expect["endTime"], draft.endTime)) << text << "\n" << draft.endTime;
    EXPECT_TRUE(isOneOf(expect["timeZone"], draft.timeZone)) << text << "\n" << draft.timeZone;
    EXPECT_TRUE(isPlace(expect["location"], draft.location)) << text << "\n" << draft.location;
    EXPECT_TRUE(hasKeywords(expect["title"]["keywords"], draft.title)) << text << "\n"
                                                                       << draft.title;
}

INSTANTIATE_TEST_SUITE_P(Cases, GivenCase, testing::ValuesIn(allCases()),
                         [](const testing::TestParamInfo<json> &info) {
                             auto name = info.param["id"].get<std::string>();
                             std::replace(name.begin(), name.end(), '-', '_');
                             return name;
                         });

TEST(EnglishCases, areManyAndHaveTextsWithoutAnEvent) {
    const auto cases = readCases("english.jsonl");
    EXPECT_GE(cases.size(), 120U);
    const auto refused = std::count_if(cases.begin(), cases.end(), [](const json &each) {
        return each["expect"].contains("success");
    });
    EXPECT_GE(refused, 20);
}

} // namespace

} // namespace pindle::conversion::test
