#pragma once

#include <string>

#include "PindleConversion/choose/ChooseEvent.h"

namespace pindle::conversion {

/// The sentence for the user about an assumption or conflict; "" when there is nothing to say.
std::string noticeText(const Choice &choice);

/// The sentence for a text without an event.
std::string refusalText(Notice notice);

} // namespace pindle::conversion
