#include <algorithm>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <sstream>
#include <stdexcept>

#include <gtest/gtest.h>
#include <unicode/timezone.h>

#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/lexicons/LexiconIndex.h"
#include "PindleConversion/lexicons/compiler/LexiconFile.h"
#include "PindleConversion/tokens/Languages.h"
#include "PindleConversion/tokens/Unspaced.h"

namespace pindle::conversion::test {

namespace {

std::vector<LexiconFile> languages() {
    std::vector<LexiconFile> all;
    for (const auto &each : std::filesystem::directory_iterator(PINDLE_LEXICONS)) {
        if (each.path().extension() != ".lexicon" || each.path().stem() == "shared")
            continue;
        std::ostringstream text;
        text << std::ifstream(each.path()).rdbuf();
        all.push_back(readLexicon(text.str(), each.path().filename()));
    }
    return all;
}

LexiconFile without(LexiconFile lexicon, Meaning meaning) {
    std::erase_if(lexicon.entries, [&](const auto &entry) { return entry.meaning == meaning; });
    return lexicon;
}

TEST(Lexicons, everyLanguageHasTheMandatoryTables) {
    ASSERT_FALSE(languages().empty());
    for (const LexiconFile &lexicon : languages()) {
        EXPECT_EQ(lexicon.code.size(), 2U);
        EXPECT_EQ(missingTables(lexicon), std::vector<std::string>{}) << lexicon.code;
    }
}

TEST(Lexicons, aMissingTableIsFound) {
    for (const LexiconFile &lexicon : languages())
        for (Meaning meaning : {Meaning::Month, Meaning::Weekday, Meaning::RelativeDay,
                                Meaning::Event, Meaning::LabelWord, Meaning::Greeting,
                                Meaning::HourMark, Meaning::RoleWord, Meaning::Cancelled}) {
            const auto missing = missingTables(without(lexicon, meaning));
            EXPECT_NE(std::find(missing.begin(), missing.end(), tableName(meaning)), missing.end())
                << lexicon.code << " " << tableName(meaning);
        }
}

TEST(Lexicons, aMissingMonthOrMessageIsFound) {
    for (LexiconFile lexicon : languages()) {
        std::erase_if(lexicon.entries, [](const auto &entry) {
            return entry.meaning == Meaning::Month && entry.value == 7;
        });
        lexicon.messages[static_cast<std::size_t>(Notice::InPast)].clear();
        const auto missing = missingTables(lexicon);
        EXPECT_EQ(std::set<std::string>(missing.begin(), missing.end()),
                  (std::set<std::string>{"month 7", "message in-past"}))
            << lexicon.code;
    }
}

TEST(Lexicons, theCompiledTablesHoldEveryLanguage) {
    std::set<std::string> compiled;
    for (const LanguageInfo &info : kTables.languages)
        compiled.insert(std::string(info.code));
    EXPECT_EQ(compiled.size(), languages().size() + 1) << "and the shared words";
    for (const LexiconFile &lexicon : languages())
        EXPECT_EQ(compiled.count(lexicon.code), 1U) << lexicon.code;
}

TEST(Lexicons, theTablesStayBelowEightMegabytes) {
    constexpr std::size_t kMost = 8'000'000;
    std::size_t text = 0;
    for (const LexiconWord &word : kTables.words)
        text += word.length;
    EXPECT_LT(kTables.places.size_bytes() + kTables.words.size_bytes() +
                  kTables.senses.size_bytes() + kTables.phrases.size_bytes() +
                  kTables.phraseWords.size_bytes() + kTables.letters.size_bytes() +
                  kTables.firstLetters.size_bytes() + text,
              kMost);
}

TEST(Lexicons, wordsAreFoundAndOthersAreNot) {
    EXPECT_NE(findWord("monday"), 0U);
    EXPECT_NE(findWord("donnerstagabend"), 0U) << "a compound";
    EXPECT_NE(findWord("maerz"), 0U) << "without its dots";
    EXPECT_NE(findWord("marz"), 0U);
    EXPECT_EQ(findWord("zxqv"), 0U);
    EXPECT_EQ(findWord(""), 0U);
}

TEST(Lexicons, everyWordIsFoundWithItsSenses) {
    std::uint32_t number = 0;
    for (const LexiconWord &each : kTables.words) {
        ++number;
        const std::string_view word = textOf(each);
        EXPECT_EQ(findWord(word), number) << word;
        EXPECT_EQ(sensesOf(each).size(), each.singles) << word;
        for (const Sense &sense : sensesOf(each)) {
            EXPECT_EQ(sense.length, 1) << word;
            EXPECT_EQ(sense.languages & ~each.languages, 0) << word;
        }
        for (const Phrase &phrase : kTables.phrases.subspan(each.firstPhrase, each.phrases)) {
            EXPECT_GT(phrase.sense.length, 1) << word;
            EXPECT_TRUE(mayFollow(each, phrase.second)) << word;
            const auto found = phrasesWith(each, phrase.second);
            EXPECT_TRUE(found.data() <= &phrase && &phrase < found.data() + found.size()) << word;
        }
    }
}

TEST(Lexicons, wordsOfOneByteAreFoundWithoutHashing) {
    for (std::size_t c = 1; c < kTables.oneByte.size(); ++c) {
        const std::string word(1, static_cast<char>(c));
        EXPECT_EQ(kTables.oneByte[c], findWord(word)) << word;
    }
}

TEST(Lexicons, wordsWithoutSpacesAreFoundLetterByLetter) {
    int found = 0;
    for (const LexiconWord &each : kTables.words) {
        const std::string_view word = textOf(each);
        if (unspacedScript(decodeAt(word, 0).value) == Unspaced::None)
            continue;
        const std::string text = "a" + std::string(word) + "~";
        const UnspacedWord match = longestUnspaced(text, 1, decodeAt(text, 1));
        EXPECT_EQ(match.bytes, word.size()) << word;
        EXPECT_EQ(match.word(), findWord(word)) << word;
        EXPECT_EQ(match.counter(), (each.flags & kCounter) != 0) << word;
        ++found;
    }
    EXPECT_GT(found, 0);
    const auto longest = [](const std::string &text) {
        return longestUnspaced(text, 0, decodeAt(text, 0)).bytes;
    };
    EXPECT_EQ(longest("zxqv"), 0U);
    EXPECT_EQ(longest("\xE4\xBC"), 0U) << "an ill-formed letter";
    EXPECT_EQ(longest("\xE4\xBC\x9A\xE8"), 3U) << "an ill-formed letter behind a word";
}

TEST(Lexicons, aZoneTellsTheLanguagesOfAllNamesItStartsWith) {
    std::set<std::string> zones{"", "A", "Zulu", "\xFF"};
    for (const SpokenZone &each : kTables.zones) {
        zones.emplace(each.name);
        zones.emplace(each.name.substr(0, each.name.size() - 1));
        zones.insert(std::string(each.name) + "A");
        zones.insert(std::string(each.name) + "z/x");
    }
    for (const std::string &zone : zones) {
        LanguageScores scores;
        scores.addZone(zone);
        std::uint32_t expected = 0;
        for (const SpokenZone &each : kTables.zones)
            expected |= zone.starts_with(each.name) ? each.languages : 0;
        for (std::size_t i = 0; i < kTables.languages.size(); ++i)
            EXPECT_EQ(scores.of(static_cast<LanguageId>(i)) > 0, (expected >> i & 1U) != 0) << zone;
    }
}

TEST(Lexicons, everyZoneIsOneOfTheTzDatabase) {
    std::set<std::string> zones;
    for (const std::string_view note : kTables.notes) {
        std::istringstream names{std::string(note)};
        for (std::string name; std::getline(names, name, '|');)
            if (name.find('/') != std::string::npos)
                zones.insert(name);
    }
    EXPECT_GT(zones.size(), 50U);
    for (const std::string &zone : zones) {
        const std::unique_ptr<icu::TimeZone> known(
            icu::TimeZone::createTimeZone(icu::UnicodeString::fromUTF8(zone)));
        EXPECT_TRUE(*known != icu::TimeZone::getUnknown()) << zone;
    }
}

TEST(Lexicons, aFaultInALexiconNamesItsLine) {
    for (const char *text :
         {"language = xx\n[no-such-table]\nword\n", "language = xx\ncolour = red\n",
          "[month]\nx = january\n", "[event]\nfunny = party\n", "[message]\nno-such = Hello.\n"}) {
        try {
            readLexicon(text, "test.lexicon");
            FAIL() << text;
        } catch (const std::runtime_error &error) {
            EXPECT_NE(std::string(error.what()).find("test.lexicon:2"), std::string::npos)
                << error.what();
        }
    }
}

} // namespace

} // namespace pindle::conversion::test
