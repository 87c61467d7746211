#pragma once

#include <optional>

#include "PindleConversion/compose/Compose.h"
#include "PindleConversion/compose/PlaceNames.h"

namespace pindle::conversion {

/// Weighs what a text says of where its event is.
class PlaceFinder : private PlaceNames {
public:
    PlaceFinder(const Document &document, const Choice &choice);

    /// The place that the text most likely means; empty when none is likely enough.
    TokenSpan run();

    // PlaceAndTitle.cpp
    /// "Sawmill Trail weed pull": a name of a place opens the line that names the event.
    bool leadsHeading(TokenSpan place) const;
    /// "The lift in Block C will be out of service": behind its marker the place tells which of a
    /// kind the sentence is about.
    bool isOfSubject(TokenSpan place, std::uint32_t marker) const;
    /// The place is the event's name as well.
    bool isName(TokenSpan place) const;

private:
    static constexpr int kLeastScore = 20;

    // Place.cpp
    std::uint32_t lineOf(std::uint32_t i) const { return m_document.fields[token(i).field].line; }
    /// Offers all that a part of one field may say of where the event is.
    void consider(std::uint32_t f, TokenSpan part);
    /// Takes a span as the best place so far when its score is higher, after what its surroundings
    /// at token `at` take from it or add to it.
    void offer(TokenSpan span, int score, std::uint32_t at);
    /// "vertrek 07:42 Zwolle" above the line that tells the arrival: where a journey begins.
    void departure(const Reader &reader, const Field &field);
    /// "12 €", "5,90": no place consists of digits and signs alone, or has a price.
    bool isAmount(TokenSpan span) const;
    /// "次は田口先生です": where a place without spaces ends before a person or a word for a
    /// moment.
    std::uint32_t beforePerson(const Reader &reader, TokenSpan span) const;
    /// "銀座店 TEL 03-5555-0188": where a place ends before a telephone number.
    std::uint32_t beforePhone(const Reader &reader, TokenSpan span) const;
    /// "物业服务中心" alone below a notice's sentences: who signs it.
    bool closesNotice(TokenSpan part) const;
    /// "とり源 駅前店": where a house begins, when the part only names its branch.
    std::uint32_t withHouse(const Reader &reader, const Field &field, TokenSpan part) const;
    /// "《茶馆》": a play or book.
    bool isWork(TokenSpan span) const;
    /// "大剧院 B2区3排8座": where a place ends before a seat.
    std::uint32_t beforeSeat(const Reader &reader, TokenSpan part) const;
    /// "Gasthaus "Zum Adler"": the last quotation mark belongs to the name.
    bool closesName(TokenSpan span) const;
    /// "“悦读”书吧": the quotation marks that the span opens with belong to the name.
    bool opensName(TokenSpan span) const;
    /// "hall of": what followed is no part of the place.
    bool dangles(const Reader &reader, TokenSpan span) const;
    /// "到店化妆", "2人": a lone sign or a count.
    bool saysTooLittle(TokenSpan span) const;
    /// "and afterwards at the hall": not where the event itself is.
    bool isAside(std::uint32_t at) const;
    /// "Abfahrt Mo 7:30 Uhr beim Schultor", in another sentence than the days of a stay.
    bool isOfSide(const Reader &reader, std::uint32_t at) const;
    /// "Start 17 Uhr an der Kirche, Ende 18.30 Uhr auf dem Festplatz": there it ends.
    bool isBehindEnd(TokenSpan span) const;
    /// "back at school about 3pm": the words that tell the end lead to it.
    bool isCoveredByEnd(TokenSpan span) const;
    /// "arrival Palma 08:25": where the event ends.
    bool isOfEnd(TokenSpan span) const;
    /// "16h, église Sainte-Anne. Dîner au Manoir": what follows the event in its own words.
    bool isOfFollowUp(const Reader &reader, std::uint32_t at) const;
    /// "Someone left a dish in the fridge", told in another sentence than the event.
    bool isWhereThingsWere(std::uint32_t at) const;
    /// On the line of another event.
    bool isOfOther(std::uint32_t at) const;
    /// On a line with a later hour.
    bool isOfLater(std::uint32_t at) const;
    /// On the line of the event's hour, in a text that tells what follows it.
    bool isBesideTime(std::uint32_t at) const;
    /// What stands behind "Place:" or the like.
    void labelled(const Field &field);

