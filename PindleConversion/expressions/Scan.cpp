#include <algorithm>

#include "PindleConversion/expressions/Announced.h"
#include "PindleConversion/expressions/Expression.h"
#include "PindleConversion/expressions/Starts.h"

namespace pindle::conversion {

namespace {

class Scan {
public:
    explicit Scan(Document &document)
        : m_document(document) {}

    Expressions run() {
        for (const Field &field : m_document.fields)
            if (!field.ignored)
                scan(field);
        if (m_found.dates.empty() && m_found.times.empty())
            scanSenders();
        return std::move(m_found);
    }

private:
    void scanSenders() {
        for (const Field &field : m_document.fields)
            if (field.label == Label::Sender)
                scan(field);
        std::stable_sort(
            m_found.roles.begin(), m_found.roles.end(),
            [](const RoleMention &a, const RoleMention &b) { return a.token < b.token; });
    }

    void scan(const Field &field) {
        const Reader reader(m_document, field.end);
        const bool timeField = field.label == Label::Time || field.label == Label::When ||
                               field.label == Label::Start || field.label == Label::End;
        // A number that answers in a conversation is a time, if it can be one.
        m_marked = timeField || field.spoken ? field.begin : kNowhere;
        // "5.7. • 17 h", "mon 18th ••• 9.05 •••": an hour opens the cell behind the day's.
        constexpr std::uint32_t kMostMarks = 4;
        constexpr std::uint32_t kDotted = 3; ///< tokens
        const bool hour =
            m_afterDate < field.begin && field.begin - m_afterDate <= kMostMarks &&
            reader.number(field.begin, 0, 24) &&
            (reader.has(field.begin + 1, Meaning::HourMark) ||
             (isDottedTime(reader, field.begin) && field.begin + kDotted == field.end)) &&
            onlyMarks(m_afterDate, field.begin);
        m_afterDate = hour ? field.begin : kNowhere;
        m_length = field.label == Label::Duration ? field.begin : kNowhere;
        for (std::uint32_t i = field.begin; i < field.end;)
            i = step(reader, i, field);
    }

    /// Reads what starts at `i` and returns the token to go on with.
    std::uint32_t step(const Reader &reader, std::uint32_t i, const Field &field) {
        if (isPlain(reader, i, field))
            return i + 1;
        if (isPlainMark(reader, i, field))
            return marker(reader, i);
        if (const std::uint32_t row = isNumber(reader, i) ? skipNumbers(reader, i) : i; row != i)
            return row;
        if (const Sense *greeting = reader.sense(i, Meaning::Greeting);
            greeting && greeting->length > 1 && greets(reader, i, i + greeting->length) &&
            reader.skip(i, Meaning::RoleWord) < i + 2)
            return i + greeting->length;
        // "and return by" is no "return by".
        if (const Sense *role = reader.sense(i, Meaning::RoleWord);
            role && i + role->length > m_roleEnd && !isInCompound(reader, i) &&
            !isEndOfPeriod(reader, i, *role) && mayBeRole(reader, i, *role))
            takeRole(reader, i, *role);
        if (const Sense *role = reader.sense(i, Meaning::RoleBehind))
            take(m_found.roles, RoleMention{i, static_cast<Role>(role->value), true});
        // "Dienstag morgen" is one day.
        if (const Sense *part = m_afterDate == i ? reader.sense(i, Meaning::PartOfDay) : nullptr;
            part && isTomorrow(reader, i, *part)) {
            takePart(reader, i, *part);
            return i + part->length;
        }
        if (auto date = mayStartDate(reader, i) ? readDate(reader, i) : std::nullopt)
            return takeDate(reader, *date);
        if (const auto next = mayStartDuration(reader, i) ? duration(reader, i) : i; next != i)
            return next;
        if (const auto next = mayStartTime(reader, i) ? time(reader, i, field) : i; next != i)
            return next;
        if (const auto next = zone(reader, i, field); next != i)
            return next;
        if (auto date = reader.has(i, Meaning::Holiday) && !isPartOfName(reader, i)
                            ? readHoliday(reader, i)
                            : std::nullopt)
            return takeHoliday(reader, *date);
        if (const Sense *part = reader.sense(i, Meaning::PartOfDay)) {
            takePart(reader, i, *part);
            return i + part->length;
        }
        return marker(reader, i);
    }

    void takeRole(const Reader &reader, std::uint32_t i, const Sense &sense) {
        auto role = static_cast<Role>(sense.value);
        if (role == Role::Collect) {
            std::uint32_t next = reader.skipSymbol(i + sense.length, ':');
            next = std::max(reader.skip(next, Meaning::DateMarker),
                            reader.skip(next, Meaning::TimeMarker));
            const bool later = !m_found.dates.empty() || !m_found.times.empty();
            if (!later || !(mayStartDate(reader, next) || mayStartTime(reader, next)))
                return;
            role = Role::End;
        }
        take(m_found.roles, RoleMention{i, role});
        m_roleEnd = i + sense.length;
    }

