#include "PindleMac/views/MessageCard.h"

#include "PindleMac/views/Announcement.h"
#include "PindleMac/views/TextLabel.h"

#include <QVBoxLayout>

namespace pindle {

namespace {
constexpr double radius = 14;
constexpr int padding = 12;
} // namespace

MessageCard::MessageCard(const QColor &tint, const QColor &foreground)
    : Card(tint, radius)
    , text_(new TextLabel({}, theme::TextStyle::subheadline, foreground)) {
    announcement::becomeMessage(*this);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->addWidget(text_);
}

QString MessageCard::text() const {
    return text_->text();
}

bool MessageCard::setText(const QString &text) {
    if (text == text_->text())
        return false;
    text_->setText(text);
    setAccessibleName(text);
    if (isVisible())
        announcement::announceAnew(*this);
    return true;
}

} // namespace pindle
