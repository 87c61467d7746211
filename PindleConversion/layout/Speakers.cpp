#include "PindleConversion/layout/Speakers.h"

namespace pindle::conversion {

namespace {

/// The token behind "(11:32)", or `i`.
std::uint32_t afterBracketedTime(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLongest = 8;
    if (!reader.number(i + 1, 0, 31) || !(reader.symbol(i + 2, ':') || reader.symbol(i + 2, '.')))
        return i;
    for (std::uint32_t k = i + 3; k < i + kLongest && reader.at(k); ++k)
        if (reader.symbol(k, ')'))
            return k + 1;
    return i;
}

/// The token behind "2026-03-04 02:17:55,103" or "Mar  4 02:17:55" before other words, or `i`:
/// only a machine counts the seconds.
std::uint32_t afterMachineStamp(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLongestDate = 8;
    if (!reader.number(i, 1, 9999, 4) && !reader.has(i, Meaning::Month))
        return i;
    const auto joins = [&](std::uint32_t at) { return reader.symbol(at, ':') && reader.glued(at); };
    std::uint32_t hour = i + 1;
    while (hour < i + kLongestDate && reader.at(hour) && !joins(hour + 1))
        ++hour;
    if (!joins(hour + 1) || !joins(hour + 3) || !reader.number(hour, 0, 23) ||
        !reader.number(hour + 2, 0, 59) || !reader.number(hour + 4, 0, 59))
        return i;
    std::uint32_t end = hour + 5;
    const bool fraction = (reader.symbol(end, ',') || reader.symbol(end, '.')) &&
                          reader.glued(end) && reader.glued(end + 1) && reader.at(end + 1) &&
                          reader.token(end + 1).kind == TokenKind::Number;
    end += fraction ? 2 : 0;
    const bool machine = fraction || reader.token(hour + 4).number != 0;
    return machine && reader.at(end) ? end : i;
}

} // namespace

std::uint32_t speaker(const Reader &reader, std::uint32_t i) {
    std::uint32_t j = i;
    // "Coach Dan:"
    const bool titled =
        reader.has(i, Meaning::Person) && reader.token(i).capital &&
        (reader.symbol(i + 1, ':') || (reader.word(i + 1) && reader.token(i + 1).capital));
    if (titled)
        j = reader.word(i + 1) ? i + 2 : i + 1;
    while (!titled && j < i + 4 && reader.word(j) &&
           (j == i ||
            (reader.token(j).unspaced ? reader.glued(j) : j < i + 2 && reader.token(j).capital))) {
        // "阿Kit", "Kit姐": a name in other letters, whatever they mean elsewhere.
        if (!reader.token(j).unspaced && reader.token(j).capital &&
            (j > i ? reader.token(i).unspaced && reader.glued(j)
                   : reader.word(j + 1) && reader.token(j + 1).unspaced && reader.glued(j + 1))) {
            ++j;
            continue;
        }
        // "りな": a sign of a name may be a particle elsewhere.
        const bool sign = reader.token(j).isOneSign() && (j > i || reader.word(j + 1));
        // "Ale" is a beer elsewhere.
        const Sense *event = reader.sense(j, Meaning::Event);
        const bool kind =
            event && (event->isOf(reader.token(j).language) || event->isOf(kSharedWords));
        if (kind || reader.has(j, Meaning::LabelWord) ||
            (!sign && (reader.has(j, Meaning::TitleLead) || reader.has(j, Meaning::TitleTail))))
            return kNoSpeaker;
        ++j;
    }
    // "<dana> text"
    if (reader.symbol(i, '<') && reader.word(i + 1) && reader.symbol(i + 2, '>') &&
        reader.glued(i + 1) && reader.at(i + 3))
        return i + 3;
    if (j > i && reader.symbol(j, '('))
        j = afterBracketedTime(reader, j);
    return j > i && reader.symbol(j, ':') && reader.at(j + 1) ? j + 1 : kNoSpeaker;
}

std::uint32_t afterStamp(const Reader &reader, std::uint32_t i) {
    constexpr std::uint32_t kLongestStamp = 16;
    if (!reader.symbol(i, '[')) {
        // "ERROR 2026-03-04 02:17:55"
        constexpr std::uint32_t kFirstYear = 1970;
        const bool level = reader.number(i + 1, kFirstYear, 9999, 4) && reader.word(i) &&
                           reader.symbol(i + 2, '-');
        const std::uint32_t stamp = level ? i + 1 : i;
        const std::uint32_t end = afterMachineStamp(reader, stamp);
        return end != stamp ? end : i;
    }
    // "【5月9日】遠足": wide brackets set off what matters.
    if (reader.token(i).end - reader.token(i).begin > 1)
        return i;
    for (std::uint32_t j = i + 1; j < i + kLongestStamp && reader.at(j); ++j)
        if (reader.symbol(j, ']'))
            return reader.number(i + 1, 0, 9999, 4) ? j + 1 : i;
    return i;
}

bool isConversation(const Document &document) {
    constexpr std::uint32_t kFewestLines = 2;
    if (document.lines < kFewestLines)
        return false;
    const auto &tokens = document.tokens;
    const auto size = static_cast<std::uint32_t>(tokens.size());
    std::uint32_t lines = 0;
    bool lineStart = true;
    for (std::uint32_t i = 0; i < size; ++i) {
        const Reader reader(document, size);
        if (lineStart && speaker(reader, afterStamp(reader, i)) != kNoSpeaker)
            ++lines;
        lineStart = tokens[i].kind == TokenKind::LineBreak;
    }
    return lines >= kFewestLines;
}

} // namespace pindle::conversion
