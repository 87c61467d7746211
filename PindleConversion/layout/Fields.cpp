#include "PindleConversion/layout/Fields.h"

#include <algorithm>

#include "PindleConversion/layout/Labels.h"
#include "PindleConversion/layout/Sentences.h"
#include "PindleConversion/layout/Speakers.h"
#include "PindleConversion/layout/Tiles.h"

namespace pindle::conversion {

namespace {

class Layout {
public:
    explicit Layout(Document &document)
        : m_document(document) {}

    void run() {
        m_document.conversation = isConversation(m_document);
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
        settleLabels(m_document);
        numberSentences(m_document);
    }

private:
    /// A line's cells as far as they are read.
    struct Row {
        std::vector<Label> labels;  ///< what each cell is as a whole
        bool allLabels = true;      ///< perhaps the heads of a table's columns
        bool numbers = false;       ///< in some cell
        std::size_t unknown = 0;    ///< cells that are no label
        std::size_t column = 0;     ///< how many cells there were
        std::uint32_t firstEnd = 0; ///< end of the first cell
    };

    void line(std::uint32_t begin, std::uint32_t end) {
        const Reader reader(m_document, end);
        const std::uint32_t lineBegin = begin;
        begin = skipBullet(reader, begin);
        if (begin >= end)
            return;
        m_listed = m_listed && isListItem(lineBegin, end);
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
        // "件名: 転送: 臨時総会の件": a subject says that it is passed on, too.
        if (!m_document.meanings.has(Meaning::Wrote) ||
            (!m_document.fields.empty() && m_document.fields.back().line == m_line &&
             m_document.fields.back().label == Label::Title))
            return;
        for (std::uint32_t i = begin; i < end; ++i)
            if (reader.has(i, Meaning::Wrote) && ignoresLine(reader, i)) {
                ignoreLine();
                break;
            }
    }

    /// "1. Elections", "- Elections" below "Agenda:", without a number that could be a moment's.
    bool isListItem(std::uint32_t begin, std::uint32_t end) const {
        constexpr std::uint32_t kMostItems = 30;
        constexpr std::uint32_t kLongest = 24;
        const Reader reader(m_document, end);
        const bool numbered = reader.number(begin, 1, kMostItems) &&
                              (reader.symbol(begin + 1, '.') || reader.symbol(begin + 1, ')'));
        std::uint32_t i = numbered ? begin + 2 : skipBullet(reader, begin);
        if (i == begin || end - i > kLongest)
            return false;
        static constexpr Meanings kMoment{Meaning::Weekday, Meaning::Month, Meaning::RelativeDay,
                                          Meaning::ClockWord};
        for (; i < end; ++i)
            if (reader.token(i).kind == TokenKind::Number || reader.mayHave(i, kMoment))
                return false;
        return true;
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
            if (reader.token(i).kind == TokenKind::Number)
                return false;
            const bool mark = reader.symbol(i, '>') || reader.symbol(i, '/') ||
                              reader.symbol(i, 0x203A) || reader.symbol(i, 0xBB) ||
                              reader.symbol(i, 0x2192);
            steps += mark && reader.token(i).spaceBefore && i > begin && i + 1 < end ? 1 : 0;
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
            if (reader.token(i).kind == TokenKind::Mail)
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
               isDoubleSlash(reader, i) || (m_separator != 0 && reader.symbol(i, m_separator));
    }

    bool isDoubleSlash(const Reader &reader, std::uint32_t i) const {
        return reader.symbol(i, '/') && reader.symbol(i + 1, '/') && reader.glued(i + 1);
    }

    /// What separates the cells of "Subject;Start;End;Room", the first line of an exported table.
    static char32_t separatorOf(const Reader &reader, std::uint32_t begin) {
        constexpr std::uint32_t kLongest = 120;
        constexpr int kFewestCells = 3;
        for (const char32_t mark : {U';', U','}) {
            int marks = 0;
            int labels = 0;
            bool close = true;
            std::uint32_t cell = begin;
            const std::uint32_t end = std::min(reader.end(), begin + kLongest);
            for (std::uint32_t i = begin; i <= end && close; ++i) {
                if (i < end && !reader.symbol(i, mark))
                    continue;
                labels += i > cell && wholeLabel(Reader(reader.document(), i), cell) != Label::None;
                marks += i < end ? 1 : 0;
                close = i == end || (reader.glued(i) && (i + 1 == end || reader.glued(i + 1)));
                cell = i + 1;
            }
            if (close && marks + 1 >= kFewestCells && labels + 1 >= kFewestCells)
                return mark;
        }
        return 0;
    }

    void cells(std::uint32_t begin, std::uint32_t end) {
        const Reader reader(m_document, end);
        if (m_line == 0)
            m_separator = separatorOf(reader, begin);
        const auto firstField = m_document.fields.size();
        const std::uint32_t lineBegin = begin;
        Row row;
        row.firstEnd = begin;
        bool quoted = false;
        for (std::uint32_t i = begin; i <= end;) {
            quoted = quoted != (m_separator != 0 && reader.symbol(i, '"'));
            if (i < end && (m_document.tokens[i].kind != TokenKind::Symbol || quoted ||
                            !isCellBreak(reader, i))) {
                ++i;
                continue;
            }
            if (i > begin)
                cell(begin, i, row);
            else if (m_separator != 0)
                skipCell(row);
            begin = i += i < end && isDoubleSlash(reader, i) ? 2U : 1U;
        }
        settleRow(row, firstField, isRule(lineBegin, end));
    }

