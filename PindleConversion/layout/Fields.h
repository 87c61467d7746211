#pragma once

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// Third step: cuts the tokens into lines, table cells, labelled fields and sentences, and marks
/// what only talks about the text (mail headers, quotation notes, chat stamps) as ignored.
void layOut(Document &document);

} // namespace pindle::conversion
