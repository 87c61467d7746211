#include "PindleConversion/compose/TitleScore.h"

#include <algorithm>

namespace pindle::conversion {

namespace {

constexpr int kOpening = 20;        ///< for the words that a text opens with
constexpr int kTopic = 20;          ///< for what a conversation is about
constexpr int kFlight = 30;         ///< for the number of a flight
constexpr int kGeneric = 300;       ///< less for a label's value that says nothing: "Reminder"
constexpr int kCount = 60;          ///< less for what opens with a number: "2 guests"
constexpr int kPlaceName = 24;      ///< less for what rather names a place: "flat 4"
constexpr int kGeneralKind = 34;    ///< less for "appointment" before its day
constexpr int kNumbered = 40;       ///< less for one of several: "Session 1"
constexpr int kKindBeforeDate = 20; ///< less for a kind that only leads to the date
constexpr int kMarkersOnly = 40;    ///< less for "leaving", which only announces a time
constexpr int kBehind = 40;         ///< less for what is only said of a day: "is no good"
constexpr int kPresents = 60;       ///< less for who presents the event on a line of their own
constexpr int kInvites = 80;        ///< less for "The club invites" above what it invites to
constexpr int kHosts = 20;          ///< less for who invites on a line of their own
constexpr int kInvited = 36;        ///< for what a text invites to
constexpr int kAnnounced = 44;      ///< for "運動会のご案内" on a line of its own
constexpr int kOtherMoment = 50;    ///< less for what only tells when
constexpr int kPredicate = 40;      ///< less for what is said of something named before
constexpr int kReference = 110;     ///< less for "Booking reference QX7T2M"
constexpr int kCouple = 440;        ///< less for a label's value that names two people
constexpr int kTold = 40;           ///< less for what happened, told apart from the event
constexpr int kListed = 30;         ///< less for "cutlery and a chair" of what one brings
constexpr int kOther = 40;          ///< less for what a later line of a list announces
constexpr int kDoes = 16;           ///< less for a sentence that names no kind of event
constexpr int kNoContent = 30;      ///< less for words that say nothing of what happens

/// What a label says of the words behind it.
int labelScore(Label label) {
    switch (label) {
    case Label::Title:
        return 400;
    case Label::Note:
        return -60;
    case Label::Place:
        return -80;
    case Label::Deadline:
        return -60;
    case Label::Duration:
    case Label::Zone:
        return -80;
    default:
        return 0;
    }
}

/// `next` is on the line below and has no label.
bool isBelow(const Field &field, const Field &next) {
    return next.line == field.line + 1 && next.label == Label::None;
}

} // namespace

TitleScore::Weight TitleScore::weigh(const TitleCandidate &candidate) const {
    constexpr int kAnnouncement = -40;
    const auto &[field, run, part, trimmed, alone, first, order] = candidate;
    const Reader reader(m_document, part.end);
    const bool above = alone && (isKindAbove(field, trimmed) || isHostAbove(field, trimmed));
    const bool kind = isCalledByNext(trimmed) || above;
    const int less = penalties(candidate);
    const int score = labelScore(field.label) - std::min(order, 20) + 20 +
                      positionScore(candidate) + contentScore(candidate, kind) + less;
    const bool opens = !reader.has(part.begin, Meaning::Greeting) && !kind &&
                       less > kAnnouncement && !saysNothing(reader, part, trimmed) &&
                       !tellsRole(trimmed);
    return {score, opens};
}

int TitleScore::positionScore(const TitleCandidate &candidate) const {
    const auto &[field, run, part, trimmed, alone, first, order] = candidate;
    const std::uint32_t anchor = m_choice.anchor();
    const bool sameSentence = m_document.sameSentence(part.begin, anchor);
    int score = 0;
    // "Deadline: abstracts due 1 June" says of what.
    constexpr int kDue = 10;
    if (sameSentence && field.label == Label::Deadline && part.begin < anchor)
        score += kDue;
    if (sameSentence)
        score += part.begin < anchor ? 40 : 28;
    else if (token(part.begin).field == token(anchor).field)
        score += 8;
    else if (field.spoken && contains(trimmed, Meaning::Event) && !m_choice.timeSpan.empty() &&
             m_document.sameSentence(part.begin, m_choice.timeSpan.begin))
        score += 24;
    else if (field.spoken && contains(trimmed, Meaning::Event))
        score += kTopic;
    if (field.cell && &field == &m_document.fields.front())
        score += 20;
    if (run.beforeUsed && sameSentence && part.end == run.span.end)
        score += 4;
    return score;
}

int TitleScore::contentScore(const TitleCandidate &candidate, bool kind) const {
    const auto &[field, run, part, trimmed, alone, first, order] = candidate;
    const Reader reader(m_document, part.end);
    int score = 0;
    if (first && alone && !field.spoken && !saysNothing(reader, part, trimmed) && isHeading(part) &&
        !kind)
        score += 48;
    else if (first && !field.spoken && part.begin == field.begin &&
             !m_document.sameSentence(part.begin, m_choice.anchor()))
        score += kOpening;
    if (contains(trimmed, Meaning::Event) ? !namesHost(trimmed) : namesDay(reader, trimmed))
        score += 16;
    else if (!hasContent(trimmed) || isOneSign(trimmed))
        score -= kNoContent;
    // "You're invited to the private view of Salt Lines. Drinks from 6, Thursday ..."
    const Sense *lead = trimmed.end > trimmed.begin + 1 && announces(reader, part.begin)
                            ? reader.sense(part.begin, Meaning::TitleLead)
                            : nullptr;
    if (lead && trimmed.begin >= part.begin + lead->length && contains(trimmed, Meaning::Event) &&
        !m_document.sameSentence(part.begin, m_choice.anchor()))
        score += kInvited;
    if (alone && isHeading(part) && isAnnouncement(reader, part, trimmed))
        score += kAnnounced;
    if ((isQuoted(part) || isQuoted(trimmed)) && !isOnlyTopic(part))
        score += 30;
    if (m_choice.kind == EventKind::Travel && hasFlightNumber(trimmed))
        score += kFlight;
    if (m_document.meanings.has(Meaning::Inviting) && isInvitedTo(part))
        score += kInvited;
    return score;
}

bool TitleScore::isInvitedTo(TokenSpan part) const {
    constexpr std::uint32_t kLongest = 3;
    const Sense *to =
        part.begin > 0 && !token(part.begin - 1).used
            ? Reader(m_document, part.end).senseBefore(part.begin, Meaning::Inviting, kLongest)
            : nullptr;
    return to && to->value > 0 && contains(part, Meaning::Event);
}

int TitleScore::penalties(const TitleCandidate &candidate) const {
    const Reader reader(m_document, candidate.part.end);
    return openingPenalties(reader, candidate) + wordPenalties(reader, candidate) +
           linePenalties(reader, candidate);
}

int TitleScore::openingPenalties(const Reader &reader, const TitleCandidate &candidate) const {
    const auto &[field, run, part, trimmed, alone, first, order] = candidate;
    int score = 0;
    std::uint32_t begin = part.begin;
    while (begin + 1 < part.end && isEdgeMark(token(begin)))
        ++begin;
    // "guys pizza on Friday": the greeting is gone and a kind of event is left. "Team dinner"
    // and "Team building" greet nobody.
    const Sense *greeting = reader.sense(begin, Meaning::Greeting);
    const Sense *event = greeting ? reader.sense(begin, Meaning::Event) : nullptr;
    const bool compound = (reader.symbol(begin + 1, '-') && reader.glued(begin + 1)) ||
                          (event && event->length > greeting->length && token(begin).upper());
    // "Graag jullie dieetwensen doorgeven": a longer phrase asks for something.
    const Sense *asks = greeting ? reader.sense(begin, Meaning::TitleLead) : nullptr;
    const bool leads = asks && asks->length > greeting->length &&
                       trimmed.begin >= begin + asks->length && trimmed.begin < part.end;
    if (greeting && !compound && !leads && !leadsOn(reader, begin, Meaning::Greeting) &&
        !(greeting->length == 1 && reader.has(begin + 1, Meaning::Event)))
        // "of course" is all talk, though a course is a kind of event.
        score -= trimmed.begin > begin && contains(trimmed, Meaning::Event) &&
                         begin + greeting->length < trimmed.end &&
                         !(trimmed.end == trimmed.begin + 1 && isPerson(reader, trimmed.begin))
                     ? 8
                     : 70;
    const Sense *chatter = reader.sense(begin, Meaning::Chatter);
    const Sense *lead = reader.sense(begin, Meaning::TitleLead);
    // "Out of office"
    const Sense *named = chatter ? reader.sense(begin, Meaning::Event) : nullptr;
    if (named && named->length > chatter->length)
        chatter = nullptr;
    // "Please join us for a luncheon" invites.
    // and "Don't forget: essay due on Friday" names the event behind the colon.
    const bool calls = chatter && reader.symbol(begin + chatter->length, ':') &&
                       trimmed.begin > begin + chatter->length;
    const bool invites = calls || (chatter && lead && lead->length > chatter->length &&
                                   trimmed.begin >= begin + lead->length);
    // "Für die Besichtigung ..." names the event behind its lead.
    // "Free outdoor movie" names it as well.
    const bool led =
        (lead && trimmed.begin > begin && reader.has(trimmed.begin, Meaning::Event)) ||
        // "免费公开课"
        (chatter && token(begin).unspaced && reader.has(begin + chatter->length, Meaning::Event) &&
         reader.glued(begin + chatter->length)) ||
        (chatter && chatter->length == 1 && trimmed.begin == begin && token(begin).upper() &&
         (contains({begin + 1, trimmed.end}, Meaning::Event) ||
          (candidate.first && isHeadline(reader, {begin + 1, trimmed.end}))));
    // "Could you let Ann have your timesheets by noon" says what is due.
    const bool due = run.beforeUsed && hasContent(trimmed) &&
                     Reader(m_document, run.span.end).has(run.span.end - 1, Meaning::DueMarker);
    if ((chatter && !invites && !asksFor(candidate)) ||
        isInChatter(reader, {begin, trimmed.begin}, trimmed.end) ||
        reader.has(begin, Meaning::AsideLead))
        score -= led || due ? 20 : 40;
    if (trimmed.end == trimmed.begin + 1 && !says(trimmed) && !contains(trimmed, Meaning::Event))
        score -= kMarkersOnly;
    if (isPageHead(reader, {part.begin, std::max(part.begin, trimmed.end)}) ||
        isOnlyOnline(trimmed))
        score -= m_document.fields[token(part.begin).field].label == Label::Title ? kGeneric : 60;
    // "Early bird tickets on sale Monday" above the event
    const Sense *role = reader.sense(begin, Meaning::RoleWord);
    if (role &&
        (role->value == static_cast<int>(Role::Deadline) ||
         role->value == static_cast<int>(Role::Side)) &&
        role->length > 1 && !m_document.sameSentence(begin, m_choice.anchor()))
        score -= 40;
    if (begin < part.end && (token(begin).symbol == '(' ||
                             (part.begin > field.begin && token(part.begin - 1).symbol == '(')))
        score -= 25;
    // "before evensong", "end of 6th period": when it is, told by something else.
    static constexpr Meanings kWhen{Meaning::From, Meaning::MonthEnd};
    if (run.afterUsed && reader.mayHave(trimmed.begin, kWhen) && !token(trimmed.begin).unspaced &&
        (reader.has(trimmed.begin, Meaning::From) || !contains(trimmed, Meaning::Event)))
        score -= kOtherMoment;
    // "Abstracts (max 300 words) must reach the committee": what the sentence says of its subject.
    if (part.begin > field.begin && token(part.begin - 1).symbol == ')' &&
        reader.has(part.begin, Meaning::PresentVerb) &&
        m_document.sameSentence(part.begin - 1, part.begin))
        score -= kPredicate;
    // "1.30pm till the bell at 2.50": until when.
    static constexpr Meanings kUntil{Meaning::RangeTo};
    if (run.afterUsed && reader.mayHave(trimmed.begin, kUntil) &&
        reader.has(trimmed.begin, Meaning::DateMarker) && !contains(trimmed, Meaning::Event))
        score -= kOtherMoment;
    if (goesOnList(reader, candidate) || endsInRequest(reader, candidate))
        score -= kListed;
    // "保護者の皆様": whom the text speaks to.
    constexpr std::uint32_t kLongestAddress = 3;
    if (token(part.end - 1).unspaced &&
        reader.senseBefore(part.end, Meaning::Person, kLongestAddress))
        score -= 60;
    // "Gruß, Torben"
    constexpr std::uint32_t kLongestName = 2;
    if (part.begin > 1 && part.begin > m_choice.anchor() && token(part.begin - 1).symbol == ',' &&
        reader.has(part.begin - 2, Meaning::Greeting) && part.end == field.end &&
        trimmed.end - trimmed.begin <= kLongestName && !contains(trimmed, Meaning::Event))
        score -= 60;
    if (greetsName(part, trimmed))
        score -= 60;
    // "Vernissage "Schattenrisse" – Holzschnitte von ...": what is said of the name.
    if (part.begin > 1 && token(part.begin - 1).symbol == '-' &&
        token(part.begin - 2).symbol == '"' && field.begin + 2 < part.begin)
        score -= kPredicate;
    // "Come grab it Tuesday": talk about something that was named before.
    if (chatter && chatter->length > 1 && begin + chatter->length == part.end &&
        !contains(trimmed, Meaning::Event))
        score -= kOtherMoment;
    if (isVocative(part, trimmed))
        score -= 50;
    // "インフルエンザのため、": why.
    constexpr std::uint32_t kLongestReason = 2;
    const Sense *why = token(trimmed.end - 1).unspaced
                           ? reader.senseBefore(trimmed.end, Meaning::AsideLead, kLongestReason)
                           : nullptr;
    if (why && trimmed.begin + why->length < trimmed.end)
        score -= kPredicate;
    return score;
}

bool TitleScore::asksFor(const TitleCandidate &candidate) const {
    constexpr std::uint32_t kShortest = 3; ///< a verb, and of what
    const std::uint32_t end = candidate.run.span.end;
    const TokenSpan trimmed = candidate.trimmed;
    const Reader reader(m_document, end);
    constexpr std::uint32_t kLongest = 3; ///< "no later than"
    return trimmed.end >= trimmed.begin + kShortest && candidate.part.end == end &&
           (end == m_choice.dateSpan.begin || end == m_choice.timeSpan.begin) &&
           reader.senseBefore(end, Meaning::DueMarker, kLongest);
}

int TitleScore::wordPenalties(const Reader &reader, const TitleCandidate &candidate) const {
    const TokenSpan trimmed = candidate.trimmed;
    const bool event = contains(trimmed, Meaning::Event);
    constexpr std::uint32_t kLongestKind = 2;
    int score = 0;
    // "11:00 AM London": whose time it is.
    const Sense *city =
        candidate.run.afterUsed ? reader.sense(trimmed.begin, Meaning::ZoneWord) : nullptr;
    if (city && trimmed.begin + city->length == trimmed.end)
        score -= kPlaceName;
    // "Please pay the levy of £12 by Friday" names what is asked for.
    if (hasMoney(trimmed) && (isCurrencySign(token(trimmed.begin).symbol) || !asksFor(candidate)))
        score -= isCurrencySign(token(trimmed.begin).symbol) ? 60 : 30;
    if ((isCode(trimmed) && !hasFlightNumber(trimmed)) || isTrail(trimmed) || isTicket(trimmed))
        score -= 60;
    // "Interview plan - R. Subramaniam"
    if (trimmed.begin > candidate.field.begin && isInitialed(trimmed))
        score -= candidate.field.label == Label::Title ? kCouple : kInvites;
    if (isOfTaken(trimmed))
        score -= kBehind;
    const Sense *count = reader.sense(trimmed.begin, Meaning::Number);
    // "5th Annual Turkey Trot"
    // and "2-for-1 pizzas", "3-legged race"
    const bool ranked = (reader.has(trimmed.begin + 1, Meaning::OrdinalMark) ||
                         (reader.symbol(trimmed.begin + 1, '-') && reader.word(trimmed.begin + 2) &&
                          reader.glued(trimmed.begin + 2))) &&
                        reader.glued(trimmed.begin + 1) && !token(trimmed.begin).unspaced;
    const bool counts = count && count->value > 1 && !token(trimmed.begin).capital &&
                        !token(trimmed.begin).unspaced;
    if (((token(trimmed.begin).kind == TokenKind::Number && !ranked) || counts ||
         countsThings(trimmed)) &&
        !event)
        score -= kCount;
    if (isDetail(reader, trimmed))
        score -= kCount;
    if (isAddress(trimmed))
        score -= 24;
    else if (!candidate.first && !event &&
             (contains(trimmed, Meaning::PlaceNoun) || contains(trimmed, Meaning::StreetWord)))
        score -= kPlaceName;
    // "Wheels Day is on again! Year 1 can bring a scooter on Thursday": who does what; but "Lunch
    // is on me".
    if (!candidate.first && !candidate.run.afterUsed && token(trimmed.begin).upper() &&
        candidate.part.begin == candidate.run.span.begin &&
        contains({trimmed.begin + 1, trimmed.end}, Meaning::PresentVerb) &&
        !reader.has(reader.skip(trimmed.begin, Meaning::Event), Meaning::PresentVerb))
        score -= kDoes;
    // "We found a set of keys." above the event's own sentence
    if (contains(trimmed, Meaning::PastVerb))
        score -= event || contains(candidate.part, Meaning::PresentVerb) ||
                         m_document.sameSentence(trimmed.begin, m_choice.anchor())
                     ? 8
                     : kTold;
    // "Donnerstag kann ich doch nicht"
    // "报名表5月8日17:00前交到教务处": by when.
    const Sense *said = reader.sense(candidate.part.begin, Meaning::RoleBehind);
    const bool due = said && said->value == static_cast<int>(Role::Deadline) &&
                     candidate.run.afterUsed && !token(candidate.part.begin).isOneSign();
    if (said && !event && (due || !token(candidate.part.begin).unspaced))
        score -= kBehind;
    // "I'll text you the gate code the day before": not what happens on the day.
    if (!event && endsOnEve(reader, candidate.part))
        score -= kBehind;
    // "The concert is postponed until" tells of the event itself.
    if (tellsRole(trimmed) && !(tellsShow(trimmed) && !isBeforeMoment(trimmed)))
        score -= tellsSide(trimmed) ? 80 : 40;
    // "Room A" beside the time
    const Sense *kind =
        candidate.first || event ? nullptr : reader.sense(trimmed.begin, Meaning::PlaceNoun);
    if (kind && trimmed.begin + kind->length == trimmed.end && !token(trimmed.begin).unspaced)
        score -= kNumbered;
    const Sense *general = reader.sense(trimmed.begin, Meaning::GeneralEvent);
    if (general && trimmed.begin + general->length == trimmed.end &&
        (isBeforeMoment(trimmed) || isBeforeMoment(candidate.part)))
        score -= kGeneralKind;
    // "can we push tomorrow's 1:1 to 4:15?"
    if (trimmed.end == trimmed.begin + 1 && !event && reader.has(trimmed.begin, Meaning::Moving))
        score -= kMarkersOnly;
    // "DOJ 03-Mar-2027": a label that nothing ends.
    const Sense *label = reader.sense(trimmed.begin, Meaning::LabelWord);
    if (label && trimmed.begin + label->length == trimmed.end && !event && isBeforeMoment(trimmed))
        score -= kMarkersOnly;
    // "Saturdays in March"
    if (trimmed.end - trimmed.begin == 1)
        score -= reader.has(trimmed.begin, Meaning::Month) ? kCount : event ? 0 : 6;
    if (isCalledByNext(trimmed))
        score -= 30;
    // "Meeting: Wednesday" below the line that says what is met for.
    if (!candidate.first && trimmed.begin == candidate.field.begin &&
        trimmed.end <= trimmed.begin + kLongestKind && token(trimmed.end).symbol == ':' &&
        token(trimmed.end + 1).used)
        score -= kKindBeforeDate;
    if (trimmed.end == trimmed.begin + 1 && token(trimmed.end).symbol == ':' &&
        token(trimmed.end + 1).used && wasNamedBefore(trimmed.begin))
        score -= kNumbered;
    // "Film: Twelve Angry Men – doors 7, film 7.30": what begins was named.
    if (candidate.field.label == Label::Title && trimmed.begin > candidate.field.begin &&
        trimmed.end == trimmed.begin + 1 && !token(trimmed.begin).capital &&
        isBeforeMoment(trimmed))
        score -= kNumbered;
    // "EN | FR" above a page
    if (candidate.field.cell && trimmed.end == trimmed.begin + 1 && !event &&
        token(trimmed.begin).end - token(trimmed.begin).begin <= kLongestKind &&
        candidate.field.line != m_document.fields[token(m_choice.anchor()).field].line)
        score -= kCount;
    // "3 lessen" below the name of the course
    // and behind its comma
    const bool behind = !candidate.first || candidate.part.begin > candidate.run.span.begin;
    const bool several = behind && event && reader.number(trimmed.begin, 2, 99) &&
                         reader.skip(trimmed.begin + 1, Meaning::Event) == trimmed.end;
    if (several || isOneOfSeveral(reader, trimmed) ||
        (token(trimmed.end - 1).kind == TokenKind::Number && isNumberedPlace(trimmed)) ||
        isNextOne(candidate.part, trimmed))
        score -= kNumbered;
    if (isReference(reader, trimmed))
        score -= kReference;
    return score;
}

bool TitleScore::isOtherDay(std::uint32_t i) const {
    const Reader reader(m_document, static_cast<std::uint32_t>(m_document.tokens.size()));
    return i != m_choice.dateSpan.begin && i != m_choice.endSpan.begin &&
           (reader.mayHave(i, kWeekdayNames) || reader.has(i, Meaning::RelativeDay));
}

bool TitleScore::invitesAtEnd(std::uint32_t begin, std::uint32_t end) const {
    constexpr int kInvitation = 4;
    constexpr std::uint32_t kLongest = 6;
    const Reader reader(m_document, end);
    static constexpr Meanings kLeads{Meaning::DateMarker, Meaning::TimeMarker};
    while (end > begin &&
           (isEdgeMark(token(end - 1)) || (token(end).used && reader.mayHave(end - 1, kLeads))))
        --end;
    const Sense *lead = reader.senseBefore(end, Meaning::TitleLead, kLongest);
    return lead && lead->value == kInvitation && end - lead->length > begin;
}

int TitleScore::linePenalties(const Reader &reader, const TitleCandidate &candidate) const {
    const auto &[field, run, part, trimmed, alone, first, order] = candidate;
    int score = 0;
    // "The Popes are happy to invite you to": the event is what follows.
    const Reader beyond(m_document, run.span.end);
    // but "Theo is turning 5 & we're going to the farm!"
    if (part.end < run.span.end && announces(beyond, part.end) &&
        !contains(trimmed, Meaning::Event))
        score -= 40;
    const Field *next = &field + 1;
    if (first && part.begin == field.begin && invitesAtEnd(field.begin, field.end))
        score -= kInvites;
    // "The council invites you on 3 May to a concert": the event is named behind its day.
    else if (run.beforeUsed && part.end == run.span.end && invitesAtEnd(part.begin, part.end))
        score -= kBehind;
    if (alone && next <= &m_document.fields.back() &&
        announces(Reader(m_document, next->end), next->begin))
        score -= kHosts;
    // "The Pump House Players present", above the name of the play.
    if (alone && reader.has(part.end - 1, Meaning::PresentVerb) && part.end > part.begin + 1 &&
        part.end == field.end && next <= &m_document.fields.back() && isBelow(field, *next))
        score -= kPresents;
    if (part.begin > 0 && isCrumb(part.begin - 1))
        score -= 40;
    if (isPromised(field))
        score -= kInvites;
    // "Circular – 5.º B" above the event's own line
    if (const Sense *head = &field == &m_document.fields.front() && part.begin > field.begin &&
                                    !contains(trimmed, Meaning::Event)
                                ? beyond.sense(field.begin, Meaning::PageHead)
                                : nullptr;
        head && isEdgeMark(token(field.begin + head->length)) &&
        token(m_choice.anchor()).field != token(field.begin).field)
        score -= kInvites;
    // "Submit agenda items by noon Wed. The annual meeting is ...": due before the event.
    if (run.beforeUsed && beyond.has(run.span.end - 1, Meaning::DueMarker) &&
        run.span.end != m_choice.dateSpan.begin && run.span.end != m_choice.timeSpan.begin)
        score -= kBehind;
    if (leadsToNews(candidate))
        score -= kPredicate;
    if (m_choice.isOfOther(token(part.begin).field))
        score -= kOther;
    // "Can we do Weds 12th instead, I've choir Tues": what is on the other day.
    if (field.spoken && run.beforeUsed && run.afterUsed && part.end == run.span.end &&
        run.span.begin > m_choice.dateSpan.begin && isOtherDay(run.span.end))
        score -= kBehind;
    // "Mr and Mrs Pope" on a line of their own invite, a name below "Regards" signs. "Les Ogres"
    // right below the date play.
    const bool below = field.line == m_document.fields[token(m_choice.anchor()).field].line + 1;
    if (alone && isHeading(part) &&
        (isSignature(field) ||
         (!contains(trimmed, Meaning::Event) && isPerson(reader, part.begin) && !below)))
        score -= 40;
    // "overstap 08:36 Utrecht Centraal": a journey goes elsewhere.
    if (m_choice.kind == EventKind::Travel && m_choice.isOfLater(token(part.begin).field))
        score -= kOtherMoment;
    if (alone && isPassenger(reader, trimmed))
        score -= kInvites;
    // "水務署通知：" tells who writes.
    if (namesSender(part, trimmed))
        score -= 40;
    // "Subject: Invitation – Ann & Bo" tells who invites.
    if (field.label == Label::Title && isCouple(trimmed))
        score -= kCouple;
    // The subject of a mail may say no more than that something was booked, or greet.
    const Sense *greeting = reader.sense(part.begin, Meaning::Greeting);
    const bool greets = greeting && part.begin + greeting->length >= trimmed.end;
    if (field.label == Label::Title && (greets || isPageHead(reader, part)))
        score -= 360;
    return score;
}

} // namespace pindle::conversion
