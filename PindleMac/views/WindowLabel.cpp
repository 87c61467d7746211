#include "PindleMac/views/WindowLabel.h"

#include <QEvent>

namespace pindle {

WindowLabel::WindowLabel(const QString &text, theme::TextStyle style, windowtheme::Ink ink)
    : TextLabel(text, style, {})
    , ink_(ink) {
    setColour(windowtheme::ink(ink_, palette()));
}

void WindowLabel::changeEvent(QEvent *event) {
    if (event->type() == QEvent::PaletteChange)
        setColour(windowtheme::ink(ink_, palette()));
    TextLabel::changeEvent(event);
}

} // namespace pindle
