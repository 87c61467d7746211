#include "PindleConversion/clean/CleanText.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdint>
#include <string_view>

#include <unicode/uchar.h>

#include "PindleConversion/clean/Utf8.h"

namespace pindle::conversion {

namespace {

constexpr UChar32 kBullet = 0x2022;
constexpr UChar32 kNothing = -1;
constexpr UChar32 kTwoCalls = 0x203C; ///< "!!" in one sign
constexpr UChar32 kCallAndQuestion = 0x2049;
constexpr std::string_view kWideBlank = "\u3000";

/// A sign's name on web pages and how it is typed.
struct Entity {
    std::string_view name;
    std::string_view plain;
};
constexpr std::array<Entity, 46> kEntities{
    {{"amp", "&"},    {"nbsp", " "},   {"lt", "<"},     {"gt", ">"},     {"quot", "\""},
     {"apos", "'"},   {"ndash", "-"},  {"mdash", "-"},  {"minus", "-"},  {"hellip", "..."},
     {"lsquo", "'"},  {"rsquo", "'"},  {"ldquo", "\""}, {"rdquo", "\""}, {"sbquo", "'"},
     {"bdquo", "\""}, {"laquo", "\""}, {"raquo", "\""}, {"ensp", " "},   {"emsp", " "},
     {"thinsp", " "}, {"bull", "•"},   {"middot", "·"}, {"rarr", "→"},   {"euro", "€"},
     {"pound", "£"},  {"deg", "°"},    {"auml", "ä"},   {"ouml", "ö"},   {"uuml", "ü"},
     {"Auml", "Ä"},   {"Ouml", "Ö"},   {"Uuml", "Ü"},   {"szlig", "ß"},  {"eacute", "é"},
     {"egrave", "è"}, {"ecirc", "ê"},  {"agrave", "à"}, {"aacute", "á"}, {"atilde", "ã"},
     {"iacute", "í"}, {"oacute", "ó"}, {"otilde", "õ"}, {"uacute", "ú"}, {"ccedil", "ç"},
     {"ntilde", "ñ"}}};

bool isInvisible(UChar32 c) {
    return c == 0xAD || c == 0x180E || (c >= 0x200B && c <= 0x200F) ||
           (c >= 0x202A && c <= 0x202E) || (c >= 0x2060 && c <= 0x2069) || c == 0xFEFF ||
           (c >= 0xFE00 && c <= 0xFE0F);
}

bool isBullet(UChar32 c) {
    constexpr std::array<UChar32, 25> bullets{
        0x2022, 0x2023, 0x2043, 0x204C, 0x204D, 0x2219, 0x25A0, 0x25A1, 0x25AA,
        0x25AB, 0x25B2, 0x25B3, 0x25B6, 0x25B7, 0x25BA, 0x25BC, 0x25BD, 0x25C6,
        0x25C7, 0x25C9, 0x25CB, 0x25CE, 0x25CF, 0x25E6, 0x2756};
    for (UChar32 bullet : bullets)
        if (c == bullet)
            return true;
    return false;
}

/// Pictures that people use as labels; they are kept, since the next steps read them.
bool isLabelPicture(UChar32 c) {
    return c == 0x1F4CD || c == 0x1F4CC || c == 0x1F5FA || c == 0x1F4C5 || c == 0x1F4C6 ||
           c == 0x1F5D3 || c == 0x23F0 || c == 0x23F1 || c == 0x23F2 || c == 0x231A ||
           c == 0x1F517 || (c >= 0x1F550 && c <= 0x1F567);
}

UChar32 foldLabelPicture(UChar32 c) {
    if (c == 0x1F4CD || c == 0x1F4CC || c == 0x1F5FA)
        return 0x1F4CD;
    if (c == 0x1F517)
        return c;
    return c == 0x1F4C5 || c == 0x1F4C6 || c == 0x1F5D3 ? 0x1F4C5 : 0x23F0;
}

bool isPicture(UChar32 c) {
    constexpr UChar32 kWhiteStar = 0x2606; // the black one is a picture to Unicode as well
    if (c < 0x2190)
        return false;
    const bool block = c >= 0x2580 && c <= 0x259F; // what copies of bar codes are made of
    return block || c == kWhiteStar || (c >= 0x1F000 && c <= 0x1FAFF) ||
           (c >= 0xE0020 && c <= 0xE007F) || u_hasBinaryProperty(c, UCHAR_EXTENDED_PICTOGRAPHIC);
}

/// One character of the text in its plain form; `kNothing` when it is dropped.
UChar32 plain(UChar32 c) {
    if (c < 0)
        return ' ';
    if (c < 0x80) {
        if (c == '\n' || c == '\t' || (c >= 0x20 && c < 0x7F))
            return c;
        return c == '\v' || c == '\f' || c == '\r' ? '\n' : ' ';
    }
    if (c == 0x85 || c == 0x2028 || c == 0x2029)
        return '\n';
    if (isInvisible(c))
        return kNothing;
    if (isLabelPicture(c))
        return foldLabelPicture(c);
    if (isBullet(c))
        return kBullet;
    if (c >= 0xFF01 && c <= 0xFF5E)
        return c - 0xFF01 + 0x21;
    if (c == kTwoCalls || c == kCallAndQuestion)
        return '!';
    if (u_isUWhiteSpace(c) || u_iscntrl(c) || isPicture(c))
        return ' ';
    return c;
}

bool isWordByte(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte >= 0x80 || (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') ||
           (c >= 'A' && c <= 'Z');
}

/// Stays as it is within a line, whatever stands beside it.
constexpr bool isSettled(unsigned char c) {
    return c >= 0x20 && c < 0x7F && c != '*' && c != '_' && c != '`' && c != '~' && c != '&' &&
           c != '<' && c != '#';
}

constexpr auto kSettled = [] {
    std::array<bool, 256> settled{};
    for (std::size_t c = 0; c < settled.size(); ++c)
        settled[c] = isSettled(static_cast<unsigned char>(c));
    return settled;
}();

/// A letter that stays as it is: of Europe's languages, kana, or an ideograph; or a dash or
/// quotation mark. Asking this first saves looking it up among pictures, blanks and controls.
constexpr bool isPlainLetter(UChar32 c) {
    constexpr UChar32 kSoftHyphen = 0xAD;
    return (c >= 0x3041 && c <= 0x9FFF && !(c > 0x30FF && c < 0x3400)) ||
           (c >= 0xA1 && c <= 0x24F && c != kSoftHyphen) || (c >= 0x2010 && c <= 0x2021) ||
           (c >= 0x3001 && c <= 0x301F);
}

class Cleaner {
public:
    explicit Cleaner(std::string_view text)
        : m_in(text) {
        m_out.reserve(text.size());
    }

    std::string run() {
        while (m_at < m_in.size()) {
            step();
            if (!lineStarts())
                copySettled();
        }
        return std::move(m_out);
    }

private:
    /// Most of a text, all at once.
    void copySettled() {
        std::size_t end = m_at;
        while (end < m_in.size()) {
            const auto c = static_cast<unsigned char>(m_in[end]);
            if (kSettled[c]) {
                ++end;
                continue;
            }
            const CodePoint point = c < 0x80 ? CodePoint{kNothing, end} : decodeAt(m_in, end);
            if (!isPlainLetter(point.value))
                break;
            end = point.end;
        }
        m_out.append(m_in, m_at, end - m_at);
        m_at = end;
    }

    void step() {
        const auto c = static_cast<unsigned char>(m_in[m_at]);
        if (c == '\r' && m_at + 1 < m_in.size() && m_in[m_at + 1] == '\n') {
            ++m_at;
            return;
        }
        if (lineStarts() && skipLinePrefix())
            return;
        if (c == '*' || c == '_' || c == '`' || c == '~')
            return emphasis(m_in[m_at]);
        if (c == '#' && hashes())
            return;
        if ((c == '&' && entity()) || (c == '<' && tag()) || (c == '\n' && wraps()))
            return;
        if (c == static_cast<unsigned char>(kWideBlank[0]) && spacedLabel())
            return;
        const CodePoint point = decodeAt(m_in, m_at);
        m_at = point.end;
        const UChar32 shown = plain(point.value);
        if (shown == ' ' && isPicture(point.value))
            return passPicture();
        put(shown);
    }

    /// A picture parts words as one blank does, with as many blanks as may stand beside it.
    void passPicture() {
        if (m_out.empty() || m_out.back() != ' ')
            put(' ');
        while (m_at < m_in.size() && m_in[m_at] == ' ')
            ++m_at;
    }

    /// "Read-\ning Room": the hyphen that only the line's end put there goes.
    bool wraps() {
        constexpr std::size_t kShortest = 3;
        const auto small = [](char each) { return each >= 'a' && each <= 'z'; };
        const std::size_t size = m_out.size();
        if (size < kShortest || m_out.back() != '-' || !small(m_out[size - 2]) ||
            !isWordByte(m_out[size - kShortest]) || m_at + 2 >= m_in.size() ||
            !small(m_in[m_at + 1]) || !small(m_in[m_at + 2]))
            return false;
        m_out.pop_back();
        ++m_at;
        return true;
    }

    /// "時　間：", "入　場｜": wide blanks only set the signs of a label apart that opens a line.
    bool spacedLabel() {
        constexpr std::size_t kSign = 3; ///< bytes
        constexpr std::array<std::string_view, 5> kEnds{":", "：", "|", "｜", kWideBlank};
        // Asked first: of many blanks in a row only one looks for their end.
        if (m_out.size() < kSign || !isIdeograph(m_out, m_out.size() - kSign))
            return false;
        std::size_t next = m_at;
        while (m_in.substr(next).starts_with(kWideBlank))
            next += kWideBlank.size();
        if (next == m_at || next + kSign > m_in.size() || !isIdeograph(m_in, next))
            return false;
        const std::size_t before = m_out.size() - kSign;
        const bool opens = before == 0 || m_out[before - 1] == '\n' || m_out[before - 1] == ' ' ||
                           (m_labelEnd == before && before > 0);
        const auto rest = m_in.substr(next + kSign);
        const bool ends = std::any_of(kEnds.begin(), kEnds.end(),
                                      [&](std::string_view end) { return rest.starts_with(end); });
        if (!opens || !ends)
            return false;
        m_labelEnd = m_out.size();
        m_at = next;
        return true;
    }

    /// Weekdays are listed, not set apart.
    static bool isIdeograph(std::string_view text, std::size_t at) {
        constexpr UChar32 kFirst = 0x4E00;
        constexpr UChar32 kLast = 0x9FFF;
        constexpr std::u32string_view kListed = U"月火水木金土一二三四五六七八九十";
        const UChar32 c = decodeAt(text, at).value;
        return c >= kFirst && c <= kLast &&
               kListed.find(static_cast<char32_t>(c)) == std::u32string_view::npos;
    }

    bool lineStarts() const { return m_out.empty() || m_out.back() == '\n'; }

    /// Quotation and heading marks before a line.
    bool skipLinePrefix() {
        const char c = m_in[m_at];
        if (c == '>' || c == '#' || c == ' ') {
            ++m_at;
            return true;
        }
        return false;
    }

    void emphasis(char mark) {
        std::size_t end = m_at;
        while (end < m_in.size() && m_in[end] == mark)
            ++end;
        const bool wordBefore = m_at > 0 && isWordByte(m_in[m_at - 1]);
        const bool wordAfter = end < m_in.size() && isWordByte(m_in[end]);
        const bool spaceBefore = m_at == 0 || m_in[m_at - 1] == ' ' || m_in[m_at - 1] == '\n';
        const bool spaceAfter = end == m_in.size() || m_in[end] == ' ';
        const bool inside = wordBefore && wordAfter;
        if (mark == '*' && lineStarts() && spaceAfter)
            put(kBullet);
        else if ((inside && mark != '*') || (spaceBefore && spaceAfter) ||
                 (mark == '~' && end - m_at < 2))
            m_out.append(m_in.substr(m_at, end - m_at));
        m_at = end;
    }

    /// "### AVISO ###": a row of them parts what stands beside it, as a row of stars does.
    bool hashes() {
        constexpr std::size_t kFewest = 2;
        // Asked first: of many in a row only one looks for their end.
        if (m_at == 0 || m_in[m_at - 1] != ' ')
            return false;
        std::size_t end = m_at;
        while (end < m_in.size() && m_in[end] == '#')
            ++end;
        const bool apart = end == m_in.size() || m_in[end] == ' ' || m_in[end] == '\n';
        if (end < m_at + kFewest || !apart)
            return false;
        m_out.append(end - m_at, '*');
        m_at = end;
        return true;
    }

    /// Replaces a named or numbered sign of a web page.
    bool entity() {
        constexpr std::size_t kLongest = 10;
        const auto rest = m_in.substr(m_at, kLongest);
        const auto end = rest.find(';');
        if (end == std::string_view::npos || end < 3)
            return false;
        const std::string_view name = rest.substr(1, end - 1);
        std::string_view plain;
        for (const Entity &entry : kEntities)
            if (entry.name == name)
                plain = entry.plain;
        if (!plain.empty())
            m_out += plain;
        else if (const UChar32 c = name[0] == '#' ? numbered(name.substr(1)) : kNothing;
                 c != kNothing)
            put(c);
        else
            return false;
        m_at += end + 1;
        return true;
    }

    /// "8211", "x2013"
    static UChar32 numbered(std::string_view digits) {
        const int base = digits.starts_with('x') || digits.starts_with('X') ? 16 : 10;
        UChar32 value = 0;
        const char *begin = digits.data() + (base == 16 ? 1 : 0);
        const char *end = digits.data() + digits.size();
        const auto [stop, error] = std::from_chars(begin, end, value, base);
        if (begin == end || stop != end || error != std::errc() || value < 0x20 ||
            value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF))
            return kNothing;
        return plain(value);
    }

    /// Drops a markup tag; those that end a line become line ends.
    bool tag() {
        constexpr std::size_t kLongestTag = 200;
        constexpr std::array<std::string_view, 8> lines{"br", "p",  "div", "li",
                                                        "tr", "h1", "h2",  "h3"};
        constexpr std::array<std::string_view, 9> inlines{"b",    "i", "u",  "strong", "em",
                                                          "span", "a", "ul", "font"};
        const auto rest = m_in.substr(m_at + 1, kLongestTag);
        const auto close = rest.find('>');
        const std::size_t begin = rest.starts_with('/') ? 1 : 0;
        if (close == std::string_view::npos || close <= begin)
            return false;
        const auto name = rest.substr(begin, rest.find_first_of(" />", begin) - begin);
        const bool line = std::find(lines.begin(), lines.end(), name) != lines.end();
        const bool cell = name == "td" || name == "th";
        if (!line && !cell && std::find(inlines.begin(), inlines.end(), name) == inlines.end())
            return false;
        if (line || (cell && begin == 1))
            m_out += line ? '\n' : '\t';
        m_at += close + 2;
        return true;
    }

    void put(UChar32 c) {
        if (c != kNothing)
            appendPoint(m_out, c);
    }

    std::string_view m_in;
    std::size_t m_at = 0;
    std::string m_out;
    std::size_t m_labelEnd = std::string::npos; ///< where a sign of a spaced label went on
};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view kBlanks = " \t\r\n";
    const auto first = text.find_first_not_of(kBlanks);
    if (first == std::string_view::npos)
        return {};
    return text.substr(first, text.find_last_not_of(kBlanks) - first + 1);
}

/// Takes one pair of quotes off when it holds the whole text and nothing else is quoted with it.
bool unquote(std::string_view &text) {
    using Pair = std::array<std::string_view, 2>;
    static constexpr std::array<Pair, 7> pairs{{{"\"", "\""},
                                                {"'", "'"},
                                                {"\u201C", "\u201D"},
                                                {"\u2018", "\u2019"},
                                                {"\u00AB", "\u00BB"},
                                                {"\u201E", "\u201C"},
                                                {"\u300C", "\u300D"}}};
    for (const auto &[open, close] : pairs) {
        if (text.size() < open.size() + close.size() || text[0] != open[0] ||
            !text.starts_with(open) || !text.ends_with(close))
            continue;
        const auto inner = text.substr(open.size(), text.size() - open.size() - close.size());
        if (open == close && inner.find(open) != std::string_view::npos && open != "'")
            continue;
        text = trimmed(inner);
        return true;
    }
    return false;
}

/// The text without blanks and quotes around it.
std::string_view bare(std::string_view text) {
    constexpr int kMostQuotes = 4;
    text = trimmed(text);
    for (int i = 0; i < kMostQuotes && unquote(text); ++i) {
    }
    return text;
}

} // namespace

std::string cleanText(std::string_view text) {
    // What stands around the text would hide the marks that begin its first line.
    const std::string plainText = Cleaner(bare(text)).run();
    return std::string(bare(plainText));
}

} // namespace pindle::conversion
