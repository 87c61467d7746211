#include "PindleMac/SettingsView.h"

#include "PindleMac/AppViewModel.h"
#include "PindleMac/views/MessageLine.h"
#include "PindleMac/views/OncePerTurn.h"
#include "PindleMac/views/ShortcutPicker.h"
#include "PindleMac/views/SwitchControl.h"
#include "PindleMac/views/WindowLabel.h"

#include <QVBoxLayout>

namespace pindle {

namespace {

constexpr int padding = 24;
constexpr int itemSpacing = 20;
constexpr int headerSpacing = 6;
constexpr int sectionSpacing = 8;

using windowtheme::Ink;
using Style = theme::TextStyle;

} // namespace

SettingsView::SettingsView(AppViewModel &viewModel)
    : viewModel_(viewModel)
    , rendering_(new OncePerTurn([this] { render(); }))
    , launchAtLogin_(new SwitchControl(QStringLiteral("Launch at login")))
    , shortcut_(new ShortcutPicker)
    , currentShortcut_(new WindowLabel({}, Style::caption, Ink::secondary))
    , error_(new MessageLine(Ink::error)) {
    rendering_->setParent(this);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(itemSpacing);
    column->addLayout(header());
    column->addWidget(launchAtLogin_, 0, Qt::AlignLeft);
    column->addLayout(shortcutSection());
    column->addWidget(error_);
    column->addStretch();

    connect(launchAtLogin_, &QAbstractButton::clicked, this, [this](bool enabled) {
        viewModel_.settings().setLaunchAtLogin(enabled);
        requestRender();
    });
    connect(shortcut_, &ShortcutPicker::chosen, this, [this](ShortcutKey key) {
        viewModel_.updateShortcutKey(key);
        requestRender();
    });
    connect(&viewModel_, &AppViewModel::objectWillChange, this, &SettingsView::requestRender);
    render();
}

QVBoxLayout *SettingsView::header() {
    auto *lines = new QVBoxLayout;
    lines->setSpacing(headerSpacing);
    lines->addWidget(new WindowLabel(QStringLiteral("Settings"), Style::windowTitle));
    lines->addWidget(
        new WindowLabel(QStringLiteral("Choose how Pindle should behave in the background."),
                        Style::subheadline, Ink::secondary));
    return lines;
}

QVBoxLayout *SettingsView::shortcutSection() {
    auto *title = new WindowLabel(QStringLiteral("Shortcut key"), Style::subheadlineSemibold);
    title->setBuddy(shortcut_);
    shortcut_->setAccessibleName(title->text());
    auto *lines = new QVBoxLayout;
    lines->setSpacing(sectionSpacing);
    lines->addWidget(title);
    lines->addWidget(shortcut_, 0, Qt::AlignLeft);
    lines->addWidget(currentShortcut_);
    return lines;
}

/// What changes while nobody looks is read when the view is shown.
void SettingsView::requestRender() {
    if (isVisible())
        rendering_->request();
}

void SettingsView::showEvent(QShowEvent *event) {
    render();
    QWidget::showEvent(event);
}

void SettingsView::render() {
    const AppSettingsStore &settings = viewModel_.settings();
    launchAtLogin_->setChecked(settings.launchAtLogin());
    shortcut_->setKey(settings.shortcutKey());
    currentShortcut_->setText(QStringLiteral("Current shortcut: ") +
                              settings.shortcutDisplayText());
    error_->setMessage(settings.launchAtLoginError().value_or(QString()));
}

} // namespace pindle
