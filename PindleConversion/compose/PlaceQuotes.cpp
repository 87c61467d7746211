#include "PindleConversion/compose/PlaceFinder.h"

namespace pindle::conversion {

namespace {

constexpr int kLedTo = 58; ///< for what a marker leads to
constexpr int kCalled = 34;

} // namespace

std::uint32_t PlaceFinder::quoteClosing(const Reader &reader, std::uint32_t open) const {
    // "「", "“": the marks of scripts without spaces have several bytes.
    const Token &mark = token(open);
    if (!reader.symbol(open, '"') || mark.end - mark.begin < 2 || !token(open + 1).unspaced)
        return open;
    for (std::uint32_t i = open + 1; i < open + kLongestName && reader.at(i); ++i) {
        if (reader.symbol(i, '"'))
            return i;
        if (token(i).used)
            return open;
    }
    return open;
}

bool PlaceFinder::readsOn(const Reader &reader, TokenSpan span) const {
    const std::uint32_t close = quoteClosing(reader, span.begin);
    return reader.has(close + 1, Meaning::PlaceStop) && !isPlaceNoun(reader, close + 1);
}

bool PlaceFinder::markedQuote(const Reader &reader, std::uint32_t i, const Sense &marker,
                              TokenSpan name) {
    std::uint32_t open = name.end;
    // "会場は駅前の「鳥はち」です"
    if (open > name.begin && reader.has(open, Meaning::Of))
        ++open;
    const std::uint32_t close = quoteClosing(reader, open);
    // "去“老成都”吃火锅"
    static constexpr Meanings kThere{Meaning::Event, Meaning::PlaceBehind, Meaning::PlaceStop};
    const bool leads = marker.value == 1 || reader.mayHave(close + 1, kThere);
    if (!leads || close == open || (marker.value != 1 && open != name.begin) ||
        i + marker.length != name.begin || (open > name.begin && !token(name.begin).unspaced))
        return false;
    // "在“悦读”书吧"
    if (open == name.begin && isPlaceNoun(reader, close + 1) && reader.glued(close + 1)) {
        offer({open, nameEnd(reader, close + 1)}, kLedTo, i);
        return true;
    }
    // "在“青松”项目评审会上" tells no place, where "お店は「焼肉 炎」" does.
    static constexpr Meanings kEnds{Meaning::PlaceBehind, Meaning::PlaceStop, Meaning::TitleTail};
    const Shape shape = shapeOf({open + 1, close});
    if (marker.value == 1 && marker.length == 1 && token(i).isOneSign() && !shape.noun &&
        (shape.event || (reader.word(close + 1) && !reader.mayHave(close + 1, kEnds))))
        return false;
    if (open == name.begin)
        offer({open + 1, close}, kLedTo, i);
    else
        offer({name.begin, close + 1}, kLedTo, i);
    return true;
}

void PlaceFinder::quoted(const Reader &reader, const Field &field, std::uint32_t open) {
    const std::uint32_t close = quoteClosing(reader, open);
    if (close == open || open < m_choice.anchor() || open == field.begin)
        return;
    // "「串よし」予約しといた"
    if (reader.has(close + 1, Meaning::GeneralEvent) && reader.glued(close + 1))
        return offer({open + 1, close}, kCalled, open);
    // "テーマは「学校と地域」です": what is told of something else.
    const Token &before = token(open - 1);
    const bool named =
        isPlaceNoun(reader, close - 1) || (isPlaceNoun(reader, open + 1) && !before.used);
    if (!named || (before.kind == TokenKind::Word && !before.used &&
                   reader.has(open - 1, Meaning::PlaceStop)))
        return;
    const Shape shape = shapeOf({open + 1, close});
    // "「みなと屋」の歴史": what is told of it.
    static constexpr Meanings kGoesOn{Meaning::PresentVerb, Meaning::TitleTail};
    const bool ends = close + 1 >= field.end || !reader.word(close + 1) ||
                      token(close + 1).spaceBefore ||
                      (reader.mayHave(close + 1, kGoesOn) && !token(close + 1).isOneSign()) ||
                      reader.has(close + 1, Meaning::PlaceBehind);
    if (shape.event || !ends)
        return;
    bool event = false;
    for (std::uint32_t i = field.begin; i < open && !event; ++i)
        event = reader.has(i, Meaning::Event);
    if (event)
        offer({open + 1, close}, kCalled, open);
}

} // namespace pindle::conversion
