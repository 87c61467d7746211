#include "PindleConversion/tokens/Tokenizer.h"

#include <algorithm>
#include <array>
#include <cstring>

#include <unicode/uchar.h>

#include "PindleConversion/clean/Utf8.h"
#include "PindleConversion/tokens/Unspaced.h"

namespace pindle::conversion {

namespace {

constexpr std::uint32_t kLargestNumber = 99'999'999;

struct Point {
    UChar32 c;
    std::uint32_t end;
};

Point pointAt(std::string_view text, std::uint32_t at) {
    const CodePoint point = decodeAt(text, at);
    return {point.value < 0 ? ' ' : point.value, static_cast<std::uint32_t>(point.end)};
}

bool isDigit(UChar32 c) {
    return c >= '0' && c <= '9';
}

bool isLetter(UChar32 c) {
    if (c < 0x80)
        return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
    return u_isalpha(c) || (U_GET_GC_MASK(c) & U_GC_M_MASK) != 0;
}

bool isApostrophe(UChar32 c) {
    return c == '\'' || c == 0x2019 || c == 0x2018 || c == 0x02BC;
}

/// Marks of texts in ideographs.
char32_t plainIdeographic(UChar32 c) {
    switch (c) {
    case 0x3001:
        return U',';
    case 0x300C:
    case 0x300D:
    case 0x300E:
    case 0x300F:
    case 0x300A:
    case 0x300B:
        return U'"';
    case 0x3010:
    case 0x3014:
        return U'[';
    case 0x3011:
    case 0x3015:
        return U']';
    default:
        return static_cast<char32_t>(c);
    }
}

char32_t plainSymbol(UChar32 c) {
    if (c < 0x80)
        return c == '`' ? U'\'' : static_cast<char32_t>(c);
    if ((c >= 0x2010 && c <= 0x2015) || c == 0x2212 || c == 0xFE58)
        return U'-';
    if (isApostrophe(c) || c == 0xB4)
        return U'\'';
    if ((c >= 0x201C && c <= 0x201F) || c == 0xAB || c == 0xBB)
        return U'"';
    if (c == 0x301C || c == 0x223C)
        return U'~';
    if (c == 0xB7)
        return U'\u2022';
    if (c >= 0x3001 && c <= 0x301B)
        return plainIdeographic(c);
    return static_cast<char32_t>(c);
}

/// What every byte of a text is asked, answered by a table: the loops that ask are the busiest.
enum Trait : std::uint8_t { kBlank = 1, kOfAddress = 2, kAsciiLetter = 4, kForeign = 8 };
constexpr auto kTraits = [] {
    std::array<std::uint8_t, 256> traits{};
    for (const char c : {' ', '\t', '\n'})
        traits[static_cast<unsigned char>(c)] = kBlank;
    for (const char c : {'/', '@'})
        traits[static_cast<unsigned char>(c)] = kOfAddress;
    for (char c = 'a'; c <= 'z'; ++c)
        traits[static_cast<unsigned char>(c)] = traits[static_cast<unsigned char>(c - 'a' + 'A')] =
            kAsciiLetter;
    for (std::size_t byte = 0x80; byte < traits.size(); ++byte)
        traits[byte] = kForeign;
    return traits;
}();
std::uint8_t traitsOf(char c) {
    return kTraits[static_cast<unsigned char>(c)];
}

bool isBlank(char c) {
    return traitsOf(c) == kBlank;
}

bool isAsciiLetter(char c) {
    return traitsOf(c) == kAsciiLetter;
}

bool isAsciiAlnum(char c) {
    return isDigit(static_cast<unsigned char>(c)) || isAsciiLetter(c);
}

bool isMailByte(char c) {
    return isAsciiAlnum(c) || c == '.' || c == '_' || c == '+' || c == '-';
}

/// The web or mail address in one run of text without blanks, if there is one.
struct Address {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    TokenKind kind = TokenKind::Link;
};

Address trimLink(std::string_view text, Address link) {
    constexpr std::string_view tail = ".,;:!?)]>'\"|*_";
    while (link.end > link.begin && tail.find(text[link.end - 1]) != std::string_view::npos)
        --link.end;
    return link;
}

/// "zoom.us/j/1": a dotted name, then a slash.
bool isHostWithPath(std::string_view run) {
    const auto slash = run.find('/');
    if (slash == std::string_view::npos || slash + 1 == run.size())
        return false;
    const auto host = run.substr(0, slash);
    const auto dot = host.rfind('.');
    if (dot == std::string_view::npos || dot < 2 || host.size() - dot < 3)
        return false;
    const auto isLower = [](char c) { return c >= 'a' && c <= 'z'; };
    return std::all_of(host.begin() + static_cast<std::ptrdiff_t>(dot) + 1, host.end(), isLower) &&
           std::all_of(host.begin(), host.end(),
                       [](char c) { return isAsciiAlnum(c) || c == '.' || c == '-'; });
}

Address mailIn(std::string_view text, std::uint32_t begin, std::uint32_t end) {
    const auto sign = text.substr(begin, end - begin).find('@');
    if (sign == std::string_view::npos)
        return {};
    Address mail{begin + static_cast<std::uint32_t>(sign), 0, TokenKind::Mail};
    mail.end = mail.begin + 1;
    while (mail.begin > begin && isMailByte(text[mail.begin - 1]))
        --mail.begin;
    while (mail.end < end && isMailByte(text[mail.end]))
        ++mail.end;
    mail = trimLink(text, mail);
    const auto domain = text.substr(begin + sign + 1, mail.end - begin - sign - 1);
    const bool named = mail.begin < begin + sign && domain.find('.') != std::string_view::npos;
    return named && !isDigit(static_cast<unsigned char>(domain.back())) ? mail : Address{};
}

/// An address may stand in brackets.
std::uint32_t behindBrackets(std::string_view text, std::uint32_t at) {
    while (at < text.size() && (text[at] == '(' || text[at] == '<' || text[at] == '['))
        ++at;
    return at;
}

Address addressIn(std::string_view text, std::uint32_t begin, std::uint32_t end) {
    const auto run = text.substr(begin, end - begin);
    if (const auto scheme = run.find("://"); scheme != std::string_view::npos) {
        auto from = begin + static_cast<std::uint32_t>(scheme);
        while (from > begin && isAsciiAlnum(text[from - 1]))
            --from;
        const auto stop = run.find_first_of("<>\"|", scheme);
        const auto to =
            stop == std::string_view::npos ? end : begin + static_cast<std::uint32_t>(stop);
        return trimLink(text, {from, to, TokenKind::Link});
    }
    const std::uint32_t from = behindBrackets(text.substr(0, end), begin);
    const auto rest = text.substr(from, end - from);
    if (rest.starts_with("www.") || isHostWithPath(rest))
        return trimLink(text, {from, end, TokenKind::Link});
    return mailIn(text, begin, end);
}

void foldInto(std::string &out, std::string_view word) {
    out.clear();
    for (std::uint32_t at = 0; at < word.size();) {
        const Point point = pointAt(word, at);
        if (point.c < 0x80)
            out += static_cast<char>(point.c >= 'A' && point.c <= 'Z' ? point.c + 32 : point.c);
        else if (isApostrophe(point.c))
            out += '\'';
        else
            appendPoint(out, u_tolower(point.c));
        at = point.end;
    }
}

/// Behind the byte at `at`, and maybe more; none of them is of ASCII. Scripts without spaces make
/// long runs of such bytes.
std::uint32_t behindForeign(std::string_view text, std::uint32_t at) {
    constexpr std::uint64_t kHighBits = 0x8080808080808080U;
    std::uint64_t bytes = 0;
    if (at + sizeof bytes > text.size())
        return at + 1;
    std::memcpy(&bytes, text.data() + at, sizeof bytes);
    return at + ((bytes & kHighBits) == kHighBits ? std::uint32_t{sizeof bytes} : 1U);
}

class Cutter {
public:
    Cutter(std::string_view text, const Vocabulary &vocabulary)
        : m_text(text)
        , m_vocabulary(vocabulary)
        , m_unspaced(text, vocabulary) {
        // Four bytes a token is usual, one the least. Room for the least spares a text of marks or
        // digits some moves, and costs nothing that is not used, as long as the text is no book.
        constexpr std::size_t kLongest = 64'000;
        m_tokens.reserve(text.size() <= kLongest ? text.size() : text.size() / 4);
    }