    // PlaceOnline.cpp
    /// "Renew online", "Online check-in opens", "Online tax returns": not the event is online.
    bool isOnlineDeed(const Reader &reader, const Field &field, std::uint32_t i,
                      const Sense &online) const;
    /// A link is the place of a meeting that is held online.
    void links(const Field &field, TokenSpan part);
    /// "Your link (do not share): https://..."
    bool isCalledLink(const Field &field, std::uint32_t link) const;
    /// The text's first words say that the event is online.
    bool heldOnline();

    // PlaceAndTitle.cpp
    /// From one day to another that the text names apart: where one stays is the event's name
    /// and its place.
    bool isStay() const;
    /// "Astronomy in the Park" above the date is a name.
    int headingPenalty(std::uint32_t i) const;
    /// "Sie sind angemeldet für: Brandschutz im Denkmal": what it is about.
    int topicPenalty(std::uint32_t i) const;
    /// "Jazz on the Lawn, Sunday 12 July": a name in capitals with a mark behind it.
    bool isNameBeforeDate(const Field &field, std::uint32_t i) const;
    /// The first words of a line are the title's sooner than the place's.
    bool isTitlePosition(const Field &field, std::uint32_t begin) const;

    // PlaceMarkers.cpp
    /// "in", "at": the name that a marker leads to.
    void marked(const Reader &reader, std::uint32_t i, const Sense &marker);
    /// "sur la plage du Moulin, à Nantua": the town of the place right before the marker at `i`.
    bool isTownBehind(std::uint32_t i, TokenSpan name, const Shape &shape) const;
    /// "Cyrk Arena zawita do Płocka": the marker begins with a verb, and what stands before it is
    /// who comes.
    static bool isVerb(const Reader &reader, std::uint32_t i);
    /// "in-suite", "drop-in": a part of a word, no marker.
    bool isInCompound(const Reader &reader, std::uint32_t i, std::uint32_t next) const;
    /// "in one room", "at three venues": so many places, not which.
    bool countsPlaces(const Reader &reader, std::uint32_t begin) const;
    /// "the new daycare on Pine": the street without its kind belongs to the name.
    std::uint32_t withStreet(const Reader &reader, TokenSpan name) const;
    /// "在市立图书馆借书": where a name's kind is told, unknown words behind it are what happens.
    std::uint32_t withoutDeed(const Reader &reader, std::uint32_t begin, std::uint32_t end) const;
    /// What follows the marker at `i` is an amount, a deed or who writes.
    bool leadsToOther(const Reader &reader, std::uint32_t i, TokenSpan name) const;
    /// "Pick up the map from the tourist office", told apart from the event.
    bool isFetched(const Reader &reader, std::uint32_t i) const;
    /// "Call mit dem Team in Toronto, 9:30 Toronto-Zeit": where the others are is no place.
    bool isWhereOthersAre(const Reader &reader, std::uint32_t i) const;
    /// "喜来楼": the marker's sign is part of a name that the lexicon does not know.
    bool isInsideWord(std::uint32_t i) const;
    /// "at the wedding of", "at the Annual General Meeting": an event, no place.
    bool isAtEvent(const Reader &reader, TokenSpan name) const;
    /// "at": a place may follow even without a word for its kind.
    void offerBehindStrong(const Reader &reader, std::uint32_t i, TokenSpan name,
                           const Shape &shape);
    /// "at aunt carols", "at grandmas": in a hurry the possessive loses its mark.
    bool isHomeOfKin(const Reader &reader, TokenSpan name) const;
    /// "bei oma", "na tia lena": behind its marker, where no possessive tells it.
    static bool isAtKin(const Reader &reader, std::uint32_t marker, TokenSpan name);
    /// "in", "to": what follows may be something else as well.
    void offerBehindWeak(const Reader &reader, std::uint32_t i, const Sense &marker, TokenSpan name,
                         const Shape &shape);
    /// "suite à la réunion", "have the pleasure of inviting you to": the marker ends a phrase of
    /// its own.
    static bool endsPhrase(const Reader &reader, std::uint32_t i);
    /// "in corso" is no place, but "in corso Garibaldi" and "op mijn kantoor" are.
    bool refusesPlace(const Reader &reader, std::uint32_t begin) const;
    /// "Pfarrkirche Sankt Veit im Moos" on a line below the date is one name.
    bool offerWholeLine(const Reader &reader, std::uint32_t marker, std::uint32_t end);
    /// "class with the school in Cape Town, 11:00 SAST": where the others are is no place.
    bool isOfPerson(const Reader &reader, std::uint32_t marker, std::uint32_t begin) const;
    /// A street with its number is certain.
    int addressBonus(TokenSpan span) const;
    /// "from" tells where something starts, but also who sends it.
    bool isFrom(const Reader &reader, std::uint32_t i) const;
    /// "in Paris" and "in the gym" are places, "to Lyon" and "on Projects" need a kind of place.
    bool isWeakPlace(const Reader &reader, std::uint32_t i, const Sense &marker,
                     const Shape &shape) const;
    /// "Casa Lupita on 3rd Ave": the name says more than its street.
    bool isBehindName(const Reader &reader, std::uint32_t i) const;
    /// "field trip to the Aquarium": a kind of event leads to the place.
    static bool isVisit(const Reader &reader, std::uint32_t i);

