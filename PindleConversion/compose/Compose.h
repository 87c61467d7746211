#pragma once

#include <string>
#include <vector>

#include "PindleConversion/choose/ChooseEvent.h"

namespace pindle::conversion {

/// A run of tokens of one sentence that holds no date, time or place.
struct Run {
    TokenSpan span;
    bool beforeUsed = false; ///< a date, time or place follows directly
    bool afterUsed = false;  ///< one precedes it
};

/// What of a field is looked at for title and place: the tokens around the one that says when, or
/// those of the text's first. Empty for a field that is too far from both.
TokenSpan inReach(const Field &field, std::uint32_t anchor);

/// The runs of a part of one field, in order.
std::vector<Run> runsOf(const Document &document, TokenSpan part);

/// "Reminder: your webinar starts tomorrow": words that promise the event's name on the next line.
bool promises(const Document &document, TokenSpan words);

/// Whether a token is a separator that may not begin or end a title or place.
bool isEdgeMark(const Token &token);

/// Seventh step: where the event is. Marks the place's tokens as used. Empty when not said.
TokenSpan findPlace(Document &document, const Choice &choice);

/// Eighth step: what the event is called, one line. Empty when the text offers no words for it,
/// or only poor ones where `place` can name it; that may be empty.
TokenSpan findTitle(const Document &document, const Choice &choice, TokenSpan place);

/// The text of a span on one line, without emphasis at its ends.
std::string spanText(const Document &document, TokenSpan span);

/// The title's text without the typed quotation marks that it opens with: "“青松”评审会".
std::string titleText(const Document &document, TokenSpan title);

/// A title without shouting: "BOOK FAIR" becomes "Book Fair"; other titles stay as they are.
std::string softened(const std::string &title);

/// Ninth step: the text itself, when it says more than the other fields hold.
std::string describe(const Document &document, TokenSpan title, TokenSpan place);

} // namespace pindle::conversion
