#include "PindleMac/views/PermissionCard.h"

#include "PindleMac/views/AccessibleRole.h"
#include "PindleMac/views/Theme.h"
#include "PindleMac/views/WindowButton.h"
#include "PindleMac/views/WindowLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace pindle {

namespace {

constexpr int padding = 14;
constexpr int spacing = 10;
constexpr double radius = 14;
constexpr double cardOpacity = 0.04;
constexpr double badgeOpacity = 0.06;
constexpr int badgeHorizontalPadding = 10;
constexpr int badgeVerticalPadding = 5;

using Style = theme::TextStyle;

} // namespace

PermissionCard::PermissionCard(const QString &title, const QString &reason,
                               const QList<WindowButton *> &actions)
    : Card(theme::black(cardOpacity), radius)
    , status_(new WindowLabel({}, Style::captionSemibold)) {
    setAccessibleName(title);
    setAccessibleRole(*this, QAccessible::Grouping);
    auto *badge = new Card(theme::black(badgeOpacity), QWIDGETSIZE_MAX);
    auto *capsule = new QHBoxLayout(badge);
    capsule->setContentsMargins(badgeHorizontalPadding, badgeVerticalPadding,
                                badgeHorizontalPadding, badgeVerticalPadding);
    capsule->addWidget(status_);

    auto *top = new QHBoxLayout;
    top->setSpacing(spacing);
    top->addWidget(new WindowLabel(title, Style::subheadlineSemibold), 0, Qt::AlignVCenter);
    top->addStretch();
    top->addWidget(badge, 0, Qt::AlignVCenter);
    auto *row = new QHBoxLayout;
    row->setSpacing(spacing);
    for (WindowButton *action : actions)
        row->addWidget(action);
    row->addStretch();

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(spacing);
    column->addLayout(top);
    column->addWidget(new WindowLabel(reason, Style::caption));
    column->addLayout(row);
}

void PermissionCard::setStatus(const QString &status) {
    status_->setText(status);
}

} // namespace pindle
