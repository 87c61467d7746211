#pragma once

#include <string>
#include <string_view>

namespace pindle::conversion {

/// Largest request body that is read, in bytes; more text than that is no event, but a mishap.
inline constexpr std::size_t kLargestBody = 1'000'000;

/// Answers one request of the conversion service: "on-install" with a fresh key, and
/// "text-conversion" with a reply object. Any bytes get one valid JSON object; bad input gets
/// `success` false and a plain sentence as `error`. Keeps no state, never throws, any thread.
std::string answer(std::string_view endpoint, std::string_view requestBody);

/// As "text-conversion", but the identity key may be missing: for scripts.
std::string answerLine(std::string_view requestBody);

} // namespace pindle::conversion