    /// "原4/15", "del 4 al 15", "can't Friday": a lone sign or particle says what a date is only
    /// right before it.
    static bool mayBeRole(const Reader &reader, std::uint32_t i, const Sense &role) {
        const bool little =
            reader.token(i).isOneSign() || reader.has(i, Meaning::Of) ||
            (role.value == static_cast<int>(Role::MovedTo) &&
             reader.has(i, Meaning::PlaceMarker)) ||
            (role.value == static_cast<int>(Role::MovedFrom) && reader.has(i, Meaning::Connector));
        // "réservé le 3 mai", but "réservé le court 3"
        const std::uint32_t next = i + role.length;
        if (role.length > 1 && role.value == static_cast<int>(Role::Posted) &&
            reader.has(next - 1, Meaning::The) && !mayStartDate(reader, next))
            return false;
        return role.length > 1 || !little || mayStartDate(reader, i + 1);
    }

    /// Behind the number of an account or telephone at `i`, or behind figures that no word
    /// explains: so many of them are data, and no dates.
    std::uint32_t skipNumbers(const Reader &reader, std::uint32_t i) {
        constexpr std::uint32_t kMostFigures = 150; ///< with the marks between them
        if (i >= m_figuresEnd) {
            std::uint32_t end = i;
            while (reader.at(end) && (reader.token(end).kind == TokenKind::Number ||
                                      reader.token(end).kind == TokenKind::Symbol))
                ++end;
            m_figuresEnd = end;
            if (end - i > kMostFigures)
                return end;
        }
        return skipNumberRow(reader, i);
    }

    /// "Bis morgen!" greets, "bis morgen um zwölf" tells when.
    static bool greets(const Reader &reader, std::uint32_t i, std::uint32_t next) {
        const Token *behind = reader.at(next);
        const bool ends = !behind || behind->kind == TokenKind::Symbol ||
                          behind->sentence != reader.token(i).sentence;
        bool day = false;
        for (std::uint32_t k = i; k < next; ++k)
            day = day || reader.has(k, Meaning::RelativeDay) || reader.has(k, Meaning::Weekday);
        // "tot zo 14 juni"
        if (reader.has(next - 1, Meaning::WeakWeekday) && reader.number(next, 1, 31))
            return false;
        const bool starts = i == 0 || reader.document().tokens[i - 1].kind != TokenKind::Word;
        return !day || (ends && starts);
    }

    /// A word without a meaning that is asked for here starts nothing, unless it is the area of a
    /// zone's identifier or the letter of a time stamp.
    static bool isPlain(const Reader &reader, std::uint32_t i, const Field &field) {
        static constexpr Meanings kAsked = [] {
            Meanings asked{Meaning::Greeting,  Meaning::RoleWord,     Meaning::RoleBehind,
                           Meaning::PartOfDay, Meaning::Holiday,      Meaning::TimeMarker,
                           Meaning::RangeTo,   Meaning::DurationMark, Meaning::Approximate,
                           Meaning::The};
            asked.add(kStartWords);
            return asked;
        }();
        const Token &token = reader.token(i);
        if (token.kind != TokenKind::Word || reader.symbol(i + 1, '/'))
            return false;
        return token.senses == 0 || (field.label != Label::Zone && !token.meanings.meets(kAsked));
    }

    /// A mark without a meaning starts nothing but a zone in brackets.
    static bool isPlainMark(const Reader &reader, std::uint32_t i, const Field &field) {
        const Token &token = reader.token(i);
        return token.kind == TokenKind::Symbol && token.senses == 0 && token.symbol != '(' &&
               field.label != Label::Zone;
    }

    /// "morgen" and "mañana" name the day here, not its first half as in "heute morgen".
    static bool isTomorrow(const Reader &reader, std::uint32_t i, const Sense &part) {
        constexpr std::uint32_t kLongestWord = 8; ///< bytes; "morgenochtend" says both
        const Sense *day = reader.sense(i, Meaning::RelativeDay);
        return day && !reader.token(i).unspaced && day->value == 1 && day->length == 1 &&
               part.length == 1 && reader.token(i).end - reader.token(i).begin <= kLongestWord;
    }

