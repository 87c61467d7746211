#include "PindleConversion/expressions/Starts.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include "PindleConversion/clean/CleanText.h"
#include "PindleConversion/expressions/Expression.h"
#include "PindleConversion/layout/Fields.h"
#include "PindleConversion/tokens/Annotate.h"
#include "PindleConversion/tokens/Tokenizer.h"

namespace pindle::conversion::test {

namespace {

using nlohmann::json;

Document documentOf(const std::string &text, const std::string &zone) {
    Document document;
    document.text = cleanText(text);
    document.tokens = tokenize(document.text, lexiconVocabulary());
    annotate(document, zone);
    layOut(document);
    return document;
}

/// The texts of all cases, and each again with its words in the order of another text's, which
/// puts words beside each other that no case has together.
std::vector<Document> documents() {
    std::vector<Document> all;
    std::string before;
    for (const auto &entry : std::filesystem::directory_iterator(PINDLE_CONVERSION_CASES)) {
        if (entry.path().extension() != ".jsonl")
            continue;
        std::ifstream file(entry.path());
        for (std::string line; std::getline(file, line);) {
            const json each = json::parse(line);
            const std::string text = each["text"];
            all.push_back(documentOf(text, each["referenceTimezone"]));
            std::string mixed;
            for (std::size_t at = 0; at < std::min(text.size(), before.size()); at += 7)
                mixed += text.substr(at, 7) + before.substr(at, 7);
            all.push_back(documentOf(mixed, each["referenceTimezone"]));
            before = text;
        }
    }
    return all;
}

TEST(Starts, nothingIsReadWhereNothingMayStart) {
    int skipped = 0;
    for (const Document &document : documents()) {
        for (const Field &field : document.fields) {
            const Reader reader(document, field.end);
            for (std::uint32_t i = field.begin; i < field.end; ++i) {
                const auto word = document.slice(document.tokens[i]);
                std::uint32_t next = i;
                TimeMention zone;
                skipped += mayStartDate(reader, i) ? 0 : 1;
                EXPECT_FALSE(!mayStartDate(reader, i) && readDate(reader, i)) << word;
                EXPECT_FALSE(!mayStartRelativeDate(reader, i) && readRelativeDate(reader, i))
                    << word;
                EXPECT_FALSE(!mayStartDuration(reader, i) && readDuration(reader, i, true)) << word;
                EXPECT_FALSE(!mayStartTime(reader, i) && readTime(reader, i, true, true)) << word;
                EXPECT_FALSE(!mayStartSpokenClock(reader, i) && readSpokenClock(reader, i, next))
                    << word;
                EXPECT_FALSE(!mayStartZone(reader, i) && readZone(reader, i, false, zone) != i)
                    << word;
            }
        }
    }
    EXPECT_GT(skipped, 0);
}

} // namespace

} // namespace pindle::conversion::test
