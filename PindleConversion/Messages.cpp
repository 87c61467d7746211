#include "PindleConversion/Messages.h"

#include "PindleConversion/tokens/Languages.h"

namespace pindle::conversion {

namespace {

std::string_view sentence(LanguageId language, Notice notice) {
    const auto text = languageInfo(language).messages[static_cast<std::size_t>(notice)];
    return text.empty() ? languageInfo(englishLanguage()).messages[static_cast<std::size_t>(notice)]
                        : text;
}

void fill(std::string &text, std::string_view mark, const std::string &value) {
    if (const auto at = text.find(mark); at != std::string::npos)
        text.replace(at, mark.size(), value);
}

} // namespace

std::string noticeText(const Document &document, const Choice &choice) {
    if (choice.notice == Notice::None)
        return {};
    std::string text(sentence(document.tokens[choice.anchor()].language, choice.notice));
    fill(text, "{day}", formatDay(choice.start));
    fill(text, "{time}", formatMinute(choice.startMinute.value_or(0)));
    fill(text, "{count}", std::to_string(choice.moreEvents));
    return text;
}

std::string refusalText(const Document &document, Notice notice) {
    const LanguageId language =
        document.tokens.empty() ? englishLanguage() : document.tokens.front().language;
    return std::string(sentence(language, notice));
}

} // namespace pindle::conversion
