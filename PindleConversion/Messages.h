#pragma once

#include <string>

#include "PindleConversion/choose/ChooseEvent.h"

namespace pindle::conversion {

/// The sentence for the user about an assumption or conflict, in the language of the event's
/// line; "" when there is nothing to say.
std::string noticeText(const Document &document, const Choice &choice);

/// The sentence for a text without an event, in the text's language.
std::string refusalText(const Document &document, Notice notice);

} // namespace pindle::conversion
