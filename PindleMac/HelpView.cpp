#include "PindleMac/HelpView.h"

#include "PindleMac/platform/Bundle.h"
#include "PindleMac/platform/Platform.h"
#include "PindleMac/views/AccessibleRole.h"
#include "PindleMac/views/DebugRow.h"
#include "PindleMac/views/DisclosureGroup.h"
#include "PindleMac/views/HelpStep.h"
#include "PindleMac/views/MessageLine.h"
#include "PindleMac/views/OncePerTurn.h"
#include "PindleMac/views/PermissionCard.h"
#include "PindleMac/views/ThinScrollBar.h"
#include "PindleMac/views/WindowButton.h"
#include "PindleMac/views/WindowLabel.h"

#include <QEvent>
#include <QScrollArea>
#include <QVBoxLayout>

namespace pindle {

namespace {

constexpr int padding = 24;
constexpr int sectionSpacing = 18;
constexpr int permissionSpacing = 12;
constexpr int debugSpacing = 10;
constexpr int debugTopPadding = 8;

using windowtheme::Ink;
using Kind = WindowButton::Kind;
using Style = theme::TextStyle;

} // namespace

HelpView::HelpView(Platform &platform)
    : diagnostics_(platform)
    , rendering_(new OncePerTurn([this] { render(); }))
    , area_(new QScrollArea(this))
    , scrollBar_(new ThinScrollBar(this))
    , accessibility_(accessibilityCard())
    , calendar_(calendarCard())
    , message_(new MessageLine(Ink::secondary))
    , trustedRow_(new DebugRow(QStringLiteral("Accessibility trusted")))
    , calendarRow_(new DebugRow(QStringLiteral("Calendar status")))
    , debugStatus_(new DisclosureGroup(QStringLiteral("Debug Status"), debugRows(platform))) {
    rendering_->setParent(this);
    buildArea();
    connect(&diagnostics_, &HelpDiagnosticsModel::objectWillChange, rendering_,
            &OncePerTurn::request);
    connect(debugStatus_, &DisclosureGroup::expandedChanged, this, [this](bool expanded) {
        if (expanded)
            reveal(*debugStatus_);
    });
    render();
}

void HelpView::buildArea() {
    auto *content = new QWidget;
    auto *column = new QVBoxLayout(content);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(sectionSpacing);
    column->addWidget(new WindowLabel(QStringLiteral("How to use Pindle"), Style::windowTitle));
    addSteps(*column);
    column->addLayout(permissions());
    column->addWidget(message_);
    column->addWidget(new WindowLabel(
        QStringLiteral("Tip: You can change the shortcut and launch-at-login behavior from "
                       "Settings in the menu bar context menu."),
        Style::caption, Ink::secondary));
    column->addWidget(debugStatus_);
    column->addStretch();

    area_->setFrameShape(QFrame::NoFrame);
    area_->setWidgetResizable(true);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setFocusPolicy(Qt::StrongFocus);
    area_->setAccessibleName(QStringLiteral("Help"));
    setAccessibleRole(*area_, QAccessible::Grouping);
    setFocusProxy(area_); // so that the keys that scroll do from the start
    area_->setWidget(content);
    area_->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    scrollBar_->standInFor(*area_->verticalScrollBar());
    connect(area_->verticalScrollBar(), &QScrollBar::rangeChanged, this, [this] {
        if (QWidget *part = std::exchange(toReveal_, nullptr))
            reveal(*part);
    });
}

void HelpView::addSteps(QVBoxLayout &column) {
    column.addWidget(
        new HelpStep(QStringLiteral("1"),
                     QStringLiteral("Highlight any date or event text in any app on your Mac.")));
    column.addWidget(
        new HelpStep(QStringLiteral("2"),
                     QStringLiteral("Press your global shortcut to open the quick event panel.")));
    column.addWidget(new HelpStep(
        QStringLiteral("3"),
        QStringLiteral("Review the prefilled event details and adjust them if needed.")));
    column.addWidget(
        new HelpStep(QStringLiteral("4"),
                     QStringLiteral("Save to Apple Calendar or open another calendar provider.")));
}

QVBoxLayout *HelpView::permissions() {
    auto *section = new QVBoxLayout;
    section->setSpacing(permissionSpacing);
    section->addWidget(new WindowLabel(QStringLiteral("Permissions"), Style::headline));
    section->addWidget(accessibility_);
    section->addWidget(calendar_);
    return section;
}

PermissionCard *HelpView::accessibilityCard() {
    const QString title = QStringLiteral("Accessibility");
    auto *prompt = new WindowButton(QStringLiteral("Prompt"), Kind::prominent, title);
    auto *settings = new WindowButton(QStringLiteral("Open Settings"), Kind::bordered, title);
    connect(prompt, &QAbstractButton::clicked, &diagnostics_,
            &HelpDiagnosticsModel::promptAccessibilityPermission);
    connect(settings, &QAbstractButton::clicked, &diagnostics_,
            &HelpDiagnosticsModel::openAccessibilitySettings);
    return new PermissionCard(title,
                              QStringLiteral("Needed so the app can read highlighted text from "
                                             "the currently focused app."),
                              {prompt, settings});
}

PermissionCard *HelpView::calendarCard() {
    const QString title = QStringLiteral("Calendar");
    auto *request = new WindowButton(QStringLiteral("Verify / Request"), Kind::prominent, title);
    auto *settings = new WindowButton(QStringLiteral("Open Settings"), Kind::bordered, title);
    connect(request, &QAbstractButton::clicked, &diagnostics_,
            &HelpDiagnosticsModel::requestCalendarPermission);
    connect(settings, &QAbstractButton::clicked, &diagnostics_,
            &HelpDiagnosticsModel::openCalendarSettings);
    return new PermissionCard(title,
                              QStringLiteral("Needed only when you choose Apple Calendar, so the "
                                             "event can be created on this Mac."),
                              {request, settings});
}

QWidget *HelpView::debugRows(Platform &platform) {
    auto *identifier = new DebugRow(QStringLiteral("Bundle ID"));
    const QString name = platform.bundle.bundleIdentifier();
    identifier->setValue(name.isEmpty() ? QStringLiteral("Missing") : name);
    auto *path = new DebugRow(QStringLiteral("Bundle path"));
    path->setValue(platform.bundle.bundlePath());

    auto *rows = new QWidget;
    auto *column = new QVBoxLayout(rows);
    column->setContentsMargins(0, debugTopPadding, 0, 0);
    column->setSpacing(debugSpacing);
    for (DebugRow *row : {trustedRow_, calendarRow_, identifier, path})
        column->addWidget(row);
    return rows;
}

void HelpView::render() {
    const bool enabled = diagnostics_.accessibilityEnabled();
    accessibility_->setStatus(enabled ? QStringLiteral("Enabled") : QStringLiteral("Not enabled"));
    calendar_->setStatus(diagnostics_.calendarStatus());
    trustedRow_->setValue(enabled ? QStringLiteral("Yes") : QStringLiteral("No"));
    calendarRow_->setValue(diagnostics_.calendarStatus());
    if (message_->setMessage(diagnostics_.permissionMessage().value_or(QString())))
        reveal(*message_);
}

/// Now, and once more when the layout has made room for it.
void HelpView::reveal(QWidget &part) {
    toReveal_ = &part;
    area_->ensureWidgetVisible(&part, 0, padding);
}

void HelpView::showEvent(QShowEvent *event) {
    diagnostics_.refresh();
    rendering_->runNow();
    QWidget::showEvent(event);
}

bool HelpView::event(QEvent *event) {
    // The permissions may have been changed where the user comes from.
    if (event->type() == QEvent::WindowActivate)
        diagnostics_.refresh();
    return QWidget::event(event);
}

void HelpView::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    area_->setGeometry(rect());
    constexpr int barWidth = ThinScrollBar::thicknessWithMargin;
    scrollBar_->setGeometry(width() - barWidth, 0, barWidth, height());
    scrollBar_->raise();
}

} // namespace pindle
