#include <algorithm>
#include <array>
#include <string_view>

#include "PindleConversion/compose/PlaceFinder.h"

namespace pindle::conversion {

namespace {

constexpr std::uint32_t kOnlineReach = 400; ///< tokens that are asked whether the event is online

/// Hosts of meetings; a link to one is where the event is.
constexpr std::array<std::string_view, 12> kMeetingHosts{
    "zoom.us",     "teams.microsoft", "teams.live",    "meet.google", "webex.com", "whereby.com",
    "gotomeeting", "meet.jit.si",     "bluejeans.com", "skype.com",   "/join",     "meet"};

} // namespace

bool PlaceFinder::isOnlineDeed(const Reader &reader, const Field &field, std::uint32_t i,
                               const Sense &online) const {
    const Sense *chatter = reader.sense(i, Meaning::Chatter);
    if ((chatter && chatter->length > online.length) || endsPhrase(reader, i))
        return true;
    // "the online form has to be in by 31 January"
    const std::uint32_t day = m_choice.dateSpan.begin;
    if (!m_choice.startMinute && day > 0 &&
        Reader(m_document, m_choice.dateSpan.end).has(day - 1, Meaning::DueMarker))
        return true;
    // "returns must be in online by 11.59pm on 31 January"
    const std::uint32_t due = i + online.length;
    const Sense *marker = reader.sense(due, Meaning::DueMarker);
    const std::uint32_t moment = marker ? due + marker->length : 0;
    if (marker && (moment == m_choice.timeSpan.begin || moment == m_choice.dateSpan.begin))
        return true;
    const std::uint32_t next = i + 1;
    // "Online-Seminar Steuern"
    if (reader.symbol(next, '-') && reader.glued(next) && reader.glued(next + 1) &&
        reader.has(next + 1, Meaning::Event))
        return true;
    // "teams of 4"
    const std::uint32_t count = reader.skip(i + online.length, Meaning::Of);
    if (count != i + online.length && !token(i).capital &&
        (token(count).kind == TokenKind::Number || reader.has(count, Meaning::Number)))
        return true;
    return i == field.begin && reader.word(next) && !token(next).used && !token(next).capital &&
           !token(next).unspaced && !reader.has(next, Meaning::PlaceMarker) &&
           !reader.has(next, Meaning::Event) && !reader.has(next, Meaning::Person);
}

void PlaceFinder::links(const Field &field, TokenSpan part) {
    for (std::uint32_t i = part.begin; i < part.end; ++i) {
        if (token(i).kind != TokenKind::Link)
            continue;
        const auto text = m_document.slice(token(i));
        const bool meeting =
            std::any_of(kMeetingHosts.begin(), kMeetingHosts.end(), [&](std::string_view host) {
                return text.find(host) != std::string_view::npos;
            });
        if (meeting || field.label == Label::Link || isCalledLink(field, i) || heldOnline())
            offer({i, i + 1}, kLeastScore + (meeting ? 4 : 2), m_choice.anchor());
    }
}

bool PlaceFinder::isCalledLink(const Field &field, std::uint32_t link) const {
    constexpr std::uint32_t kReach = 8;
    const Reader reader(m_document, link);
    for (std::uint32_t i = link; i > field.begin && link - i < kReach; --i) {
        const Sense *label = reader.sense(i - 1, Meaning::LabelWord);
        if (label && label->value == static_cast<int>(Label::Link))
            return true;
    }
    return false;
}

bool PlaceFinder::heldOnline() {
    if (!m_online) {
        const auto size = static_cast<std::uint32_t>(m_document.tokens.size());
        const Reader reader(m_document, size);
        static constexpr Meanings kOnline{Meaning::Online, Meaning::OnlineEvent};
        m_online = false;
        if (m_document.meanings.meets(kOnline))
            for (std::uint32_t i = 0; i < std::min(size, kOnlineReach) && !*m_online; ++i)
                m_online = reader.mayHave(i, kOnline);
    }
    return *m_online;
}

} // namespace pindle::conversion
