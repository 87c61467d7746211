#include "PindleConversion/lexicons/compiler/LexiconFile.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <stdexcept>

#include "PindleConversion/lexicons/compiler/MeaningNames.h"

namespace pindle::conversion {

namespace {

std::string_view trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

std::vector<std::string> split(std::string_view text, char at) {
    std::vector<std::string> parts;
    while (!text.empty()) {
        const auto bar = text.find(at);
        if (const auto part = trimmed(text.substr(0, bar)); !part.empty())
            parts.emplace_back(part);
        text = bar == std::string_view::npos ? std::string_view{} : text.substr(bar + 1);
    }
    return parts;
}

std::optional<int> number(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size())
        return std::nullopt;
    return value;
}

class LexiconReader {
public:
    LexiconReader(std::string_view text, const std::string &name)
        : m_text(text)
        , m_name(name) {}

    LexiconFile run() {
        while (!m_text.empty())
            logicalLine(nextLine());
        return std::move(m_file);
    }

private:
    /// A line with those that continue it: it ends with '|'.
    std::string nextLine() {
        std::string line;
        do {
            const auto end = m_text.find('\n');
            line += ' ';
            line += trimmed(m_text.substr(0, end));
            m_text = end == std::string_view::npos ? std::string_view{} : m_text.substr(end + 1);
            ++m_line;
        } while (line.ends_with('|') && !m_text.empty());
        return std::string(trimmed(line));
    }

    [[noreturn]] void fail(std::string_view what) const {
        throw std::runtime_error(m_name + ":" + std::to_string(m_line) + ": " + std::string(what));
    }

    void logicalLine(std::string_view line) {
        if (line.empty() || (line.starts_with('#') && line != "#"))
            return;
        if (line.starts_with('[') && line.ends_with(']'))
            return section(line.substr(1, line.size() - 2));
        const auto equals = line.find(" =");
        const bool hasValue = equals != std::string_view::npos;
        const auto value = hasValue ? trimmed(line.substr(0, equals)) : std::string_view{};
        const auto rest = hasValue ? trimmed(line.substr(equals + 2)) : line;
        if (m_messages)
            return message(value, rest);
        m_table ? entry(value, rest) : option(value, rest);
    }

    void section(std::string_view name) {
        m_messages = name == "message";
        m_table = m_messages ? nullptr : findTable(name);
        if (!m_table && !m_messages)
            fail("no such table: " + std::string(name));
    }

    void message(std::string_view name, std::string_view sentence) {
        const Notice notice = noticeNamed(name);
        if (notice == Notice::None)
            fail("no such message");
        m_file.messages[static_cast<std::size_t>(notice)] = sentence;
    }

    void option(std::string_view name, std::string_view value) {
        if (name == "language")
            m_file.code = value == "shared" ? std::string_view{} : value;
        else if (name == "order")
            m_file.dayOrder = order(value);
        else if (name == "script")
            m_file.script = script(value);
        else if (name == "clock")
            m_file.clock24 = value == "24";
        else if (name == "dotted-dates")
            m_file.dottedDates = value == "yes";
        else if (name == "capital-nouns")
            m_file.capitalNouns = value == "yes";
        else if (name == "era-years")
            m_file.eraYears = number(value).value_or(0);
        else if (name == "zones")
            m_file.zones = value;
        else if (name == "compound")
            compound(value);
        else if (name == "tails")
            for (const std::string &each : split(value, ' '))
                m_file.tails.push_back(table(each).meaning);
        else
            fail("no such option");
    }

    DayOrder order(std::string_view value) const {
        if (value == "day-first")
            return DayOrder::DayFirst;
        if (value == "month-first")
            return DayOrder::MonthFirst;
        if (value != "by-zone")
            fail("no such order");
        return DayOrder::ByZone;
    }

    Script script(std::string_view value) const {
        if (value == "japanese")
            return Script::Japanese;
        if (value == "chinese")
            return Script::Chinese;
        if (value != "latin")
            fail("no such script");
        return Script::Latin;
    }

    const TableKind &table(std::string_view name) const {
        const TableKind *found = findTable(name);
        if (!found)
            fail("no such table: " + std::string(name));
        return *found;
    }

    void compound(std::string_view value) {
        const auto parts = split(value, ' ');
        if (parts.size() != 2)
            fail("a compound has two tables");
        m_file.compounds.emplace_back(table(parts[0]).meaning, table(parts[1]).meaning);
    }

    void entry(std::string_view value, std::string_view words) {
        LexiconEntry entry;
        entry.meaning = m_table->meaning;
        entry.value = m_table->value;
        readValue(entry, value);
        entry.phrases = split(words, '|');
        if (entry.phrases.empty())
            fail("no words");
        m_file.entries.push_back(std::move(entry));
    }

    /// "4/4/11", "-1/1/5": which weekday of which month.
    int nthHoliday(std::string_view value) const {
        const auto parts = split(value, '/');
        const auto nth = parts.size() == 3 ? number(parts[0]) : std::nullopt;
        const auto weekday = nth ? number(parts[1]) : std::nullopt;
        const auto month = weekday ? number(parts[2]) : std::nullopt;
        if (!month || *nth >= kLastWeek || *nth < -1 || *nth == 0)
            fail("no week/weekday/month before '='");
        return (*nth < 0 ? kLastWeek : *nth) * kNthHoliday + *month * 100 + *weekday;
    }