    void cell(std::uint32_t begin, std::uint32_t end, Row &row) {
        Label inherited = row.column < m_header.size() ? m_header[row.column] : Label::None;
        const Label own = wholeLabel(Reader(m_document, end), begin);
        // "Where | Room 5": the first cell labels the second.
        if (row.column == 1 && row.labels.size() == 1 && row.labels[0] != Label::None)
            inherited = row.labels[0];
        if (row.column == 0)
            row.firstEnd = end;
        row.allLabels = row.allLabels && own != Label::None;
        row.unknown += own == Label::None ? 1U : 0U;
        for (std::uint32_t i = begin; i < end && !row.numbers; ++i)
            row.numbers = m_document.tokens[i].kind == TokenKind::Number;
        if (row.labels.size() < kMostColumns)
            row.labels.push_back(own);
        m_numbers = m_numbers || row.numbers;
        fieldsOf(begin, end, inherited);
        ++row.column;
    }

    static void skipCell(Row &row) {
        if (row.labels.size() < kMostColumns)
            row.labels.push_back(Label::None);
        ++row.column;
    }

    /// What the cells of a line say together; its fields are those from `firstField` on.
    void settleRow(const Row &row, std::size_t firstField, bool rule) {
        const bool table = row.column > 1;
        // "Event | Wine night" above the rule is a row like those below.
        const bool pair =
            table && row.column == 2 && !row.allLabels && row.labels[0] != Label::None;
        // There is no field at all in "Where | When:".
        if (pair && firstField < m_document.fields.size() &&
            m_document.fields[firstField].end <= row.firstEnd)
            m_document.fields[firstField].ignored = true;
        if (rule && !m_pairAbove)
            ignoreHeaderAbove();
        m_pairAbove = pair;
        for (auto f = firstField; f < m_document.fields.size(); ++f)
            m_document.fields[f].cell = table;
        // The rule below the heads of columns ends no table.
        if (rule)
            return;
        m_header.clear();
        // "Fixture | Date | Push back | Venue"
        const bool mostLabels = row.column >= kFewestHeads && row.unknown == 1 && !row.numbers;
        if (table && (row.allLabels || mostLabels || (m_separator != 0 && m_line == 0))) {
            m_header = row.labels;
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
            // "| Event | Jazz Night |" above the rule is a row of its own.
            field->ignored = field->ignored || field->label == Label::None;
        }
    }

    /// "Preparer: Ynez. Mon, Feb 10 at 6 PM", "To: All staff. Fire drill ...": behind the full
    /// stop the text goes on.
    static bool endsName(const Reader &reader, std::uint32_t i) {
        constexpr std::uint32_t kShortest = 3; ///< letters; "J." goes on
        if (!reader.symbol(i, '.') || reader.glued(i + 1) || i == 0 || !reader.glued(i))
            return false;
        const Token &name = reader.document().tokens[i - 1];
        return name.kind == TokenKind::Word && name.end - name.begin >= kShortest &&
               !reader.has(i - 1, Meaning::Abbreviation) && !reader.has(i - 1, Meaning::Person);
    }

    /// Whether a label may start at `token`, behind `before`. Most words are none.
    static bool mayStartLabel(const Token &before, const Token &token) {
        const bool mark =
            token.kind == TokenKind::Symbol || (token.unspaced && before.kind == TokenKind::Symbol);
        const bool name =
            token.spaceBefore && (token.capital || before.symbol == ';' || before.symbol == ',');
        // "OUT OF OFFICE: ..." names no place.
        return (mark || name) && (token.unspaced || !before.meanings.has(Meaning::Of));
    }

    /// One cell, cut where labels start.
    void fieldsOf(std::uint32_t begin, std::uint32_t end, Label label) {
        const Reader reader(m_document, end);
        if (label == Label::None)
            label = m_listed ? Label::Note : m_pending;
        TokenSpan words;
        std::uint32_t from = begin;
        for (std::uint32_t i = begin; i < end;) {
            const bool start = i == begin;
            const bool people = label == Label::Sender || label == Label::Mail;
            if (people && endsName(reader, i) && i + 1 < end) {
                addField(from, i + 1, label, words);
                label = Label::None;
                words = {};
                from = ++i;
                continue;
            }
            if (!start && !mayStartLabel(m_document.tokens[i - 1], m_document.tokens[i])) {
                ++i;
                continue;
            }
            const LabelMatch match = labelAt(reader, i, start);
            // "Under 13 A: ..." heads no mail, "talks in the Reading Room:" above a list names one.
            const bool name = match.label == Label::Place && !start && match.content == end &&
                              reader.word(i - 1) && reader.token(i - 1).upper() &&
                              !reader.has(i - 1, Meaning::Month);
            if (match.label == Label::None || (match.label == Label::Mail && !start) || name) {
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
        // "Agenda:" below the words that say when.
        m_listed = m_listed || (from == end && label == Label::Note && m_numbers);
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

    static constexpr std::size_t kMostColumns = 32;
    static constexpr std::size_t kFewestHeads = 3; ///< where one says nothing

    Document &m_document;
    std::uint32_t m_line = 0;
    char32_t m_separator = 0; ///< of the cells in an exported table, 0 for none
    bool m_spoken = false;
    bool m_pairAbove = false; ///< the line above is a label and its value
    Label m_pending = Label::None;
    bool m_numbers = false; ///< in some line above
    bool m_listed = false;  ///< below a label that a list follows
    std::vector<Label> m_header;
};

} // namespace

void layOut(Document &document) {
    joinDateTiles(document);
    Layout(document).run();
}

} // namespace pindle::conversion
