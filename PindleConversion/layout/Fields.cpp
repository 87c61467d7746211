#include "PindleConversion/layout/Fields.h"

#include <algorithm>

#include "PindleConversion/layout/Tiles.h"

namespace pindle::conversion {

namespace {

struct LabelMatch {
    Label label = Label::None;
    std::uint32_t content = 0; ///< first token behind the label
    std::uint32_t end = 0;     ///< end of the label's own words
};

bool isMoment(Label label) {
    return label == Label::When || label == Label::Date || label == Label::Time;
}

bool mayStandAlone(Label label) {
    return isMoment(label) || label == Label::Place || label == Label::Start ||
           label == Label::End || label == Label::Zone;
}

bool looksLikeMoment(const Reader &reader, std::uint32_t i) {
    return reader.number(i, 0, 9999, 4) || reader.has(i, Meaning::Weekday) ||
           reader.has(i, Meaning::WeakWeekday) || reader.has(i, Meaning::Month) ||
           reader.has(i, Meaning::ClockWord) || reader.has(i, Meaning::RelativeDay);
}

/// "From:" heads a mail unless a date or time follows.
Label settle(const Reader &reader, Label label, std::uint32_t content, std::uint32_t word) {
    if (label != Label::Mail && label != Label::Start)
        return label;
    const Token &token = reader.document().tokens[word];
    bool isMail = false;
    bool isStart = false;
    for (std::uint32_t s = token.firstSense; s < token.firstSense + token.senses; ++s) {
        const Sense &sense = reader.document().senses[s];
        if (sense.meaning != Meaning::LabelWord)
            continue;
        isMail = isMail || sense.value == static_cast<int>(Label::Mail);
        isStart = isStart || sense.value == static_cast<int>(Label::Start);
    }
    if (isMail && isStart)
        return looksLikeMoment(reader, content) ? Label::Start : Label::Mail;
    return label;
}

/// "Event - Ceilidh" among other lines with a label and a dash.
bool isDashedList(const Document &document, std::uint32_t dash) {
    const auto &fields = document.fields;
    if (!fields.empty() && !fields.back().labelWords.empty() && fields.back().label != Label::None)
        return true;
    constexpr std::uint32_t kLongestLine = 30;
    const auto size = static_cast<std::uint32_t>(document.tokens.size());
    const Reader reader(document, size);
    for (std::uint32_t i = dash; i < std::min(size, dash + kLongestLine); ++i) {
        if (document.tokens[i].kind != TokenKind::LineBreak)
            continue;
        const Sense *label = reader.sense(i + 1, Meaning::LabelWord);
        return label && reader.symbol(i + 1 + label->length, '-');
    }
    return false;
}

/// The line before has a label that nothing but a space ends.
bool isPlainList(const Document &document) {
    if (document.fields.empty())
        return false;
    const Field &last = document.fields.back();
    return !last.labelWords.empty() && last.begin == last.labelWords.end &&
           (last.label == Label::When || last.label == Label::Place);
}

LabelMatch labelAt(const Reader &reader, std::uint32_t i, bool lineStart) {
    const Sense *sense = reader.sense(i, Meaning::LabelWord);
    // "Clinic: Brunnen 4" is labelled by its kind of place.
    if (!sense && reader.has(i, Meaning::PlaceNoun) && reader.symbol(i + 1, ':') &&
        !looksLikeMoment(reader, i + 2) && reader.at(i + 2) &&
        (reader.at(i + 2)->capital || reader.at(i + 2)->unspaced || !reader.word(i + 2)))
        return {Label::Place, i + 2, i + 1};
    if (!sense)
        return {};
    auto label = static_cast<Label>(sense->value);
    std::uint32_t j = i + sense->length;
    const bool joined = reader.symbol(j, '/') || reader.has(j, Meaning::And);
    if (const Sense *second = joined ? reader.sense(j + 1, Meaning::LabelWord) : nullptr) {
        if (isMoment(label) || isMoment(static_cast<Label>(second->value)))
            label = Label::When;
        j += 1 + second->length;
    }
    const std::uint32_t end = j;
    // "Ende November" is a date.
    if (reader.has(i, Meaning::MonthEnd) && reader.has(j, Meaning::Month))
        return {};
    // "Show: Saturday, 8pm" names the event and when it is at once.
    if (label == Label::Title && looksLikeMoment(reader, j + 1))
        return {};
    // "日 = 4月1日"
    if (reader.symbol(j, ':') || (lineStart && reader.symbol(j, '=') && reader.at(i)->unspaced))
        return {settle(reader, label, j + 1, i), j + 1, end};
    // "When.... Saturday"
    if (lineStart && reader.symbol(j, '.') && reader.symbol(j + 1, '.')) {
        while (reader.symbol(j, '.'))
            ++j;
        return {settle(reader, label, j, i), j, end};
    }
    if (lineStart && reader.symbol(j, '-') && !reader.glued(j) && !reader.glued(j + 1) &&
        (isMoment(label) || label == Label::Place ||
         (label == Label::Title && isDashedList(reader.document(), j))))
        return {label, j + 1, end};
    // Where words are not spaced, a space behind the label is enough.
    if (lineStart && reader.at(i)->unspaced && reader.at(j) && reader.at(j)->spaceBefore)
        return {label, j, end};
    const bool picture = reader.at(i)->kind == TokenKind::Symbol && reader.at(i)->symbol > 0x2000;
    if (picture)
        return {label, j, end};
    // "Check-in 14 Aug", "Saída 17 ago" on lines of their own.
    constexpr std::uint32_t kShortestPlain = 4;
    const Token &word = *reader.at(i);
    if (lineStart && (label == Label::Start || label == Label::End) && word.capital &&
        word.end - word.begin >= kShortestPlain && looksLikeMoment(reader, j))
        return {label, j, end};
    // "When Thu 26 March", and then "Where Room 7".
    if (lineStart && word.capital && label == Label::When && !reader.has(i, Meaning::Event) &&
        !reader.symbol(j, ',') && word.end - word.begin >= kShortestPlain &&
        looksLikeMoment(reader, j))
        return {label, j, end};
    const bool goesOn = label == Label::Place || label == Label::Sender;
    if (lineStart && word.capital && goesOn && isPlainList(reader.document()) && reader.at(j) &&
        (reader.word(j) || reader.number(j, 0, 9999, 4)))
        return {label, j, end};
    if (lineStart && j == reader.end() && mayStandAlone(label))
        return {label, j, end};
    return {};
}

class Layout {
public:
    explicit Layout(Document &document)
        : m_document(document) {}

