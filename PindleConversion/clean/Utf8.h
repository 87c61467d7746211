#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace pindle::conversion {

/// One code point and the byte behind it.
struct CodePoint {
    std::int32_t value;
    std::size_t end;
};

inline constexpr std::int32_t kInvalidPoint = -1;

/// The code point at byte `at` (inside the text); `kInvalidPoint` for one ill-formed byte
/// (RFC 3629: no overlong forms, no surrogates, nothing above U+10FFFF).
inline CodePoint decodeAt(std::string_view text, std::size_t at) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const std::int32_t lead = byte(at);
    if (lead < 0x80)
        return {lead, at + 1};
    // Most letters beyond the Latin ones have three bytes.
    if (lead > 0xE0 && lead < 0xED && at + 2 < text.size()) {
        const std::int32_t second = byte(at + 1);
        const std::int32_t third = byte(at + 2);
        if (((second | third) & 0xC0) == 0x80 && (second & third & 0x80) != 0)
            return {(lead & 0x0F) << 12 | (second & 0x3F) << 6 | (third & 0x3F), at + 3};
        return {kInvalidPoint, at + 1};
    }
    const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || at + length > text.size())
        return {kInvalidPoint, at + 1};
    std::int32_t value = length == 2 ? lead & 0x1F : length == 3 ? lead & 0x0F : lead & 0x07;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80)
            return {kInvalidPoint, at + 1};
        value = value * 64 + (byte(at + i) & 0x3F);
    }
    const bool overlong = (length == 3 && value < 0x800) || (length == 4 && value < 0x10000);
    const bool outside = value > 0x10FFFF || (value >= 0xD800 && value <= 0xDFFF);
    if (overlong || outside)
        return {kInvalidPoint, at + 1};
    return {value, at + length};
}

/// Where the letter begins that byte `at` (inside the text) belongs to; `at` itself where the text
/// is not well-formed UTF-8.
inline std::size_t letterBegin(std::string_view text, std::size_t at) {
    constexpr std::size_t kLongest = 4; ///< bytes
    for (std::size_t i = at; i + kLongest > at; --i) {
        if ((static_cast<unsigned char>(text[i]) & 0xC0U) != 0x80U)
            return i;
        if (i == 0)
            break;
    }
    return at;
}

/// Appends a valid code point.
inline void appendPoint(std::string &out, std::int32_t c) {
    const auto put = [&](std::int32_t byte) {
        out += static_cast<char>(static_cast<unsigned char>(byte));
    };
    if (c < 0x80)
        return put(c);
    if (c < 0x800) {
        put(0xC0 | (c >> 6));
    } else {
        if (c < 0x10000) {
            put(0xE0 | (c >> 12));
        } else {
            put(0xF0 | (c >> 18));
            put(0x80 | ((c >> 12) & 0x3F));
        }
        put(0x80 | ((c >> 6) & 0x3F));
    }
    put(0x80 | (c & 0x3F));
}

} // namespace pindle::conversion
