#include "PindleMac/views/ErrorSection.h"

#include "PindleMac/views/ActionButton.h"
#include "PindleMac/views/MessageCard.h"
#include "PindleMac/views/Theme.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace pindle {

namespace {
constexpr int spacing = 10;
}

ErrorSection::ErrorSection()
    : card_(new MessageCard(theme::redTint(), theme::red()))
    , offers_(new QWidget)
    , calendarSettings_(
          new ActionButton(QStringLiteral("Open Calendar Settings"), QStringLiteral("gearshape")))
    , promptAccessibility_(
          new ActionButton(QStringLiteral("Prompt Accessibility"), QStringLiteral("hand.tap")))
    , accessibilitySettings_(new ActionButton(QStringLiteral("Open Accessibility Settings"),
                                              QStringLiteral("figure.wave"))) {
    auto *row = new QHBoxLayout(offers_);
    row->setContentsMargins({});
    row->setSpacing(spacing);
    for (auto *button : {calendarSettings_, promptAccessibility_, accessibilitySettings_})
        row->addWidget(button);
    row->addStretch();

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins({});
    column->setSpacing(spacing);
    column->addWidget(card_);
    column->addWidget(offers_);

    connect(calendarSettings_, &QAbstractButton::clicked, this,
            &ErrorSection::openCalendarSettings);
    connect(promptAccessibility_, &QAbstractButton::clicked, this,
            &ErrorSection::promptAccessibility);
    connect(accessibilitySettings_, &QAbstractButton::clicked, this,
            &ErrorSection::openAccessibilitySettings);
}

bool ErrorSection::setMessage(const QString &message) {
    return card_->setText(message);
}

void ErrorSection::setOffers(bool calendarSettings, bool accessibilitySettings) {
    calendarSettings_->setVisible(calendarSettings);
    promptAccessibility_->setVisible(accessibilitySettings);
    accessibilitySettings_->setVisible(accessibilitySettings);
    offers_->setVisible(calendarSettings || accessibilitySettings);
}

} // namespace pindle
