#include "PindleMac/views/CompactCalendarButton.h"

#include "PindleMac/views/Symbols.h"
#include "PindleMac/views/TextBlock.h"
#include "PindleMac/views/Theme.h"

#include <QPainter>
#include <array>

namespace pindle {

namespace {

constexpr int smallestHeight = 78;
constexpr int padding = 10;
constexpr int spacing = 8;
constexpr double radius = 14;
constexpr double fillOpacity = 0.74;
constexpr int badgeSize = 32;
constexpr double badgeRadius = 10;
constexpr double badgeOpacity = 0.12;
constexpr double symbolSize = 18;

struct Look {
    QLatin1String id;
    QLatin1String iconName;
    QColor (*iconTint)();
    QLatin1String shortTitle;
};

const std::array<Look, 4> knownLooks{{
    {QLatin1String("apple"), QLatin1String("apple.logo"), theme::symbolGreen,
     QLatin1String("Apple")},
    {QLatin1String("google"), QLatin1String("globe"), theme::symbolBlue, QLatin1String("GCal")},
    {QLatin1String("outlook"), QLatin1String("envelope.badge"), theme::symbolIndigo,
     QLatin1String("Outlook")},
    {QLatin1String("yahoo"), QLatin1String("calendar"), theme::symbolOrange,
     QLatin1String("Yahoo")},
}};

const Look *knownLook(const QString &id) {
    const auto *const look =
        std::ranges::find_if(knownLooks, [&id](const Look &each) { return each.id == id; });
    return look == knownLooks.end() ? nullptr : look;
}

QFont labelFont() {
    return theme::font(theme::TextStyle::captionSemibold);
}

} // namespace

CompactCalendarButton::CompactCalendarButton(const CalendarDestinationLink &link) {
    QSizePolicy policy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    setLink(link);
}

void CompactCalendarButton::setLink(const CalendarDestinationLink &link) {
    link_ = link;
    setNames(link.title, link.subtitle);
    updateGeometry();
    update();
}

QString CompactCalendarButton::iconName() const {
    const Look *look = knownLook(link_.id);
    return look ? look->iconName : QStringLiteral("calendar.badge.plus");
}

QColor CompactCalendarButton::iconTint() const {
    const Look *look = knownLook(link_.id);
    return look ? look->iconTint() : theme::accent();
}

QString CompactCalendarButton::shortTitle() const {
    const Look *look = knownLook(link_.id);
    return look ? QString(look->shortTitle) : link_.title;
}

QSize CompactCalendarButton::sizeHint() const {
    const int width = static_cast<int>(textblock::naturalWidth(shortTitle(), labelFont()));
    return {width + 2 * padding, smallestHeight};
}

QSize CompactCalendarButton::minimumSizeHint() const {
    return {badgeSize + 2 * padding, smallestHeight};
}

int CompactCalendarButton::heightForWidth(int width) const {
    const double text = textblock::height(shortTitle(), labelFont(), width - 2 * padding);
    return std::max(smallestHeight, 2 * padding + badgeSize + spacing + static_cast<int>(text));
}

double CompactCalendarButton::cornerRadius() const {
    return radius;
}

QColor CompactCalendarButton::fill() const {
    return theme::white(fillOpacity);
}

void CompactCalendarButton::paintContent(QPainter &painter) {
    const double textWidth = width() - 2 * padding;
    const double textHeight = textblock::height(shortTitle(), labelFont(), textWidth);
    const double top = (height() - (badgeSize + spacing + textHeight)) / 2;

    const QRectF badge((width() - badgeSize) / 2.0, top, badgeSize, badgeSize);
    QColor badgeFill = iconTint();
    badgeFill.setAlphaF(static_cast<float>(badgeOpacity));
    painter.setPen(Qt::NoPen);
    painter.setBrush(badgeFill);
    painter.drawRoundedRect(badge, badgeRadius, badgeRadius);

    QRectF symbol(0, 0, symbolSize, symbolSize);
    symbol.moveCenter(badge.center());
    symbols::draw(painter, iconName(), symbol, iconTint());

    painter.setPen(theme::primaryText());
    textblock::draw(painter, {padding * 1.0, badge.bottom() + spacing, textWidth, textHeight},
                    shortTitle(), labelFont(), Qt::AlignHCenter);
}

} // namespace pindle
