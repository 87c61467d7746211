#pragma once

#include <string>
#include <string_view>

namespace pindle::conversion {

/// Largest request body that is read, in bytes.
inline constexpr std::size_t kLargestBody = std::size_t{4} * 1024 * 1024;

/// Answers one request of the conversion service: "on-install" with a fresh key, and
/// "text-conversion" with a reply object. Any bytes get one valid JSON object; bad input gets
/// `success` false and a plain sentence as `error`. Keeps no state, never throws, any thread.
std::string answer(std::string_view endpoint, std::string_view requestBody);

/// As "text-conversion", but the identity key may be missing: for scripts.
std::string answerLine(std::string_view requestBody);

} // namespace pindle::conversion
