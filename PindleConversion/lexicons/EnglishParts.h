#pragma once

#include <span>

#include "PindleConversion/lexicons/LexiconIndex.h"

namespace pindle::conversion {

/// English names of time zones, and cities that stand for one.
std::span<const Entry> englishZones();

/// English words around an event: labels, kinds of event and place, roles, fillers.
std::span<const Entry> englishContext();

} // namespace pindle::conversion
