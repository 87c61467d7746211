#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace pindle::conversion {

/// How people write a phrase without its accents: "marz" and "maerz" for "märz". Empty when it
/// has none.
std::vector<std::string> plainSpellings(std::string_view phrase);

} // namespace pindle::conversion