    void run() {
        countSpeakers();
        const auto &tokens = m_document.tokens;
        const auto size = static_cast<std::uint32_t>(tokens.size());
        for (std::uint32_t begin = 0; begin < size;) {
            std::uint32_t end = begin;
            while (end < size && tokens[end].kind != TokenKind::LineBreak)
                ++end;
            if (end > begin)
                line(begin, end);
            begin = end + 1;
            ++m_line;
        }
        settleMailHeads();
        settleStays();
        numberSentences();
    }

private:
    static constexpr std::uint32_t kNoSpeaker = 0;

    /// The token behind "Name:" at a line's start, or `kNoSpeaker`.
    std::uint32_t speaker(const Reader &reader, std::uint32_t i) const {
        std::uint32_t j = i;
        // "Coach Dan:"
        const bool titled =
            reader.has(i, Meaning::Person) && reader.at(i)->capital &&
            (reader.symbol(i + 1, ':') || (reader.word(i + 1) && reader.at(i + 1)->capital));
        if (titled)
            j = reader.word(i + 1) ? i + 2 : i + 1;
        while (!titled && j < i + 2 && reader.word(j) && (j == i || reader.at(j)->capital)) {
            if (reader.has(j, Meaning::Event) || reader.has(j, Meaning::LabelWord) ||
                reader.has(j, Meaning::TitleLead) || reader.has(j, Meaning::TitleTail))
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

    /// The token behind "(11:32)", or `i`.
    static std::uint32_t afterBracketedTime(const Reader &reader, std::uint32_t i) {
        constexpr std::uint32_t kLongest = 8;
        if (!reader.number(i + 1, 0, 31) ||
            !(reader.symbol(i + 2, ':') || reader.symbol(i + 2, '.')))
            return i;
        for (std::uint32_t k = i + 3; k < i + kLongest && reader.at(k); ++k)
            if (reader.symbol(k, ')'))
                return k + 1;
        return i;
    }

    std::uint32_t afterStamp(const Reader &reader, std::uint32_t i) const {
        constexpr std::uint32_t kLongestStamp = 16;
        if (!reader.symbol(i, '['))
            return i;
        for (std::uint32_t j = i + 1; j < i + kLongestStamp && reader.at(j); ++j)
            if (reader.symbol(j, ']'))
                return reader.number(i + 1, 0, 9999, 4) ? j + 1 : i;
        return i;
    }

    void countSpeakers() {
        const auto &tokens = m_document.tokens;
        const auto size = static_cast<std::uint32_t>(tokens.size());
        int lines = 0;
        bool lineStart = true;
        for (std::uint32_t i = 0; i < size; ++i) {
            const Reader reader(m_document, size);
            if (lineStart && speaker(reader, afterStamp(reader, i)) != kNoSpeaker)
                ++lines;
            lineStart = tokens[i].kind == TokenKind::LineBreak;
        }
        m_document.conversation = lines >= 2;
    }

    void line(std::uint32_t begin, std::uint32_t end) {
        const Reader reader(m_document, end);
        begin = skipBullet(reader, begin);
        if (begin >= end)
            return;
        const auto stamped = afterStamp(reader, begin);
        if (stamped != begin)
            addField(begin, stamped, Label::Sent, {});
        begin = stamped;
        if (m_document.conversation) {
            if (const auto content = speaker(reader, begin); content != kNoSpeaker) {
                m_spoken = true;
                addField(begin, content, Label::Sender, {});
                begin = content;
            }
        }
        cells(begin, end);
        if (isTrail(begin, end))
            ignoreLine();
        m_spoken = false;
        if (introducesQuote(reader, begin))
            ignoreLine();
        for (std::uint32_t i = begin; i < end; ++i)
            if (reader.has(i, Meaning::Wrote) && ignoresLine(reader, i)) {
                ignoreLine();
                break;
            }
    }

    /// "Home > Events > Theatre" above a page.
    bool isTrail(std::uint32_t begin, std::uint32_t end) const {
        constexpr int kFewestSteps = 2;
        constexpr std::uint32_t kLongest = 16;
        if (m_line != 0 || end - begin > kLongest || end == m_document.tokens.size())
            return false;
        const Reader reader(m_document, end);
        int steps = 0;
        for (std::uint32_t i = begin; i < end; ++i) {
            if (reader.at(i)->kind == TokenKind::Number)
                return false;
            const bool mark = reader.symbol(i, '>') || reader.symbol(i, '/') ||
                              reader.symbol(i, 0x203A) || reader.symbol(i, 0xBB) ||
                              reader.symbol(i, 0x2192);
            steps += mark && reader.at(i)->spaceBefore && i > begin && i + 1 < end ? 1 : 0;
        }
        return steps >= kFewestSteps;
    }

    /// "On 6 May 2026 at 9:15, Ada <ada@...>:" in any language.
    static bool introducesQuote(const Reader &reader, std::uint32_t begin) {
        constexpr std::uint32_t kReach = 4;
        const std::uint32_t end = reader.end();
        if (end < begin + kReach || !reader.symbol(end - 1, ':'))
            return false;
        for (std::uint32_t i = end - kReach; i < end; ++i)
            if (reader.at(i)->kind == TokenKind::Mail)
                return true;
        return false;
    }

    bool ignoresLine(const Reader &reader, std::uint32_t i) const {
        const Sense *wrote = reader.sense(i, Meaning::Wrote);
        const auto next = i + wrote->length;
        return wrote->value == 1 || (reader.symbol(next, ':') && next + 1 == reader.end());
    }

    void ignoreLine() {
        for (auto field = m_document.fields.rbegin();
             field != m_document.fields.rend() && field->line == m_line; ++field)
            field->ignored = true;
    }

    std::uint32_t skipBullet(const Reader &reader, std::uint32_t i) const {
        while (reader.at(i) &&
               (reader.symbol(i, 0x2022) || reader.symbol(i, 0x30FB) || reader.symbol(i, '|') ||
                reader.symbol(i, '\t') || reader.symbol(i, '+') ||
                (reader.symbol(i, '-') && !reader.glued(i + 1))))
            ++i;
        if (reader.number(i, 1, 50) && reader.symbol(i + 1, ')'))
            return i + 2;
        return i;
    }

    bool isCellBreak(const Reader &reader, std::uint32_t i) const {
        return reader.symbol(i, '|') || reader.symbol(i, '\t') || reader.symbol(i, 0x2022) ||
               isDoubleSlash(reader, i);
    }

    bool isDoubleSlash(const Reader &reader, std::uint32_t i) const {
        return reader.symbol(i, '/') && reader.symbol(i + 1, '/') && reader.glued(i + 1);
    }

    void cells(std::uint32_t begin, std::uint32_t end) {
        const Reader reader(m_document, end);
        const auto firstField = m_document.fields.size();
        const std::uint32_t lineBegin = begin;
        std::uint32_t firstCellEnd = begin;
        std::vector<Label> header;
        bool allLabels = true;
        std::size_t column = 0;
        for (std::uint32_t i = begin; i <= end;) {
            if (i < end && !isCellBreak(reader, i)) {
                ++i;
                continue;
            }
            if (i > begin) {
                Label inherited = column < m_header.size() ? m_header[column] : Label::None;
                const Label own = wholeLabel(begin, i);
                // "Where | Room 5": the first cell labels the second.
                if (column == 1 && header.size() == 1 && header[0] != Label::None)
                    inherited = header[0];
                if (column == 0)
                    firstCellEnd = i;
                allLabels = allLabels && own != Label::None;
                if (header.size() < kMostColumns)
                    header.push_back(own);
                fieldsOf(begin, i, inherited);
                ++column;
            }
            begin = i += i < end && isDoubleSlash(reader, i) ? 2U : 1U;
        }
        const bool table = column > 1;
        // "Event | Wine night" above the rule is a row like those below.
        const bool pair = table && column == 2 && !allLabels && header[0] != Label::None;
        if (pair && m_document.fields[firstField].end <= firstCellEnd)
            m_document.fields[firstField].ignored = true;
        if (isRule(lineBegin, end) && !m_pairAbove)
            ignoreHeaderAbove();
        m_pairAbove = pair;
        for (auto f = firstField; f < m_document.fields.size(); ++f)
            m_document.fields[f].cell = table;
        m_header.clear();
        if (table && allLabels) {
            m_header = header;
            ignoreLine();
        }
    }

    /// "|-----|-----|" under the heads of columns.
    bool isRule(std::uint32_t begin, std::uint32_t end) const {
        constexpr std::uint32_t kShortest = 3;
        std::uint32_t dashes = 0;
        for (std::uint32_t i = begin; i < end; ++i) {
            const char32_t c = m_document.tokens[i].symbol;
            if (c != '-' && c != '|' && c != ':' && c != '+' && c != '=')
                return false;
            dashes += c == '-' || c == '=' ? 1U : 0U;
        }
        return dashes >= kShortest;
    }

    void ignoreHeaderAbove() {
        for (auto field = m_document.fields.rbegin(); field != m_document.fields.rend(); ++field) {
            if (field->line == m_line)
                continue;
            if (field->line + 1 < m_line || !field->cell)
                return;
            field->ignored = true;
        }
    }

    Label wholeLabel(std::uint32_t begin, std::uint32_t end) const {
        const Reader reader(m_document, end);
        const Sense *sense = reader.sense(begin, Meaning::LabelWord);
        return sense && begin + sense->length == end ? static_cast<Label>(sense->value)
                                                     : Label::None;
    }

    /// One cell, cut where labels start.
    void fieldsOf(std::uint32_t begin, std::uint32_t end, Label label) {
        const Reader reader(m_document, end);
        if (label == Label::None) {
            label = m_pending;
        }
        TokenSpan words;
        std::uint32_t from = begin;
        for (std::uint32_t i = begin; i < end;) {
            const bool start = i == begin;
            const bool behindMark =
                reader.at(i)->unspaced && !start && reader.at(i - 1)->kind == TokenKind::Symbol;
            const bool mayStart =
                start || behindMark ||
                (reader.at(i)->spaceBefore && (reader.at(i)->capital || reader.symbol(i - 1, ';') ||
                                               reader.symbol(i - 1, ','))) ||
                reader.at(i)->kind == TokenKind::Symbol;
            const LabelMatch match = mayStart ? labelAt(reader, i, start) : LabelMatch{};
            // "Under 13 A: ..." heads no mail.
            if (match.label == Label::None || (match.label == Label::Mail && !start)) {
                ++i;
                continue;
            }
            if (i > from)
                addField(from, i, label, words);
            label = match.label;
            words = {i, match.end};
            from = i = match.content;
        }
        m_pending = Label::None;
        if (from < end)
            addField(from, end, label, words);
        else if (label == Label::Title || (label != Label::None && mayStandAlone(label)))
            m_pending = label;
    }

    void addField(std::uint32_t begin, std::uint32_t end, Label label, TokenSpan words) {
        Field field;
        field.begin = begin;
        field.end = end;
        field.line = m_line;
        field.label = label;
        field.labelWords = words;
        field.spoken = m_spoken;
        field.ignored = label == Label::Sent || label == Label::Mail || label == Label::Sender;
        m_document.fields.push_back(field);
    }

    /// A "Date:" among the lines that head a mail tells when it was sent.
    void settleMailHeads() {
        auto &fields = m_document.fields;
        for (std::size_t i = 0; i < fields.size();) {
            std::size_t end = i;
            bool mail = false;
            bool time = false;
            while (end < fields.size() && fields[end].label != Label::None &&
                   (end == i || fields[end].line <= fields[end - 1].line + 1)) {
                mail = mail || fields[end].label == Label::Mail;
                time =
                    time || fields[end].label == Label::Time || fields[end].label == Label::Place;
                ++end;
            }
            for (std::size_t k = i; k < end && mail && !time; ++k)
                if (fields[k].label == Label::Date)
                    fields[k].ignored = true;
            i = std::max(end, i + 1);
        }
    }

    bool mayBe(const Field &field, Label label) const {
        if (field.labelWords.empty())
            return false;
        const Token &token = m_document.tokens[field.labelWords.begin];
        const auto senses = m_document.senses.begin() + token.firstSense;
        return std::any_of(senses, senses + token.senses, [&](const Sense &sense) {
            return sense.meaning == Meaning::LabelWord && sense.value == static_cast<int>(label);
        });
    }

    /// Arrival and departure: who stays arrives first, who travels departs first.
    void settleStays() {
        bool started = false;
        for (Field &field : m_document.fields) {
            if (mayBe(field, Label::Start) && mayBe(field, Label::End))
                field.label = started ? Label::End : Label::Start;
            started = started || field.label == Label::Start || field.label == Label::When;
        }
    }

    void numberSentences() {
        std::uint32_t sentence = 0;
        for (std::uint32_t f = 0; f < m_document.fields.size(); ++f) {
            const Field &field = m_document.fields[f];
            const Reader reader(m_document, field.end);
            ++sentence;
            for (std::uint32_t i = field.begin; i < field.end; ++i) {
                m_document.tokens[i].sentence = sentence;
                m_document.tokens[i].field = f;
                if (endsSentence(reader, field.begin, i))
                    ++sentence;
            }
        }
    }

    bool endsSentence(const Reader &reader, std::uint32_t begin, std::uint32_t i) const {
        constexpr char32_t kIdeographicStop = 0x3002;
        if (reader.symbol(i, '!') || reader.symbol(i, '?') || reader.symbol(i, kIdeographicStop))
            return true;
        if (!reader.symbol(i, '.') || reader.glued(i + 1) || i == begin)
            return false;
        const Token &before = m_document.tokens[i - 1];
        // "19.05. 16 Uhr"
        const bool dotted = i >= begin + 3 && before.kind == TokenKind::Number &&
                            reader.symbol(i - 2, '.') && reader.glued(i - 1) &&
                            reader.number(i - 3, 1, 31);
        if (dotted && reader.at(i + 1) &&
            (reader.at(i + 1)->kind == TokenKind::Number || i == begin + 3))
            return false;
        if (before.kind == TokenKind::Word && isHouse(reader, i))
            return false;
        if (before.kind != TokenKind::Word)
            return !isOrdinal(reader, i) && !isCountedNoun(reader, begin, i);
        // "Hall C." is no abbreviation.
        if (before.end - before.begin == 1 && i > begin + 1 && reader.at(i - 1)->capital &&
            reader.has(i - 2, Meaning::PlaceNoun))
            return true;
        if (before.end - before.begin == 1)
            // "at 5 p.m. Bring ..." ends one, "P.A. Day" does not.
            return i > begin + 2 && reader.symbol(i - 2, '.') && reader.at(i + 1) &&
                   reader.at(i + 1)->capital &&
                   (!reader.at(i - 1)->capital || reader.has(i - 3, Meaning::Meridiem));
        return !reader.has(i - 1, Meaning::Abbreviation);
    }

    /// "6. November", "vom 3. bis 5.": the full stop makes an ordinal.
    static bool isOrdinal(const Reader &reader, std::uint32_t i) {
        return reader.has(i, Meaning::OrdinalMark) &&
               (reader.has(i + 1, Meaning::Month) || reader.has(i + 1, Meaning::Weekday) ||
                (reader.word(i + 1) && !reader.at(i + 1)->capital));
    }

    /// "Lindenstr. 11": a number that nothing but a mark follows belongs to the name.
    static bool isHouse(const Reader &reader, std::uint32_t i) {
        const Token *next = reader.at(i + 2);
        const bool open = next && (next->kind != TokenKind::Symbol || next->symbol == ':' ||
                                   next->symbol == '.' || next->symbol == '-');
        return reader.at(i - 1)->capital && reader.number(i + 1, 1, 999, 3) && !open;
    }

    /// "der 5. Klassen", ", 2. Stock": the number belongs to the noun behind it.
    static bool isCountedNoun(const Reader &reader, std::uint32_t begin, std::uint32_t i) {
        if (!reader.has(i, Meaning::OrdinalMark) || !reader.number(i - 1, 1, 99) ||
            !reader.word(i + 1))
            return false;
        const bool place =
            reader.has(i + 1, Meaning::PlaceNoun) && !reader.has(i + 1, Meaning::Event);
        if (i - 1 == begin)
            return place || reader.has(i + 1, Meaning::Event);
        return (place && !reader.has(i - 2, Meaning::DateMarker)) ||
               (reader.has(i - 2, Meaning::The) && i >= begin + 3 && reader.word(i - 3) &&
                !reader.has(i - 3, Meaning::Weekday));
    }

    static constexpr std::size_t kMostColumns = 32;

    Document &m_document;
    std::uint32_t m_line = 0;
    bool m_spoken = false;
    bool m_pairAbove = false; ///< the line above is a label and its value
    Label m_pending = Label::None;
    std::vector<Label> m_header;
};

} // namespace

void layOut(Document &document) {
    joinDateTiles(document);
    Layout(document).run();
}

} // namespace pindle::conversion