    std::uint32_t takeDate(const Reader &reader, const DateMention &date) {
        if (take(m_found.dates, date)) {
            use(date.span);
            for (std::uint32_t i = date.span.begin; i < date.span.end; ++i)
                if (const Sense *part = reader.sense(i, Meaning::PartOfDay);
                    part && !isTomorrow(reader, i, *part)) {
                    take(m_found.parts,
                         PartMention{{i, i + part->length}, static_cast<DayPart>(part->value)});
                    break;
                }
        }
        m_afterDate = date.span.end;
        // "18:30 Thursday, 45 min", but "20h00 - samedi 27 avril, 8h00"
        constexpr std::uint32_t kClose = 1;
        if (m_afterTime <= date.span.begin && date.span.begin - m_afterTime <= kClose &&
            reader.symbol(date.span.end, ',') && !reader.has(m_afterTime, Meaning::RangeTo))
            m_length = date.span.end + 1;
        return date.span.end;
    }

    /// A holiday's name stays free for the title while it may be the event's.
    std::uint32_t takeHoliday(const Reader &reader, const DateMention &date) {
        // "4 czerwca, Boże Ciało": the day is known, the name may be the event's.
        if (m_afterDate == date.span.begin &&
            m_found.dates.back().first.base == DateSpec::Base::Calendar)
            return date.span.end;
        // "to mark Australia Day, Monday 25 January": the written day is the event's.
        const std::uint32_t next = reader.skipSymbol(date.span.end, ',');
        if (next != date.span.end && mayStartDate(reader, next) && readDate(reader, next))
            return date.span.end;
        if (!date.weak)
            return takeDate(reader, date);
        take(m_found.dates, date);
        return date.span.end;
    }

    /// "saggio di fine anno", "fiesta de fin de curso": the end belongs to the event's name.
    static bool isEndOfPeriod(const Reader &reader, std::uint32_t i, const Sense &role) {
        return role.value == static_cast<int>(Role::End) && role.length == 1 && i > 1 &&
               reader.has(i - 1, Meaning::Of) && reader.word(i - 2) && reader.word(i + 1) &&
               !reader.has(i + 1, Meaning::TimeMarker);
    }

    /// "Madrid-Puerta de Atocha", "→ Porte de Versailles": the word names a place.
    static bool isInCompound(const Reader &reader, std::uint32_t i) {
        if (i == 0 || !reader.token(i).capital || !reader.word(i))
            return false;
        const Token &before = reader.document().tokens[i - 1];
        if (before.symbol == '-' && reader.glued(i) && !before.spaceBefore)
            return true;
        const std::uint32_t name = reader.skip(i + 1, Meaning::Of);
        return name != i + 1 && before.kind == TokenKind::Symbol && reader.word(name) &&
               reader.token(name).capital && reader.has(i - 1, Meaning::RangeTo);
    }

    /// "Parroquia de San José", "via San Martino": the saint names a place.
    static bool isPartOfName(const Reader &reader, std::uint32_t i) {
        static constexpr Meanings kPlaces{Meaning::PlaceNoun, Meaning::StreetWord};
        if (i == 0 || !reader.token(i).capital)
            return false;
        const bool of = i > 1 && reader.has(i - 1, Meaning::Of);
        return reader.mayHave(of ? i - 2 : i - 1, kPlaces);
    }

    std::uint32_t duration(const Reader &reader, std::uint32_t i) {
        auto found = readDuration(reader, i, m_length == i);
        if (!found || isSecondStart(i, *found))
            return i;
        if (take(m_found.durations, *found)) {
            use(found->span);
            // "plan on an hour"
            if (m_length == i && m_lengthMark.end == i)
                use(m_lengthMark);
        }
        return found->span.end;
    }

    /// "15h00 for 15h30": one comes at the first to begin at the second.
    bool isSecondStart(std::uint32_t i, const DurationMention &length) const {
        constexpr int kLongestWait = 90;
        constexpr int kHour = 60;
        if (m_afterTime + 1 != i || m_length != i || m_found.times.empty())
            return false;
        const ClockSpec &start = m_found.times.back().start;
        const int wait = length.minutes - start.hour * kHour - start.minute;
        return start.literal && wait > 0 && wait <= kLongestWait;
    }

    /// Marks part the cells of a line.
    bool onlyMarks(std::uint32_t i, std::uint32_t end) const {
        while (i < end && m_document.tokens[i].kind == TokenKind::Symbol)
            ++i;
        return i == end;
    }

    std::uint32_t time(const Reader &reader, std::uint32_t i, const Field &field) {
        const bool marked = m_marked == i || isAnnounced(reader, i, field, m_found);
        auto found = readTime(reader, i, marked, m_afterDate == i);
        if (!found)
            return i;
        if (take(m_found.times, *found))
            use(found->span);
        m_afterTime = found->span.end;
        // "at 9 or 9:30", "3 / 4 pm": the next number may be a time as well.
        m_marked = kNowhere;
        m_length = reader.symbol(found->span.end, ',') ? found->span.end + 1 : found->span.end;
        return found->span.end;
    }