    // PlaceHeads.cpp
    /// The kind of place that starts the name before token `i`, or `i`.
    std::uint32_t nameHead(std::uint32_t i) const;
    /// "chaussée de Waterloo 412 à Saint-Gilles": where the street before the marker at `i`
    /// begins, or `i`.
    std::uint32_t streetHead(const Reader &reader, std::uint32_t i) const;
    /// "the Fleece at Addingham": a name and its article alone, before the marker at `i`.
    bool isInn(const Reader &reader, std::uint32_t i) const;
    /// "20:15, Capitol am Markt" answers where in a conversation; the name's begin, or `i`.
    std::uint32_t spokenHead(const Reader &reader, std::uint32_t i) const;
    /// The kind of place that a marker goes on from ("kaplica na Wzgórzu"), else `begin`.
    std::uint32_t nounBefore(const Reader &reader, std::uint32_t marker, std::uint32_t begin) const;

    // PlaceCompounds.cpp
    /// "Room Havel", "library room 2": a kind of place with its name beside it.
    void compound(const Reader &reader, const Field &field, std::uint32_t i);
    /// "新宿クリニックにて": the name before the word.
    void before(const Reader &reader, const Field &field, std::uint32_t i);
    /// "居酒屋ひょうたん（56丁目）で", "「とり源」集合": where the brackets or quotation marks
    /// before token `i` open, or `i`.
    std::uint32_t openedBefore(const Field &field, std::uint32_t i) const;
    /// Whether token `at` is part of the name that ends before token `i`.
    bool joinsBefore(const Reader &reader, std::uint32_t at, std::uint32_t i) const;
    /// "A Field Guide": a capital article that stands for any one of a kind.
    static bool isArticled(const Reader &reader, std::uint32_t i);
    /// "第412座": the number glued before the kind of place.
    bool isRoomNumber(std::uint32_t i) const;
    /// "(Town hall)", "Heathrow (London)"
    void bracketed(const Reader &reader, std::uint32_t open);
    /// What a kind of street at `i` says of where: "42 Nelson Tce".
    void street(const Reader &reader, const Field &field, std::uint32_t i);
    /// "【ひまわり動物病院】": the house that sends the message.
    void sender(const Reader &reader, std::uint32_t open);
    /// "Straatfeest Lijsterlaan za 30-8": a street right behind the kind of event.
    bool isStreetOfEvent(const Reader &reader, const Field &field, std::uint32_t i) const;
    /// "viewing Kastanjelaan 62", "visite 5 rue des Lilas": the address behind the event's name,
    /// with the word for a street at token `i`; else empty.
    TokenSpan addressOfEvent(const Reader &reader, const Field &field, std::uint32_t i) const;
    /// "22 Long St" right behind the moment, "B-704 Sunrise Enclave" as a sentence of its own: an
    /// address that says more than "our gallery".
    bool isExact(const Reader &reader, TokenSpan part, bool address) const;
    /// "Same room (G.12)": a letter and a number.
    static bool isRoomCode(const Reader &reader, TokenSpan part);
    /// "Holyport - Port Erran": the second name of a route.
    bool isRouteEnd(const Field &field, std::uint32_t begin) const;
    /// "06车12F号 二等座": a seat in a train.
    static bool tellsSeat(const Reader &reader, std::uint32_t begin, std::uint32_t end);
    /// "Plaza 7", "Seat 22A" on a ticket.
    static bool isSeat(const Reader &reader, std::uint32_t i);
    /// "Row F Seat 9"
    static bool namesSeat(const Reader &reader, TokenSpan part);
    /// "'Knots and Splices', 'The Dry Garden'": one of several works.
    bool isQuotedInList(TokenSpan part) const;
    /// "our gallery": a kind of place without a name.
    bool isKindAlone(TokenSpan place) const;
    /// "Kwiatowa 8/14": a name with house and flat.
    static bool isHouse(const Reader &reader, TokenSpan part);
    /// "2-persoonskamer": a kind of room, not a room.
    static bool isCounted(const Reader &reader, std::uint32_t i);

