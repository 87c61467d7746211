#pragma once

#include "PindleConversion/tokens/Token.h"

namespace pindle::conversion {

/// A label such as "When:" and where what it labels starts.
struct LabelMatch {
    Label label = Label::None;
    std::uint32_t content = 0; ///< first token behind the label
    std::uint32_t end = 0;     ///< end of the label's own words
};

/// The label at token `i`, or `Label::None`. `lineStart`: the token is the first of its line or
/// cell, where weaker marks than a colon end a label, too. Looks at the fields that the document
/// has so far.
LabelMatch labelAt(const Reader &reader, std::uint32_t i, bool lineStart);
/// The label that the tokens make up and nothing else, or `Label::None`.
Label wholeLabel(const Reader &reader, std::uint32_t begin);
/// A label alone on its line names what the next line says.
bool mayStandAlone(Label label);
/// Once all fields are known: ignores the dates in the heads of mails, and settles which of
/// arrival and departure is the start.
void settleLabels(Document &document);

} // namespace pindle::conversion
