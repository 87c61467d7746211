// Measures the conversion inside this process; bench/conversion.py calls it and makes the tables.

#include <algorithm>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

#include <malloc.h>

#include <nlohmann/json.hpp>

#include "PindleConversion/Convert.h"
#include "bench/LongTexts.h"
#include "bench/Samples.h"
#include "tests/PindleConversion/Judge.h"

namespace pindle::bench {

namespace {

using conversion::convert;
using conversion::Reply;
using nlohmann::json;

constexpr double kMicrosecond = 1e3;           ///< in nanoseconds
constexpr double kSecond = 1e9;                ///< in nanoseconds
constexpr Instant kSpentPerText = 200'000'000; ///< at least, on one long text
constexpr Instant kLongRun = 1'000'000'000;    ///< a text that takes this is not timed again
constexpr double kSlowest = 20 * kSecond;      ///< a text that would take longer is left out
constexpr std::size_t kGrowth = 10;            ///< from one length to the next
constexpr std::size_t kShortest = 1'000;       ///< bytes
constexpr std::size_t kLongest = 10'000'000;   ///< bytes
constexpr std::size_t kHighlight = 20'000;     ///< characters of a very long selection
constexpr std::size_t kRunsAtLeast = 3;
constexpr std::size_t kRunsAtMost = 1'000;
constexpr std::string_view kSentence =
    "Team lunch on Friday, March 12, 2027 from 12:30 to 13:30 at Café Luna";
constexpr std::string_view kDate = "2026-03-11";
constexpr std::string_view kZone = "Europe/Berlin";

/// Keeps what a measured call gives from being left out by the compiler.
void use(const Reply &reply) {
    asm volatile("" : : "r"(&reply) : "memory");
}

Instant timeOf(std::string_view text, std::string_view date = kDate,
               std::string_view zone = kZone) {
    const Instant from = now();
    const Reply reply = convert({text, date, zone});
    use(reply);
    return now() - from;
}

/// A field of /proc/self/status, in KiB.
long memoryField(const std::string &name) {
    std::ifstream file("/proc/self/status");
    for (std::string line; std::getline(file, line);)
        if (line.starts_with(name + ":"))
            return std::stol(line.substr(name.size() + 1));
    return 0;
}

std::vector<json> casesOf(const std::vector<std::string> &files) {
    return conversion::test::readCases({files.begin(), files.end()});
}

/// One line per case: what it is and the verdict of each check that counts.
int judgeAll(const std::vector<std::string> &files) {
    for (const json &each : casesOf(files)) {
        const auto verdict = conversion::test::judge(each);
        json line{{"id", each["id"]}, {"lang", each["lang"]}, {"all", verdict.good()}};
        line["kind"] = each.value("kind", "");
        line["checks"] = json::object();
        for (const auto &[check, well] : verdict.checks)
            if (conversion::test::counts(check, each))
                line["checks"][check] = well;
        std::cout << line << '\n';
    }
    return 0;
}

/// Converts all cases again and again; every conversion is one sample, in microseconds.
int timeCases(const std::vector<std::string> &arguments) {
    const int rounds = std::stoi(arguments.at(0));
    const auto cases = casesOf({arguments.begin() + 1, arguments.end()});
    const auto all = [&](const std::function<void(Instant)> &took) {
        for (const json &each : cases)
            took(timeOf(each["text"].get_ref<const std::string &>(),
                        each["referenceDate"].get_ref<const std::string &>(),
                        each["referenceTimezone"].get_ref<const std::string &>()));
    };
    all([](Instant) {});
    std::vector<double> samples;
    samples.reserve(cases.size() * static_cast<std::size_t>(rounds));
    const Instant from = now();
    for (int round = 0; round < rounds; ++round)
        all([&](Instant took) { samples.push_back(static_cast<double>(took) / kMicrosecond); });
    const double seconds = static_cast<double>(now() - from) / kSecond;
    const json result{{"samples", samples},
                      {"perSecond", static_cast<double>(samples.size()) / seconds},
                      {"memory", memoryField("VmRSS")}};
    std::cout << result << '\n';
    return 0;
}

/// The median time of one long text, in microseconds.
double medianTime(const std::string &text) {
    std::vector<double> samples;
    Instant spent = 0;
    // One run of what takes long, a few of the rest, many of what is short.
    while (spent < kSpentPerText ? samples.size() < kRunsAtMost
                                 : spent < kLongRun && samples.size() < kRunsAtLeast) {
        const Instant took = timeOf(text);
        spent += took;
        samples.push_back(static_cast<double>(took) / kMicrosecond);
    }
    std::sort(samples.begin(), samples.end());
    return samples[samples.size() / 2];
}

/// The times of one kind of long text by its length, once.
json timesOnce(const LongText &kind) {
    json result{{"name", kind.name}, {"title", kind.title}, {"times", json::object()}};
    double last = 0;
    for (std::size_t bytes = kShortest; bytes <= kLongest; bytes *= kGrowth) {
        if (last * kMicrosecond * static_cast<double>(kGrowth) > kSlowest)
            break;
        last = medianTime(kind.make(bytes));
        result["times"][std::to_string(bytes)] = last;
    }
    // Of characters of several bytes as many as it takes.
    std::string text = kind.make(kHighlight * 4);
    std::size_t end = 0;
    for (std::size_t characters = 0; end < text.size(); ++end)
        if ((static_cast<unsigned char>(text[end]) & 0xC0U) != 0x80U && ++characters > kHighlight)
            break;
    text.resize(end);
    result["highlight"] = medianTime(text);
    return result;
}

/// The least of some rounds: what else the machine does only ever adds to a time, and lasts.
json timesOf(const LongText &kind) {
    constexpr int kRounds = 3;
    json least = timesOnce(kind);
    for (int round = 1; round < kRounds; ++round) {
        const json again = timesOnce(kind);
        least["highlight"] =
            std::min(least["highlight"].get<double>(), again["highlight"].get<double>());
        for (const auto &[bytes, time] : again["times"].items())
            if (!least["times"].contains(bytes) || time < least["times"][bytes])
                least["times"][bytes] = time;
    }
    return least;
}

/// Of the kinds named, or of all.
int timeLongTexts(const std::vector<std::string> &names) {
    for (const LongText &kind : longTexts())
        if (names.empty() || std::count(names.begin(), names.end(), kind.name) > 0)
            std::cout << timesOf(kind) << std::endl;
    return 0;
}

/// The first conversion of this process, the usual time of the same one, and what it left in
/// memory.
int timeFirst(const std::vector<std::string> &) {
    const auto before = ::mallinfo2();
    const Instant first = timeOf(kSentence);
    const auto after = ::mallinfo2();
    const double warm = medianTime(std::string(kSentence));
    const json result{
        {"first", static_cast<double>(first) / kMicrosecond},
        {"warm", warm},
        {"heap", static_cast<double>(after.uordblks) + static_cast<double>(after.hblkhd) -
                     static_cast<double>(before.uordblks) - static_cast<double>(before.hblkhd)}};
    std::cout << result << '\n';
    return 0;
}

int print(const std::vector<std::string> &arguments) {
    for (const LongText &kind : longTexts())
        if (kind.name == arguments.at(0))
            std::cout << kind.make(std::stoul(arguments.at(1)));
    return 0;
}

} // namespace

} // namespace pindle::bench

int main(int argc, char *argv[]) {
    using namespace pindle::bench;
    const std::map<std::string, int (*)(const std::vector<std::string> &)> commands{
        {"judge", judgeAll},
        {"cases", timeCases},
        {"long", timeLongTexts},
        {"first", timeFirst},
        {"print", print}};
    const auto found = argc > 1 ? commands.find(argv[1]) : commands.end();
    try {
        if (found != commands.end())
            return found->second({argv + 2, argv + argc});
        std::cerr << "usage: conversion-bench judge FILE... | cases ROUNDS FILE... | long "
                     "[NAME...] | first | "
                     "print NAME BYTES\n";
    } catch (const std::exception &error) {
        std::cerr << "conversion-bench: " << error.what() << '\n';
    }
    return 2;
}