    // PlaceQuotes.cpp
    /// The mark that closes the quotation from `open`, in a script without spaces; `open` where
    /// none does soon.
    std::uint32_t quoteClosing(const Reader &reader, std::uint32_t open) const;
    /// Behind the quotation that opens the span a particle follows: "「海辺の図書館」を".
    bool readsOn(const Reader &reader, TokenSpan span) const;
    /// "お店は「季節料理 あおい」": offers the quoted name behind the marker at `i` or behind the
    /// words that the marker leads to; false where there is none.
    bool markedQuote(const Reader &reader, std::uint32_t i, const Sense &marker, TokenSpan name);
    /// "新年会は8日、いつもの「魚処みなと屋」です": a quoted kind of place behind event and day.
    void quoted(const Reader &reader, const Field &field, std::uint32_t open);

    // PlaceAnswers.cpp
    /// "At yours?" in a conversation.
    bool isAsked(std::uint32_t at) const;
    /// "yep", "nope": what the turn behind the one in field `f` begins with; null for anything
    /// else.
    const Sense *answerTo(std::uint32_t f) const;
    /// "yep": the turn behind the one in field `f` begins so.
    bool isAgreed(std::uint32_t f) const;
    /// "Maple room is taken": said of the place itself.
    bool isTaken(TokenSpan span) const;
    /// "at the oval yeah", "nope, ...": a place that the next speaker denies.
    bool isDenied(std::uint32_t at) const;
    /// "De Scheg, om 14u"
    bool opensTurnWithTime(const Reader &reader, TokenSpan part) const;
    /// "dimanche je suis à Namur", where another day was found.
    bool isSaidOfOtherDay(std::uint32_t at) const;
    /// "plutôt place des Tilleuls": so answers the turn behind the one at token `at`.
    bool isSettledOtherwise(std::uint32_t at) const;
    /// "yep cannery lot", "let's do the Lamb & Flag": where the place that answers begins.
    std::uint32_t behindAnswer(const Reader &reader, const Field &field, TokenSpan part) const;
    /// "village hall as ever", "The Fox & Anchor yeah": where the name is over.
    std::uint32_t beforeTalk(const Reader &reader, const Field &field, TokenSpan part) const;
    /// "usual place?", "where?" in the turn before that of token `at`.
    bool wasAskedWhere(std::uint32_t at) const;
    /// A name of several words that is a sentence of its own.
    bool isAnswer(const Reader &reader, TokenSpan part) const;

