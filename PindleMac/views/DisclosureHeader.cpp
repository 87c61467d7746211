#include "PindleMac/views/DisclosureHeader.h"

#include "PindleMac/views/Theme.h"
#include "PindleMac/views/WindowTheme.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <cmath>

namespace pindle {

namespace {

constexpr double triangleSize = 9;
constexpr int triangleGap = 7;
constexpr int padding = 3;
constexpr int verticalPadding = 1;
constexpr double radius = 5;
constexpr double ringWidth = 2;

/// A button that says whether what it stands over is unfolded.
class AccessibleHeader : public QAccessibleWidget {
public:
    explicit AccessibleHeader(DisclosureHeader *header)
        : QAccessibleWidget(header, QAccessible::PushButton) {}

    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        const bool expanded = static_cast<DisclosureHeader *>(widget())->isExpanded();
        state.expandable = true;
        state.expanded = expanded;
        state.collapsed = !expanded;
        return state;
    }
    QStringList actionNames() const override { return {pressAction(), setFocusAction()}; }
    void doAction(const QString &name) override {
        if (name == pressAction())
            static_cast<DisclosureHeader *>(widget())->click();
        else
            QAccessibleWidget::doAction(name);
    }
};

QAccessibleInterface *makeInterface(const QString & /*className*/, QObject *object) {
    auto *header = qobject_cast<DisclosureHeader *>(object);
    return header ? new AccessibleHeader(header) : nullptr;
}

} // namespace

DisclosureHeader::DisclosureHeader(const QString &label)
    : label_(label) {
    static const bool installed = [] {
        QAccessible::installFactory(makeInterface);
        return true;
    }();
    static_cast<void>(installed);
    setNames(label, {});
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, [this] { Q_EMIT wanted(!expanded_); });
}

void DisclosureHeader::setExpanded(bool expanded) {
    if (expanded_ == expanded)
        return;
    expanded_ = expanded;
    update();
    QAccessible::State changed;
    changed.expanded = true;
    changed.collapsed = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
}

QSize DisclosureHeader::sizeHint() const {
    const QFontMetricsF metrics(theme::font(theme::TextStyle::subheadlineSemibold));
    return {static_cast<int>(std::ceil(triangleSize + triangleGap +
                                       metrics.horizontalAdvance(label_) + 2 * padding)),
            static_cast<int>(std::ceil(metrics.height() + 2 * verticalPadding))};
}

double DisclosureHeader::cornerRadius() const {
    return radius;
}

void DisclosureHeader::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (showsFocusRing()) {
        constexpr double inset = ringWidth / 2;
        painter.setPen(QPen(windowtheme::ring(palette()), ringWidth));
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius,
                                radius);
    }
    paintContent(painter);
}

void DisclosureHeader::paintContent(QPainter &painter) {
    using windowtheme::Ink;
    painter.save();
    painter.translate(padding + triangleSize / 2, height() / 2.0);
    if (expanded_)
        painter.rotate(90);
    QPainterPath triangle;
    constexpr double half = triangleSize / 2;
    triangle.addPolygon(
        QPolygonF({QPointF(-half + 1, -half), QPointF(half, 0), QPointF(-half + 1, half)}));
    triangle.closeSubpath();
    painter.fillPath(triangle, windowtheme::ink(Ink::secondary, palette()));
    painter.restore();

    painter.setFont(theme::font(theme::TextStyle::subheadlineSemibold));
    painter.setPen(windowtheme::ink(Ink::primary, palette()));
    const QRectF place = QRectF(rect()).adjusted(padding + triangleSize + triangleGap, 0, 0, 0);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter, label_);
}

void DisclosureHeader::keyPressEvent(QKeyEvent *event) {
    const bool right = event->key() == Qt::Key_Right;
    if (!right && event->key() != Qt::Key_Left) {
        PlainButton::keyPressEvent(event);
        return;
    }
    event->accept();
    Q_EMIT wanted(right);
}

} // namespace pindle
