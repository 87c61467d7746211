#include "PindleConversion/expressions/Starts.h"

#include <algorithm>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "PindleConversion/expressions/Expression.h"
#include "PindleConversion/layout/ReadDocument.h"
#include "tests/PindleConversion/Judge.h"

namespace pindle::conversion::test {

namespace {

/// The texts of all cases, and each again with its words in the order of another text's, which
/// puts words beside each other that no case has together.
std::vector<Document> documents() {
    std::vector<Document> all;
    std::string before;
    for (const auto &each : readCases(caseFiles(PINDLE_CONVERSION_CASES))) {
        const std::string text = each["text"];
        const std::string zone = each["referenceTimezone"];
        all.push_back(readDocument(text, zone));
        std::string mixed;
        for (std::size_t at = 0; at < std::min(text.size(), before.size()); at += 7)
            mixed += text.substr(at, 7) + before.substr(at, 7);
        all.push_back(readDocument(mixed, zone));
        before = text;
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
