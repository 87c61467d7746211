#pragma once

#include "PindleConversion/compose/Compose.h"
#include "PindleConversion/compose/TitleWords.h"

namespace pindle::conversion {

/// Words that may be the title, and where they stand.
struct TitleCandidate {
    const Field &field;
    const Run &run;
    TokenSpan part;    ///< of the run
    TokenSpan trimmed; ///< the part without fillers
    bool alone;        ///< the run is its whole field
    bool first;        ///< nothing before it could be a title
    int order;         ///< the run's number, from 1
};

/// Weighs candidates for the title against each other.
class TitleScore : private TitleWords {
public:
    struct Weight {
        int score;
        bool opens; ///< what follows is no longer the first that the text says
    };

    TitleScore(const Document &document, const Choice &choice)
        : TitleWords(document)
        , m_choice(choice) {}

    /// How likely the candidate is the title, of at least one token in `trimmed`.
    Weight weigh(const TitleCandidate &candidate) const;

private:
    // TitleScore.cpp
    /// Where the candidate stands, seen from the words that say when.
    int positionScore(const TitleCandidate &candidate) const;
    /// How the candidate stands out as the first line, and what its words and form say.
    int contentScore(const TitleCandidate &candidate, bool kind) const;
    /// "... invite all members to the summer party": what stands behind "to".
    bool isInvitedTo(TokenSpan part) const;
    /// What takes from a candidate.
    int penalties(const TitleCandidate &candidate) const;
    /// Less for a greeting, small talk or a page's head that the part opens or ends with.
    int openingPenalties(const Reader &reader, const TitleCandidate &candidate) const;
    /// Less for words that say who, where or how much rather than what.
    int wordPenalties(const Reader &reader, const TitleCandidate &candidate) const;
    /// "Our engineer has the flu, so the recording ...": why, before what happens.
    bool leadsToNews(const TitleCandidate &candidate) const;
    /// "Please hand in your timesheets by Thursday": what is asked for by the event's day.
    bool asksFor(const TitleCandidate &candidate) const;
    /// "The club invites you": a host, up to token `end`.
    bool invitesAtEnd(std::uint32_t begin, std::uint32_t end) const;
    /// At token `i` a day is named that is not the event's.
    bool isOtherDay(std::uint32_t i) const;
    /// Less for a line that leads to what follows, names its hosts or signs.
    int linePenalties(const Reader &reader, const TitleCandidate &candidate) const;

    // TitleSurroundings.cpp
    /// "Your booking VL8K2P" above what is booked.
    bool isNotice(const Reader &reader, TokenSpan part) const;
    /// "Your booking VL8K2P", "FYI, see below": a notice, or nothing but one behind its fillers.
    bool saysNothing(const Reader &reader, TokenSpan part, TokenSpan trimmed) const;
    /// A few words behind the line that says goodbye.
    bool isSignature(const Field &field) const;
    /// "the gate code the day before": the part ends with a day that is not the event's.
    static bool endsOnEve(const Reader &reader, TokenSpan part);
    /// "Rendezvous 6pm at the Café Noir for Chloé's party": the event is named later.
    bool isBeforeMoment(TokenSpan trimmed) const;
    /// "Tobias, see you at nine": whom the text speaks to.
    bool isVocative(TokenSpan part, TokenSpan trimmed) const;
    /// "Thanks for signing up, Delphine!": whom a text greets that goes on with its event.
    bool greetsName(TokenSpan part, TokenSpan trimmed) const;
    /// A name in quotes, of some words.
    bool isQuoted(TokenSpan part) const;
    /// "my defence, entitled "Bogs"": what was named before is the event.
    bool isOnlyTopic(TokenSpan part) const;
    /// "Home › What's on", "Lincoln School News", "SOLD OUT".
    bool isPageHead(const Reader &reader, TokenSpan part) const;
    /// "Workshop" on a line above "Sourdough for Beginners".
    bool isKindAbove(const Field &field, TokenSpan trimmed) const;
    /// "Hill Primary School" on a line above "Trunk or Treat".
    bool isHostAbove(const Field &field, TokenSpan trimmed) const;
    /// "Reminder: your webinar starts tomorrow" above "Super changes explained".
    bool isPromised(const Field &field) const;
    /// "Salon Mèche Rebelle" above "Bonjour Camille, ...": who writes.
    bool isVenueAbove(const Field &field) const;
    /// A line that the event may be called by, up to its date, time or place.
    bool mayName(const Field &field) const;
    /// "Webinar: Reading a Balance Sheet", "Webinar | Reading a Balance Sheet": the kind stands
    /// before the name.
    bool isCalledByNext(TokenSpan trimmed) const;
    /// "【親子工作坊】小小烘焙師": so does one in brackets, with nothing else on the line.
    bool isKindInBrackets(TokenSpan trimmed) const;
    /// "The jumble sale returns! ... Sale: Saturday": said before with what tells it apart.
    bool wasNamedBefore(std::uint32_t i) const;
    /// "運動会のご案内", "关于春游的通知": a heading says that the event is announced.
    bool isAnnouncement(const Reader &reader, TokenSpan part, TokenSpan trimmed) const;
    /// "水務署通知：", "物业公告：": who tells, where nothing says what of.
    bool namesSender(TokenSpan part, TokenSpan trimmed) const;
    /// "Tax Help" of "Free Tax Help": several words, all in capitals.
    bool isHeadline(const Reader &reader, TokenSpan words) const;
    /// "Bring a plate, cutlery and a chair": a part of a sentence that lists things.
    bool goesOnList(const Reader &reader, const TitleCandidate &candidate) const;
    /// "Fahrzeugausweis mitnehmen" behind a comma: what one is asked for, its verb at the end.
    bool endsInRequest(const Reader &reader, const TitleCandidate &candidate) const;
    /// A short line without a sentence's full stop.
    bool isHeading(TokenSpan part) const;

    const Choice &m_choice;
};

} // namespace pindle::conversion
