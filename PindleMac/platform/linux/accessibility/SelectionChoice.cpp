#include "PindleMac/platform/linux/accessibility/SelectionChoice.h"

namespace pindle::selectionchoice {

namespace {

/// This toolkit miscounts after characters beyond the Basic Multilingual Plane and across
/// paragraphs, and at times reports no selection where there is one.
bool miscounts(const FocusReading &reading) {
    return reading.toolkit == QLatin1String("Chromium");
}

/// A word processor's paragraph knows only its own part of a selection across several.
bool isPartOfADocument(const FocusReading &reading) {
    return reading.role == atspi::kRoleParagraph;
}

} // namespace

bool wantsPrimary(const FocusReading &reading) {
    return reading.kind == FocusReading::Kind::text && !reading.selectedText.isEmpty() &&
           (miscounts(reading) || isPartOfADocument(reading));
}

QString selectedText(const FocusReading &reading, const std::optional<QString> &primary) {
    if (miscounts(reading))
        // Without a selection of its own there, PRIMARY may be an old one.
        return reading.selectedText.isEmpty() ? QString() : primary.value_or(QString());
    if (isPartOfADocument(reading) && primary && primary->contains(reading.selectedText))
        return *primary;
    return reading.selectedText;
}

bool offersRange(const FocusReading &reading) {
    return reading.kind == FocusReading::Kind::text && !miscounts(reading);
}

} // namespace pindle::selectionchoice
