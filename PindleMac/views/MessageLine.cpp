#include "PindleMac/views/MessageLine.h"

#include "PindleMac/views/Announcement.h"

namespace pindle {

MessageLine::MessageLine(windowtheme::Ink ink)
    : WindowLabel({}, theme::TextStyle::caption, ink) {
    announcement::becomeMessage(*this);
    hide();
}

bool MessageLine::setMessage(const QString &message) {
    const bool isNew = message != text() && !message.isEmpty();
    const bool wasVisible = isVisible();
    setText(message);
    setAccessibleName(message);
    setVisible(!message.isEmpty());
    if (isNew && wasVisible)
        announcement::announceAnew(*this);
    return isNew;
}

} // namespace pindle
