#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "PindleConversion/Convert.h"
#include "PindleConversion/lexicons/LexiconIndex.h"

namespace {

using namespace pindle::conversion;

/// Deals out the fuzzer's bytes.
class Choices {
public:
    Choices(const std::uint8_t *data, std::size_t size)
        : m_data(data)
        , m_size(size) {}
    bool any() const { return m_at < m_size; }
    unsigned next(unsigned below) {
        unsigned value = 0;
        for (int i = 0; i < 2 && any(); ++i)
            value = value * 256 + m_data[m_at++];
        return value % below;
    }

private:
    const std::uint8_t *m_data;
    std::size_t m_size;
    std::size_t m_at = 0;
};

/// One of so many words, those with most meanings first.
std::string_view wordOf(Choices &choices, std::size_t words) {
    return textOf(kTables.words[choices.next(static_cast<unsigned>(words))]);
}

/// Texts of words that all mean something, with numbers and marks between them.
std::string textFrom(Choices &choices) {
    constexpr std::string_view marks[] = {" ",  " ", " ", " ",  "\n", ", ", ": ", "-",  ".", " (",
                                          ") ", "|", "/", "～", "、", "",   "'",  "\"", "。"};
    constexpr std::size_t kCommonWords = 1'024; ///< which most rules look for
    std::string text;
    while (choices.any()) {
        switch (choices.next(4)) {
        case 0:
            text += std::to_string(choices.next(60));
            break;
        case 1:
            text += std::to_string(1000 + choices.next(3000));
            break;
        case 2:
            text += wordOf(choices, kCommonWords);
            break;
        default:
            text += wordOf(choices, kTables.words.size());
        }
        text += marks[choices.next(static_cast<unsigned>(std::size(marks)))];
    }
    return text;
}

bool isClock(const std::string &text) {
    return text.empty() || (text.size() == 5 && text[2] == ':' && text < "24:00");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size) {
    Choices choices(data, size);
    const std::string text = textFrom(choices);
    const Reply reply = convert({text, "2026-03-11", "Europe/London"});
    if (reply.draft.has_value() == !reply.error.empty())
        std::abort();
    if (!reply.draft)
        return 0;
    const Draft &draft = *reply.draft;
    if (draft.startDate.size() != 10 || !isClock(draft.startTime) || !isClock(draft.endTime) ||
        (!draft.endDate.empty() && draft.endDate < draft.startDate))
        std::abort();
    for (const Evidence &each : reply.evidence)
        if (each.begin >= each.end || each.end > reply.cleanText.size())
            std::abort();
    return 0;
}