    std::uint32_t zone(const Reader &reader, std::uint32_t i, const Field &field) {
        const bool zoneField = field.label == Label::Zone;
        // "9:30am their time (EST)"
        constexpr std::uint32_t kShortest = 3;
        const Token *brief = reader.symbol(i, '(') && reader.symbol(i + 2, ')') &&
                                     reader.has(i + 1, Meaning::ZoneAfterTime)
                                 ? reader.at(i + 1)
                                 : nullptr;
        const bool bracketed = brief && brief->capital && brief->end - brief->begin >= kShortest &&
                               !m_found.times.empty();
        if (!zoneField && !bracketed && !mayStartZone(reader, i))
            return i;
        TimeMention zone;
        const std::uint32_t next = readZone(reader, i, zoneField || bracketed, zone);
        if (next != i) {
            zone.span = {i, next};
            use(zone.span);
            take(m_found.zones, zone);
        }
        return next;
    }

    void takePart(const Reader &reader, std::uint32_t i, const Sense &part) {
        const PartMention mention{{i, i + part.length}, static_cast<DayPart>(part.value)};
        if (m_afterDate == i)
            m_afterDate = i + part.length;
        if (take(m_found.parts, mention) && belongsToTime(reader, i))
            use(mention.span);
    }

    /// Part of the date or time before it, and not a word of the event's name.
    bool belongsToTime(const Reader &reader, std::uint32_t i) const {
        if (i == 0)
            return false;
        const Token &before = m_document.tokens[i - 1];
        return before.used || reader.has(i - 1, Meaning::The) || reader.has(i - 1, Meaning::In);
    }

    /// Words that announce a time or a length, and marks that keep such an announcement alive.
    std::uint32_t marker(const Reader &reader, std::uint32_t i) {
        std::uint32_t next = i + 1;
        if (const Sense *time = reader.sense(i, Meaning::TimeMarker)) {
            m_marked = next = i + time->length;
        } else if ((m_marked == i && reader.has(i, Meaning::Greeting)) ||
                   (reader.symbol(i, ',') &&
                    m_document.fields[m_document.tokens[i].field].spoken) ||
                   (m_marked == i && isPassage(reader, i))) {
            m_marked = i + 1;
        }
        if (const Sense *length = reader.sense(i, Meaning::DurationMark)) {
            m_length = i + length->length;
            m_lengthMark = {i, length->length > 1 ? m_length : i};
            next = std::max(next, m_length);
        } else if (m_length == i && (isPassage(reader, i) || reader.symbol(i, ')') ||
                                     reader.has(i, Meaning::Approximate) ||
                                     (i > 0 && reader.symbol(i, '.') && reader.glued(i) &&
                                      reader.has(i - 1, Meaning::Abbreviation)))) {
            // "7am, about 4 hours", "Length: approx. 1 hour"
            m_length = i + 1;
        } else if (const Sense *from = m_length == i ? reader.sense(i, Meaning::RangeTo) : nullptr;
                   from && reader.token(i).unspaced) {
            // "10時から2時間"
            m_length = i + from->length;
        }
        if (m_afterDate == i &&
            (isPassage(reader, i) || reader.symbol(i, '-') || reader.has(i, Meaning::Approximate)))
            m_afterDate = next;
        return next;
    }

    static bool isPassage(const Reader &reader, std::uint32_t i) {
        // "5.7. ◆ 17 h"
        return reader.symbol(i, ':') || reader.symbol(i, ',') || reader.symbol(i, '(') ||
               reader.symbol(i, '~') || reader.has(i, Meaning::The) ||
               (reader.token(i).kind == TokenKind::Symbol && isShape(reader.token(i).symbol));
    }

    template<typename T> static bool take(std::vector<T> &into, const T &what) {
        if (into.size() >= kMostExpressions)
            return false;
        into.push_back(what);
        return true;
    }

    void use(TokenSpan span) {
        for (std::uint32_t i = span.begin; i < span.end; ++i)
            m_document.tokens[i].used = true;
    }

    static constexpr std::uint32_t kNowhere = 0xFFFFFFFF;

    Document &m_document;
    Expressions m_found;
    std::uint32_t m_marked = kNowhere;
    std::uint32_t m_afterDate = kNowhere;
    std::uint32_t m_afterTime = kNowhere;
    std::uint32_t m_length = kNowhere;
    TokenSpan m_lengthMark; ///< the words that announce a length
    std::uint32_t m_roleEnd = 0;
    std::uint32_t m_figuresEnd = 0; ///< behind the last figures looked at
};

} // namespace

Expressions findExpressions(Document &document) {
    return Scan(document).run();
}

} // namespace pindle::conversion