    // PlaceBefore.cpp
    /// ", salle des fêtes de Sens," before the date.
    void pieceBefore(const Reader &reader, const Field &field, TokenSpan part);
    /// "Hen do! Whitstable, Fri 4 - Sun 6 June": a name between the event and its days.
    bool isTownOfStay(const Reader &reader, TokenSpan part) const;
    /// "Open Garden — Wisteria Cottage, Leura" above the date.
    void behindDash(const Reader &reader, const Field &field);
    /// "Wenlow Village Hall – Jumble Sale, Saturday": the line opens with the venue.
    void venueBeforeDash(const Reader &reader, const Field &field);
    /// "Centro de Salud Arganzuela: le recordamos su cita": the house that writes is where.
    void venueSpeaks(const Reader &reader, const Field &field);
    /// "Théâtre municipal de Sens" on a line of its own between the title and the date.
    void venueAbove(const Reader &reader, std::uint32_t f);
    /// "美容室 こもれび": a kind of place on a line of its own beside one that tells of a booking.
    bool isBookedHouse(const Reader &reader, std::uint32_t f) const;
    /// "Beginner Ukulele" below "Your class begins tomorrow": the event's name.
    bool isBelowPromise(std::uint32_t f) const;
    /// "Rua", "Via", in any language: a kind of street before its name.
    bool opensStreet(std::uint32_t i) const;
    /// "Lindenstraße", "Prinsengracht", in any language.
    bool endsInStreet(std::uint32_t i) const;
    /// "Ateliê Maré — Rua das Janelas 41, Lisbon", also among words of another language.
    bool isAddressLine(const Reader &reader, const Field &field) const;
    /// "Borgo San Celso (PR)": where the name before its region in brackets ends, or the line.
    std::uint32_t beforeRegion(const Reader &reader, const Field &field) const;
    /// "本町歯科" right above the date, below the words that thank for a booking.
    bool isBelowBooking(std::uint32_t f) const;
    /// "Bishopstoke Scout Hut" right above the line that starts with the date.
    bool isVenueLine(const Reader &reader, const Field &field) const;

    // PlaceKinds.cpp
    /// "parade square", "Lecture Theatre 1": what it is said last.
    static bool isKindOfPlace(const Reader &reader, TokenSpan part);
    /// "Camp Wanahoo": a kind of place with a name that no lexicon knows.
    static bool isNamedKind(const Reader &reader, TokenSpan part);
    /// "Clinique vétérinaire des Quatre Bras": the kind of place has a trade, then its name.
    static bool isTradeOfPlace(const Reader &reader, TokenSpan part);
    /// "reifenwechsel 7.5. 8:20 werkstatt rahlmann": the event is named first, and without
    /// capitals a kind of place and its name close the note.
    bool closesLowNote(const Reader &reader, TokenSpan part) const;
    /// A kind of event stands before the moment on the line of token `i`.
    bool isNamedBefore(std::uint32_t i) const;
    /// "place du Marché" is no market.
    bool opensWithPlace(const Reader &reader, TokenSpan part) const;

