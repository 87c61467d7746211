#include "PindleConversion/tokens/Languages.h"

#include <algorithm>
#include <bit>

namespace pindle::conversion {

namespace {

constexpr int kWord = 120;        ///< a word that only one language has
constexpr int kShortWord = 40;    ///< one of one or two letters
constexpr int kZone = 50;         ///< the language of the user's zone
constexpr int kScript = 60;       ///< a word in letters that few languages use
constexpr std::size_t kShort = 2; ///< bytes

/// What each of so many languages that have a word gains by it.
constexpr std::array<int, kMostLanguages + 1> sharesOf(int gain) {
    std::array<int, kMostLanguages + 1> shares{};
    for (std::size_t i = 1; i < shares.size(); ++i)
        shares[i] = gain / static_cast<int>(i);
    return shares;
}
constexpr auto kShares = sharesOf(kWord);
constexpr auto kShortShares = sharesOf(kShortWord);

/// The bit of each language.
constexpr auto kBits = [] {
    std::array<int, kMostLanguages> bits{};
    for (std::size_t i = 0; i < bits.size(); ++i)
        bits[i] = 1 << i;
    return bits;
}();

/// The languages of all names that a zone's identifier starts with, a bit each. Of the names
/// sorted, the last one not behind it starts with all of them.
std::uint32_t languagesSpokenIn(std::string_view zone) {
    const auto names = kTables.zones;
    const auto behind = std::ranges::upper_bound(names, zone, {}, &SpokenZone::name);
    for (auto at = static_cast<std::size_t>(behind - names.begin()); at > 0;
         at = names[at - 1].shorter)
        if (zone.starts_with(names[at - 1].name))
            return names[at - 1].languages;
    return 0;
}

/// The languages of a script, a bit each.
std::uint32_t languagesOf(Script script) {
    static const auto languages = [] {
        std::array<std::uint32_t, kScripts> bits{};
        for (std::size_t i = 0; i < kTables.languages.size(); ++i)
            bits[static_cast<std::size_t>(kTables.languages[i].script)] |= 1U << i;
        return bits;
    }();
    return languages[static_cast<std::size_t>(script)];
}

} // namespace

void LanguageScores::addWord(const LexiconWord &word, std::size_t bytes) {
    // All at once is quicker than one after another: which they are is hard to foresee.
    const int gain = (bytes <= kShort ? kShortShares : kShares)[word.known];
    const int languages = word.languages;
    for (std::size_t i = 0; i < kMostLanguages; ++i)
        m_scores[i] += (languages & kBits[i]) != 0 ? gain : 0;
}

void LanguageScores::addScript(Script script, int words) {
    for (std::uint32_t rest = languagesOf(script); rest != 0; rest &= rest - 1)
        m_scores[static_cast<std::size_t>(std::countr_zero(rest))] += kScript * words;
}

void LanguageScores::add(const LanguageScores &other) {
    for (std::size_t i = 0; i < kTables.languages.size(); ++i)
        m_scores[i] += other.m_scores[i];
}

void LanguageScores::addZone(std::string_view zone) {
    for (std::uint32_t rest = languagesSpokenIn(zone); rest != 0; rest &= rest - 1)
        m_scores[static_cast<std::size_t>(std::countr_zero(rest))] += kZone;
}

LanguageId LanguageScores::best(std::uint32_t among, LanguageId otherwise) const {
    LanguageId result = otherwise;
    int most = 0;
    for (std::size_t i = 1; i < kTables.languages.size(); ++i)
        if ((among >> i & 1U) != 0 && m_scores[i] > most) {
            most = m_scores[i];
            result = static_cast<LanguageId>(i);
        }
    return result;
}

LanguageId englishLanguage() {
    static const LanguageId english = [] {
        for (std::size_t i = 0; i < kTables.languages.size(); ++i)
            if (kTables.languages[i].code == "en")
                return static_cast<LanguageId>(i);
        return kSharedWords;
    }();
    return english;
}

} // namespace pindle::conversion