    std::vector<Token> run() {
        while (m_at < m_text.size())
            step();
        return std::move(m_tokens);
    }

private:
    void step() {
        const char c = m_text[m_at];
        if (c == ' ') {
            m_space = true;
            ++m_at;
            return;
        }
        if (m_at >= m_runEnd && !isBlank(c))
            enterRun();
        if (m_at == m_address.begin && m_address.end > m_at)
            return push(m_address.kind, m_address.end);
        if (static_cast<unsigned char>(c) < 0x80)
            return ascii(c);
        const Point point = pointAt(m_text, m_at);
        if (const Unspaced script = unspacedScript(point.c); script != Unspaced::None)
            return unspaced(point, script);
        if (isLetter(point.c))
            return word();
        push(TokenKind::Symbol, point.end);
        m_tokens.back().symbol = plainSymbol(point.c);
    }

    void ascii(char c) {
        if (isAsciiLetter(c))
            return word();
        if (isDigit(c))
            return number();
        if (c == '\n')
            return push(TokenKind::LineBreak, m_at + 1);
        push(TokenKind::Symbol, m_at + 1);
        m_tokens.back().symbol = plainSymbol(c);
    }

    /// At the first byte after a blank: looks once for an address in what follows.
    void enterRun() {
        unsigned seen = 0;
        for (m_runEnd = m_at; m_runEnd < m_text.size();) {
            const unsigned traits = traitsOf(m_text[m_runEnd]);
            if (traits == kBlank)
                break;
            seen |= traits;
            m_runEnd = traits == kForeign ? behindForeign(m_text, m_runEnd) : m_runEnd + 1;
        }
        const bool special = (seen & kOfAddress) != 0 ||
                             m_text.substr(behindBrackets(m_text, m_at)).starts_with("www.");
        m_address = special ? addressIn(m_text, m_at, m_runEnd) : Address{};
    }

