#pragma once

#include <span>

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// What the words of a span say that may become the title.
class TitleWords {
public:
    explicit TitleWords(const Document &document)
        : m_document(document) {}

    /// Some word of the span has that meaning.
    bool contains(TokenSpan span, Meaning meaning) const;
    /// The words that name a kind of event.
    TokenSpan eventIn(TokenSpan span) const;
    /// Some word of the span is longer than a letter.
    bool hasLetters(TokenSpan span) const;
    /// More than the words around a time or place: "a las", "in the".
    bool says(TokenSpan span) const;
    /// "大床房 1间": so many of something.
    bool countsThings(TokenSpan span) const;
    /// Nothing but a greeting or small talk ("几点"), in a script without spaces.
    bool isSmallTalk(TokenSpan span) const;
    /// "打": one sign of a script without spaces, and no kind of event.
    bool isOneSign(TokenSpan span) const;
    /// Not only words that hold a sentence together: "hast du", "there is".
    bool hasContent(TokenSpan span) const;
    /// "The Smiths are happy to invite you to": the event is what follows.
    static bool announces(const Reader &reader, std::uint32_t i);
    /// "Wir laden alle Mitglieder zum Sommerfest ein": where the words for the event begin; `i`
    /// where nothing invites.
    static std::uint32_t invitedTo(const Reader &reader, std::uint32_t i);
    /// "You're registered for", where "you're registered" alone has that meaning.
    static bool leadsOn(const Reader &reader, std::uint32_t i, Meaning meaning);
    /// "Home › Music" leads to what follows.
    bool isCrumb(std::uint32_t i) const;
    /// "【" or "】".
    bool isWideBracket(std::uint32_t i) const;
    /// "VL8K2P": letters and numbers without a space.
    bool isCode(TokenSpan span) const;
    /// "CHG0041", "WO-7731 [Scheduled]": the number of a request, and how far it is.
    bool isTicket(TokenSpan span) const;
    /// "R. Subramaniam".
    bool isInitialed(TokenSpan span) const;
    /// "Maple room is taken": told of a place, and no event.
    bool isOfTaken(TokenSpan span) const;
    /// "Localizador QX7T2M": the number of a booking, or a seat's.
    static bool isReference(const Reader &reader, TokenSpan span);
    /// "KL 0592", "SQ326": the number of a flight.
    bool hasFlightNumber(TokenSpan span) const;
    /// "Home > Courses > Crafts": where a page stands.
    bool isTrail(TokenSpan span) const;
    /// "ul. Krótka 5": a kind of street, a name and a number.
    bool isAddress(TokenSpan span) const;
    /// A sign of a currency stands in the span.
    bool hasMoney(TokenSpan span) const;
    /// A capitalised word for a person.
    bool isPerson(const Reader &reader, std::uint32_t i) const;
    /// "NGUBANE/THANDI MS": who travels.
    static bool isPassenger(const Reader &reader, TokenSpan line);
    /// "Ann & Bo": two names and nothing else.
    bool isCouple(TokenSpan span) const;
    /// "Posted on", "by": what is left of a date's role.
    bool tellsRole(TokenSpan span) const;
    /// "Doors open" before the event itself.
    bool tellsSide(TokenSpan span) const;
    /// "concert", "kick-off": what begins, or the event's kind.
    bool tellsShow(TokenSpan span) const;
    /// "Wheels Day", "Odd Socks Day": a day with a name of its own.
    bool namesDay(const Reader &reader, TokenSpan trimmed) const;
    /// "Hill Primary School", "Grade 9": who tells of the event.
    bool isHost(TokenSpan line) const;
    /// "Chess club The Tower" says who, not what.
    bool namesHost(TokenSpan trimmed) const;
    /// "Re: pls read!": a phrase that begins in `before` and ends at `end` says nothing.
    static bool isInChatter(const Reader &reader, TokenSpan before, std::uint32_t end);
    /// "Session 1", "Game 3": what the whole is called stands elsewhere.
    bool isOneOfSeveral(const Reader &reader, TokenSpan trimmed) const;
    /// "Cursus 2614", "Oficina n.º 22": a kind with the number it has in a programme.
    bool isNumberedKind(TokenSpan span) const;
    /// "Party of 6", "Tech: Ray": what a label says beside the event.
    bool isDetail(const Reader &reader, TokenSpan trimmed) const;
    /// "Next session", "One screening only" below a heading: what there is one of.
    bool isNextOne(TokenSpan part, TokenSpan trimmed) const;
    /// "Gate 6", "Row K / Seat 22": `trimmed` ends with a number.
    bool isNumberedPlace(TokenSpan trimmed) const;
    /// "Microsoft Teams meeting", "Zoom call": how one meets, not what for.
    bool isOnlyOnline(TokenSpan trimmed) const;

private:
    /// Some word of the span has none of those meanings.
    bool hasWordWithout(TokenSpan span, std::span<const Meaning> meanings) const;

protected:
    const Token &token(std::uint32_t i) const { return m_document.token(i); }

    const Document &m_document;
};

} // namespace pindle::conversion