    void readValue(LexiconEntry &entry, std::string_view value) const {
        constexpr std::string_view easter = "easter";
        const Values values = m_table->values;
        if (values == Values::Note) {
            entry.note = value;
            return;
        }
        if (values == Values::Holiday && value.starts_with(easter)) {
            entry.note = easter;
            value.remove_prefix(easter.size());
            if (value.starts_with('+'))
                value.remove_prefix(1);
        }
        constexpr std::string_view advent = "advent";
        if (values == Values::Holiday && value.starts_with(advent)) {
            value.remove_prefix(advent.size());
            const auto days = value.empty() ? std::optional(0) : number(value);
            if (!days || *days > 0)
                fail("no days before the last Sunday of Advent before '='");
            entry.value = *days;
            return;
        }
        if (values == Values::Holiday && value.find('/') != std::string_view::npos) {
            entry.value = nthHoliday(value);
            return;
        }
        if (value.empty() && (values == Values::Number || values == Values::None))
            return;
        if (values == Values::Number || values == Values::Holiday) {
            const auto known = value.empty() ? std::optional(0) : number(value);
            if (!known)
                fail("no number before '='");
            entry.value = *known;
            return;
        }
        entry.value = valueNamed(values, value);
        if (entry.value < 0 || values == Values::None)
            fail("no such value: " + std::string(value));
    }

    std::string_view m_text;
    std::string m_name;
    int m_line = 0;
    const TableKind *m_table = nullptr;
    bool m_messages = false;
    LexiconFile m_file;
};

constexpr Meaning kMandatory[] = {
    Meaning::Common,      Meaning::Month,     Meaning::Weekday,     Meaning::Number,
    Meaning::RelativeDay, Meaning::UnitWord,  Meaning::DateMarker,  Meaning::TimeMarker,
    Meaning::HourMark,    Meaning::ClockWord, Meaning::PartOfDay,   Meaning::RangeTo,
    Meaning::And,         Meaning::LabelWord, Meaning::PlaceNoun,   Meaning::Event,
    Meaning::RoleWord,    Meaning::Greeting,  Meaning::Chatter,     Meaning::TitleLead,
    Meaning::TitleTail,   Meaning::PastVerb,  Meaning::PresentVerb, Meaning::Online,
    Meaning::Cancelled,   Meaning::ZoneWord,  Meaning::PlaceStop,   Meaning::Opening};

bool hasValue(const LexiconFile &lexicon, Meaning meaning, int value) {
    return std::any_of(lexicon.entries.begin(), lexicon.entries.end(), [&](const auto &entry) {
        return entry.meaning == meaning && entry.value == value;
    });
}

bool hasTable(const LexiconFile &lexicon, Meaning meaning) {
    return std::any_of(lexicon.entries.begin(), lexicon.entries.end(),
                       [&](const auto &entry) { return entry.meaning == meaning; });
}

void needValues(const LexiconFile &lexicon, Meaning meaning, int first, int last,
                std::vector<std::string> &missing) {
    for (int value = first; value <= last; ++value)
        if (!hasValue(lexicon, meaning, value))
            missing.push_back(std::string(tableName(meaning)) + " " + std::to_string(value));
}

bool hasAny(const LexiconFile &lexicon, std::initializer_list<Meaning> meanings) {
    return std::any_of(meanings.begin(), meanings.end(),
                       [&](Meaning meaning) { return hasTable(lexicon, meaning); });
}

} // namespace

LexiconFile readLexicon(std::string_view text, const std::string &name) {
    return LexiconReader(text, name).run();
}

std::vector<std::string> missingTables(const LexiconFile &lexicon) {
    std::vector<std::string> missing;
    if (lexicon.code.empty())
        return missing;
    for (Meaning meaning : kMandatory)
        if (!hasTable(lexicon, meaning))
            missing.emplace_back(tableName(meaning));
    needValues(lexicon, Meaning::Month, 1, 12, missing);
    needValues(lexicon, Meaning::Weekday, 1, 7, missing);
    needValues(lexicon, Meaning::Number, 1, 12, missing);
    needValues(lexicon, Meaning::RelativeDay, -1, 2, missing);
    needValues(lexicon, Meaning::Event, 1, static_cast<int>(EventKind::Travel), missing);
    needValues(lexicon, Meaning::PartOfDay, 1, static_cast<int>(DayPart::Night), missing);
    needValues(lexicon, Meaning::RoleWord, 1, static_cast<int>(Role::Show), missing);
    needValues(lexicon, Meaning::LabelWord, 1, static_cast<int>(Label::End), missing);
    if (!hasAny(lexicon, {Meaning::Next, Meaning::Behind, Meaning::Period}))
        missing.emplace_back("next, behind or period");
    if (!hasAny(lexicon, {Meaning::PlaceMarker, Meaning::PlaceBehind}))
        missing.emplace_back("place-marker or place-behind");
    if (lexicon.zones.empty())
        missing.emplace_back("zones");
    for (std::size_t i = 1; i < kNotices; ++i)
        if (lexicon.messages[i].empty())
            missing.push_back("message " + std::string(noticeName(static_cast<Notice>(i))));
    return missing;
}

} // namespace pindle::conversion