    // PlacePieces.cpp
    /// The parts between commas, dashes and values behind the date: one may be the place.
    void pieces(const Reader &reader, std::uint32_t f, TokenSpan part);
    /// "N° 57" in the first cell of a row
    bool isNumberAlone(const Field &cell) const;
    /// "Autumn talks (all 7.30pm, Corn Exchange)" above a list of days tells time and place of
    /// each.
    bool isTimedHeading(std::uint32_t f) const;
    /// Where words are not spaced, a space separates parts.
    static bool startsUnspaced(const Reader &reader, std::uint32_t i);
    /// A mark that separates the parts of a line.
    bool isBreak(const Reader &reader, std::uint32_t i) const;
    /// On a ticket the line that tells the arrival names another place.
    bool isArrivalLine(const Field &field) const;
    /// The line below the one that tells the end.
    bool isBelowEnd(const Field &field) const;
    /// Below a heading with its day, and above the hours of the day.
    bool isBetweenDayAndTime(const Field &field) const;
    /// "14 Uhr: Gesundheitstag": what is announced is the event.
    bool isAnnounced(const Reader &reader, std::uint32_t begin) const;
    /// "Arrive London": where a journey ends.
    static bool isArrival(const Reader &reader, std::uint32_t i);
    /// Date, name, place and time on lines of their own, in this order.
    bool isSecondBeforeTime(const Field &field) const;
    /// Weighs one part; returns where to go on.
    std::uint32_t piece(const Reader &reader, std::uint32_t f, std::uint32_t begin,
                        std::uint32_t end);
    /// "The gate closes 20 minutes before": a sentence that tells something of a place.
    bool isSentence(const Reader &reader, TokenSpan part) const;
    /// "海底捞（大悦城店）": the branch in brackets belongs to the name; the token behind them, or
    /// `end`.
    std::uint32_t behindBranch(const Reader &reader, std::uint32_t begin, std::uint32_t end) const;
    /// "に駅の改札前": a particle belongs to what stands before it.
    std::uint32_t behindParticles(const Reader &reader, const Field &field, TokenSpan part) const;
    /// "with Hannah, RDH": a single word that tells what a person is.
    bool isBehindPerson(const Reader &reader, TokenSpan part) const;
    /// "(Advance Single)" is no place, "那場" and "哪个馆" ask or point elsewhere.
    static bool pointsElsewhere(const Reader &reader, TokenSpan part);
    /// "2 adults, 1 car", "07车": who and what a ticket is for, and the carriage.
    bool countsAboard(const Reader &reader, std::uint32_t begin) const;
    /// "PLEASE STORE WATER": in capitals because all the text is.
    static bool isShouted(const Reader &reader, std::uint32_t i);
    /// The part's first words or what follows it say that it is something else.
    bool refusesPart(const Reader &reader, TokenSpan part) const;
    /// Offers a part that has words of its own kind, or the form of a name where one belongs.
    void offerPart(const Reader &reader, const Field &field, TokenSpan part, const Shape &shape);
    /// "notary office on Rua das Acácias 210": a kind of place in small letters, then its street.
    bool isHouseOnStreet(const Reader &reader, TokenSpan part) const;
    /// "The Front Office" above its telephone number, some lines below the date: who writes.
    bool isSignedBy(const Reader &reader, const Field &field, TokenSpan part) const;
    /// "Kasia, front desk" below the sentences: who writes, and from where.
    bool isSignedAt(const Field &field, TokenSpan part) const;
    /// "牙科回診 4/22 下午2:15 仁愛診療": the event is named, and the last words are a name.
    bool closesNote(const Field &field, TokenSpan part) const;
    /// "PTA", "H": letters that stand for longer words.
    bool isAcronym(TokenSpan part) const;
    /// A name of which nothing says that it is a place's.
    bool isOnlyName(const Field &field, TokenSpan part, const Shape &shape) const;

    const Choice &m_choice;
    std::uint32_t m_anchorField; ///< the field that says when
    std::uint32_t m_momentLine;  ///< the last line that says when
    std::optional<bool> m_online;
    TokenSpan m_best;
    int m_score = 0;
};

} // namespace pindle::conversion
