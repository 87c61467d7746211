#pragma once

#include "PindleMac/platform/linux/accessibility/TextReader.h"

/// Which of two sources tells the selected text of an element: AT-SPI or the application's PRIMARY
/// selection.
namespace pindle::selectionchoice {

/// Whether PRIMARY could be better than what was read.
bool wantsPrimary(const FocusReading &reading);

/// The selected text, given what PRIMARY holds (absent where it is not this application's).
/// An empty text where neither can be relied upon: then a copy tells.
QString selectedText(const FocusReading &reading, const std::optional<QString> &primary);

/// Whether range and whole text of the element can be relied upon.
bool offersRange(const FocusReading &reading);

} // namespace pindle::selectionchoice