    void number() {
        std::uint32_t end = m_at;
        std::uint32_t value = 0;
        while (end < m_text.size() && isDigit(static_cast<unsigned char>(m_text[end]))) {
            if (value <= kLargestNumber / 10)
                value = value * 10 + static_cast<std::uint32_t>(m_text[end] - '0');
            ++end;
        }
        const auto digits = std::min<std::uint32_t>(end - m_at, 99);
        push(TokenKind::Number, end);
        m_tokens.back().number = value;
        m_tokens.back().digits = static_cast<std::uint8_t>(digits);
    }

    void word() {
        const bool capital = [&] {
            const Point first = pointAt(m_text, m_at);
            return first.c < 0x80 ? first.c < 'a' : u_isupper(first.c) || u_istitle(first.c);
        }();
        std::uint32_t end = m_at;
        bool elided = false;
        while (end < m_text.size()) {
            while (end < m_text.size() && isAsciiLetter(m_text[end]))
                ++end;
            if (end == m_text.size())
                break;
            // Most words end at a blank or mark.
            if (static_cast<unsigned char>(m_text[end]) < 0x80 && m_text[end] != '\'')
                break;
            Point point = pointAt(m_text, end);
            if (isApostrophe(point.c) && end > m_at) {
                if (elides(point.end)) {
                    end = point.end;
                    elided = true;
                    break;
                }
                if (point.end == m_text.size())
                    break;
                point = pointAt(m_text, point.end);
            }
            if (!isLetter(point.c) || unspacedScript(point.c) != Unspaced::None)
                break;
            end = point.end;
        }
        push(TokenKind::Word, end);
        m_tokens.back().capital = capital;
        // "l'8 settembre": what follows an elided word stands apart from it.
        m_space = elided;
    }

    /// "l'" of "l'apres-midi": the word up to `end` stands apart.
    bool elides(std::uint32_t end) const {
        constexpr std::uint32_t kLongestElision = 12;
        return end - m_at <= kLongestElision &&
               m_vocabulary.elides(foldWord(m_text.substr(m_at, end - m_at)));
    }

    void unspaced(Point letter, Unspaced script) {
        const bool follows = !m_space && !m_tokens.empty() && m_tokens.back().end == m_at;
        const UnspacedPiece piece =
            m_unspaced.cut(m_at, {letter.c, letter.end}, follows ? m_before : Before::Other);
        push(piece.number ? TokenKind::Number : TokenKind::Word, piece.end);
        Token &token = m_tokens.back();
        token.word = piece.word;
        token.unspaced = true;
        token.capital = !piece.number && script != Unspaced::Hiragana;
        token.number = piece.value;
        token.digits = piece.digits;
        m_before = piece.known ? Before::Known : Before::Unknown;
    }

    void push(TokenKind kind, std::uint32_t end) {
        const bool spaced = m_space || m_tokens.empty() ||
                            m_tokens.back().kind == TokenKind::LineBreak ||
                            (m_at > 0 && m_text[m_at - 1] == '\t');
        // Filled in where it stays: a copy would wait for what was just written.
        Token &token = m_tokens.emplace_back();
        token.begin = m_at;
        token.end = end;
        token.kind = kind;
        token.spaceBefore = spaced;
        m_space = false;
        m_before = Before::Other;
        m_at = end;
    }

    std::string_view m_text;
    const Vocabulary &m_vocabulary;
    UnspacedCutter m_unspaced;
    std::uint32_t m_at = 0;
    std::uint32_t m_runEnd = 0;
    Address m_address;
    bool m_space = false;
    Before m_before = Before::Other;
    std::vector<Token> m_tokens;
};

} // namespace

std::vector<Token> tokenize(std::string_view text, const Vocabulary &vocabulary) {
    return Cutter(text, vocabulary).run();
}

void foldWord(std::string_view word, std::string &folded) {
    foldInto(folded, word);
}

std::string foldWord(std::string_view word) {
    std::string folded;
    foldInto(folded, word);
    return folded;
}

} // namespace pindle::conversion
