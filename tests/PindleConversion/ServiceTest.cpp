#include <future>
#include <random>
#include <set>
#include <vector>

#include <gtest/gtest.h>

#include "tests/PindleConversion/Support.h"

namespace pindle::conversion::test {

namespace {

using nlohmann::json;

json reply(const std::string &body) {
    return json::parse(answer("text-conversion", body));
}

TEST(ConversionService, anInstallGetsAFreshKeyOf128Bits) {
    std::set<std::string> keys;
    for (int i = 0; i < 100; ++i) {
        const auto installed = json::parse(answer("on-install", R"({"browser":"macOS App"})"));
        ASSERT_EQ(installed.size(), 1U);
        const auto key = installed["anonymized_key"].get<std::string>();
        EXPECT_EQ(key.size(), 32U);
        EXPECT_EQ(key.find_first_not_of("0123456789abcdef"), std::string::npos);
        keys.insert(key);
    }
    EXPECT_EQ(keys.size(), 100U);
}

TEST(ConversionService, aDraftCarriesAllEightFieldsAsText) {
    const std::string answered = answer("text-conversion", requestFor("Dentist tomorrow at 9:30"));
    ASSERT_TRUE(isValidReply(answered)) << answered;
    const auto details = json::parse(answered)["details"];
    EXPECT_EQ(details["startDate"], "2026-03-12");
    EXPECT_EQ(details["startTime"], "09:30");
    EXPECT_EQ(details["endTime"], "");
    EXPECT_EQ(details["timeZone"], "Europe/London") << "the user's own when none is named";
}

TEST(ConversionService, theOrdinaryCaseComesWithoutANotice) {
    EXPECT_FALSE(reply(requestFor("Dentist tomorrow at 9:30")).contains("user_message"));
}

TEST(ConversionService, badInputGetsOnePlainSentence) {
    const std::vector<std::string> bodies{
        "",
        " ",
        "null",
        "[]",
        "42",
        "{",
        "{}",
        "\xff\xfe",
        R"({"text":5,"referenceDate":"2026-03-11","referenceTimezone":"UTC","anonymized_key":"k"})",
        R"({"text":"a","referenceDate":null,"referenceTimezone":"UTC","anonymized_key":"k"})",
        R"({"text":"a","referenceDate":"2026-03-11","anonymized_key":"k"})",
        R"({"text":"a","referenceDate":"2026-03-11","referenceTimezone":"UTC"})",
        R"({"text":"a","referenceDate":"11/03/2026","referenceTimezone":"UTC","anonymized_key":"k"})",
        R"({"text":"a","referenceDate":"2026-02-30","referenceTimezone":"UTC","anonymized_key":"k"})",
        "{\"text\":\"\xc3\x28\",\"referenceDate\":\"2026-03-11\",\"referenceTimezone\":\"UTC\","
        "\"anonymized_key\":\"k\"}",
        R"({"text":"\ud800","referenceDate":"2026-03-11","referenceTimezone":"UTC","anonymized_key":"k"})",
    };
    for (const std::string &body : bodies) {
        const std::string answered = answer("text-conversion", body);
        EXPECT_TRUE(isValidReply(answered)) << body << "\n" << answered;
        const auto parsed = json::parse(answered);
        EXPECT_FALSE(parsed["success"].get<bool>()) << body;
        EXPECT_TRUE(parsed["error"].get<std::string>().ends_with(".")) << answered;
    }
}

TEST(ConversionService, aScriptMayLeaveTheKeyOut) {
    const std::string body =
        R"({"text":"Lunch tomorrow 12:30","referenceDate":"2026-03-11","referenceTimezone":"UTC"})";
    EXPECT_TRUE(json::parse(answerLine(body))["success"].get<bool>());
    EXPECT_FALSE(json::parse(answer("text-conversion", body))["success"].get<bool>());
}

TEST(ConversionService, anUnknownEndpointIsAnError) {
    EXPECT_FALSE(json::parse(answer("elsewhere", "{}"))["success"].get<bool>());
}

TEST(ConversionService, aBodyAboveTheLimitIsRefused) {
    const std::string body = requestFor(std::string(kLargestBody, 'a'));
    EXPECT_FALSE(reply(body)["success"].get<bool>());
}

TEST(ConversionService, aTextJustBelowTheLimitIsAnswered) {
    std::string text = "Dentist tomorrow at 9:30\n";
    while (text.size() < kLargestBody - 1000)
        text += "and so on, at 5, in the park, 3/4 of it (perhaps); ";
    const std::string answered = answer("text-conversion", requestFor(text));
    ASSERT_TRUE(isValidReply(answered));
    EXPECT_EQ(json::parse(answered)["details"]["startDate"], "2026-03-12");
}

TEST(ConversionService, deeplyNestedJsonIsAnswered) {
    EXPECT_TRUE(isValidReply(answer("text-conversion", std::string(200'000, '['))));
    EXPECT_TRUE(isValidReply(
        answer("text-conversion", std::string(100'000, '[') + std::string(100'000, ']'))));
}

TEST(ConversionService, anyBytesGetAValidReply) {
    std::mt19937 random(20260311);
    const std::vector<std::string> scraps{"tomorrow", " at ",
                                          "5",        "pm",
                                          ":",        "-",
                                          "/",        "2026",
                                          "June",     "\n",
                                          "(",        ")",
                                          "next",     "Friday",
                                          ",",        "UTC",
                                          "+02:00",   "T",
                                          "half",     " past ",
                                          "Where: ",  "\t",
                                          "|",        "\xc3",
                                          "é",        "\xf0\x9f\x93\x8d",
                                          "@",        "[",
                                          "]",        "the 14th",
                                          "to",       "in ",
                                          "two",      " weeks",
                                          "\0",       "Europe/",
                                          "Berlin",   "'",
                                          "\"",       "wrote:"};
    for (int i = 0; i < 3000; ++i) {
        std::string text;
        const auto pieces = random() % 24;
        for (unsigned k = 0; k < pieces; ++k) {
            if (random() % 5 == 0)
                text += static_cast<char>(random() % 256);
            else
                text += scraps[random() % scraps.size()];
        }
        EXPECT_TRUE(isValidReply(answer("text-conversion", text)));
        const std::string answered = answer("text-conversion", requestFor(text));
        EXPECT_TRUE(isValidReply(answered)) << text << "\n" << answered;
    }
}

TEST(ConversionService, answersTheSameFromManyThreads) {
    const std::string body = requestFor("Standup Monday 9am - 9:15am in Room 5");
    const std::string expected = answer("text-conversion", body);
    std::vector<std::future<bool>> all;
    for (int i = 0; i < 8; ++i)
        all.push_back(std::async(std::launch::async, [&] {
            for (int k = 0; k < 50; ++k)
                if (answer("text-conversion", body) != expected)
                    return false;
            return true;
        }));
    for (auto &each : all)
        EXPECT_TRUE(each.get());
}

} // namespace

} // namespace pindle::conversion::test
