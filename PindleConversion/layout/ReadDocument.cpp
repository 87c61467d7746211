#include "PindleConversion/layout/ReadDocument.h"

#include "PindleConversion/clean/CleanText.h"
#include "PindleConversion/layout/Fields.h"
#include "PindleConversion/tokens/Annotate.h"
#include "PindleConversion/tokens/Tokenizer.h"

namespace pindle::conversion {

Document readDocument(std::string_view text, std::string_view userZone) {
    Document document;
    document.text = cleanText(text);
    document.tokens = tokenize(document.text, lexiconVocabulary());
    annotate(document, userZone);
    layOut(document);
    return document;
}

} // namespace pindle::conversion
