#pragma once

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// Tells every token of a field its field and its sentence. Sentences are counted through the
/// whole text, and each field starts a new one.
void numberSentences(Document &document);

} // namespace pindle::conversion
