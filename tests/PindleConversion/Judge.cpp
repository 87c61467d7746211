#include "tests/PindleConversion/Judge.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <memory>
#include <stdexcept>

#include <unicode/normalizer2.h>
#include <unicode/regex.h>
#include <unicode/timezone.h>
#include <unicode/uchar.h>

#include "PindleConversion/Convert.h"
#include "PindleConversion/resolve/Resolve.h"

namespace pindle::conversion::test {

namespace {

using nlohmann::json;

constexpr int kWidestTitle = 60; ///< columns

/// Letters and digits only, without accents, lower case.
std::string tight(const std::string &text) {
    UErrorCode error = U_ZERO_ERROR;
    const icu::Normalizer2 *parts = icu::Normalizer2::getNFKDInstance(error);
    icu::UnicodeString plain;
    if (U_FAILURE(error))
        throw std::runtime_error(u_errorName(error));
    const auto whole = parts->normalize(icu::UnicodeString::fromUTF8(text).foldCase(), error);
    for (std::int32_t i = 0; i < whole.length(); i = whole.moveIndex32(i, 1))
        if (u_isalnum(whole.char32At(i)))
            plain.append(whole.char32At(i));
    std::string out;
    return plain.toUTF8String(out);
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

/// Whether a value is the wanted one of that name; any is where the case wants none.
bool fits(const json &expect, const char *name, const std::string &value) {
    return !expect.contains(name) || isOneOf(expect[name], value);
}

/// A place may say more than is wanted ("Room 4, first floor"), but not the whole text.
bool isPlace(const json &wanted, const std::string &value) {
    constexpr std::size_t kMostBeyond = 24;
    const std::string got = tight(value);
    for (const std::string &each : listOf(wanted)) {
        const std::string want = tight(each);
        if (want == got || (!want.empty() && got.find(want) != std::string::npos &&
                            got.size() <= 2 * want.size() + kMostBeyond))
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

/// What a person would take out of a title, as patterns over its letters.
constexpr std::array<const char16_t *, 8> kUntidy{
    // Clock times: 9:30, 9h30, 9.30 Uhr, 9 pm, 9 Uhr, 9時.
    uR"(\d[:：h]\d\d|\d\.\d\d ?(?:[ap]m|uhr|uur|h)\b|\d ?(?:[ap]\.?m\b|uhr\b|uur\b|h\b|[時时點点]))",
    // Dates in digits: 2027-03-12, 12/3/27, 3月12日.
    uR"(\d{4}-\d\d|\b\d{1,2}([/.])\d{1,2}\1\d\d|\d月\d)",
    // A day beside the name of a month.
    uR"(\b\d{1,2}(?:st|nd|rd|th|\.)? (?:jan|feb|mar|apr|may|jun|jul|aug|sep|oct|nov|dec)[a-z]*\b)",
    uR"(\b(?:jan|feb|mar|apr|may|jun|jul|aug|sept?|oct|nov|dec)[a-z]*\.? \d)",
    // Addresses of the web and of mail.
    uR"(https?:|\bwww\.|[\p{L}\d]@[\p{L}\d-]+\.\p{L})",
    // Labels.
    uR"(^\P{L}*(?:subject|when|where|what|date|time|title|fwd?|re|aw|wg|betreff|datum|wann|wo|objet|asunto|fecha|oggetto|assunto|data|onderwerp|temat|件名|日時|主题|主題|时间|時間)\s*[:：])",
    // Loose marks at either end.
    uR"(^[^\p{L}\p{N}\p{S}("'«„“¿¡#「『【《（]|[,;:：|/\\>*•·\-–—~@&(]$|[|•\t]|\s[,;.?!](?!\w)|\(\s*\))",
    // Words that lead nowhere.
    uR"((?<![\p{L}\p{N}&])(?:at|on|in|from|to|by|the|for|and|um|am|im|vom|bis|von|le|du|au|el|las|los|dal|alle|il|del|nel|às|na|no|op|om|van|met|until|till|w|z|od|do|o)$)",
};

std::vector<std::unique_ptr<icu::RegexPattern>> compiled() {
    std::vector<std::unique_ptr<icu::RegexPattern>> patterns;
    for (const char16_t *each : kUntidy) {
        UErrorCode status = U_ZERO_ERROR;
        UParseError where;
        patterns.emplace_back(
            icu::RegexPattern::compile(each, UREGEX_CASE_INSENSITIVE, where, status));
        if (U_FAILURE(status))
            throw std::logic_error("a pattern of untidy titles cannot be read");
    }
    return patterns;
}

int columnsOf(const icu::UnicodeString &text) {
    int columns = 0;
    for (std::int32_t i = 0; i < text.length(); i = text.moveIndex32(i, 1)) {
        const auto width = u_getIntPropertyValue(text.char32At(i), UCHAR_EAST_ASIAN_WIDTH);
        columns += width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
    }
    return columns;
}

} // namespace

std::vector<std::filesystem::path> caseFiles(const std::filesystem::path &folder) {
    std::vector<std::filesystem::path> files;
    for (const auto &entry : std::filesystem::directory_iterator(folder))
        if (entry.path().extension() == ".jsonl")
            files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<json> readCases(const std::vector<std::filesystem::path> &files) {
    std::vector<json> cases;
    for (const std::filesystem::path &each : files) {
        std::ifstream file(each);
        if (!file)
            throw std::runtime_error("cannot read " + each.string());
        for (std::string line; std::getline(file, line);)
            if (!line.empty())
                cases.push_back(json::parse(line));
    }
    return cases;
}

bool Verdict::good() const {
    return std::all_of(checks.begin(), checks.end(), [](const auto &each) { return each.second; });
}

bool counts(const std::string &check, const json &given) {
    const json &expect = given["expect"];
    if (check == "end")
        return !(fits(expect, "endTime", "") && fits(expect, "endDate", ""));
    return check != "zone" || !fits(expect, "timeZone", "");
}

bool isTidy(const std::string &title) {
    static const auto kPatterns = compiled();
    const auto text = icu::UnicodeString::fromUTF8(title);
    if (text.isEmpty() || text.indexOf(u'\n') >= 0 || columnsOf(text) > kWidestTitle)
        return false;
    return std::none_of(kPatterns.begin(), kPatterns.end(), [&](const auto &pattern) {
        UErrorCode status = U_ZERO_ERROR;
        const std::unique_ptr<icu::RegexMatcher> matcher(pattern->matcher(text, status));
        return matcher->find();
    });
}

Verdict judge(const json &given) {
    const json &expect = given["expect"];
    const Reply reply = convert({given["text"].get_ref<const std::string &>(),
                                 given["referenceDate"].get_ref<const std::string &>(),
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
    verdict.checks["start"] =
        fits(expect, "startDate", draft.startDate) && fits(expect, "startTime", draft.startTime);
    const bool oneDay = fits(expect, "endDate", "") && draft.endDate == draft.startDate;
    verdict.checks["end"] = (oneDay || fits(expect, "endDate", draft.endDate)) &&
                            fits(expect, "endTime", draft.endTime);
    verdict.checks["zone"] = !expect.contains("timeZone") || isZone(expect["timeZone"], draft);
    if (expect.contains("location"))
        verdict.checks["location"] = isPlace(expect["location"], draft.location);
    if (!expect.contains("title"))
        return verdict;
    const bool named = hasKeywords(expect["title"]["keywords"], draft.title);
    verdict.checks["title"] = named;
    verdict.checks["tidy"] = named && isTidy(draft.title);
    return verdict;
}

} // namespace pindle::conversion::test
