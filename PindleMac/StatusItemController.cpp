#include "PindleMac/StatusItemController.h"

#include "PindleMac/AppViewModel.h"
#include "PindleMac/FloatingPanelController.h"
#include "PindleMac/HelpWindowController.h"
#include "PindleMac/SettingsWindowController.h"
#include "PindleMac/platform/Application.h"
#include "PindleMac/platform/Platform.h"

namespace pindle {

StatusItemController::StatusItemController(
    std::weak_ptr<FloatingPanelController> panelController,
    std::weak_ptr<SettingsWindowController> settingsWindowController,
    std::weak_ptr<HelpWindowController> helpWindowController, AppViewModel *viewModel,
    Platform &platform)
    : panelController_(std::move(panelController))
    , settingsWindowController_(std::move(settingsWindowController))
    , helpWindowController_(std::move(helpWindowController))
    , viewModel_(viewModel)
    , platform_(platform)
    , statusItem_(platform.statusBar.statusItem(StatusBar::variableLength)) {
    if (!statusItem_)
        return;
    statusItem_->setImage(QStringLiteral("calendar.badge.plus"), QStringLiteral("Pindle"));
    statusItem_->setImagePosition(ImagePosition::imageOnly);
    statusItem_->announceMenu(contextMenu());
    statusItem_->setAction(
        [this](std::optional<EventType> event) { handleStatusItemClick(event); });
    statusItem_->sendActionOn(maskOf(EventType::leftMouseUp) | maskOf(EventType::rightMouseUp));
}

StatusItemController::~StatusItemController() = default;

void StatusItemController::handleStatusItemClick(std::optional<EventType> event) {
    if (event == EventType::rightMouseUp)
        showContextMenu();
    else if (const auto panel = panelController_.lock())
        panel->toggleFromStatusItem(statusItem_->frame());
}

void StatusItemController::showContextMenu() {
    if (const auto panel = panelController_.lock())
        panel->close();
    statusItem_->popUpMenu(contextMenu());
}

Menu StatusItemController::contextMenu() {
    const auto item = [this](const QString &title, const QString &key,
                             void (StatusItemController::*action)()) {
        return MenuItem{title, key, [self = QPointer(this), action] {
                            if (self)
                                (self->*action)();
                        }};
    };
    return {
        item(QStringLiteral("Help"), {}, &StatusItemController::openHelp),
        item(QStringLiteral("About"), {}, &StatusItemController::openAbout),
        item(QStringLiteral("Report Bugs"), {}, &StatusItemController::openBugReport),
        MenuItem::separator(),
        item(QStringLiteral("Settings"), QStringLiteral(","), &StatusItemController::openSettings),
        MenuItem::separator(),
        item(QStringLiteral("Quit"), QStringLiteral("q"), &StatusItemController::quitApp),
    };
}

void StatusItemController::openHelp() {
    if (const auto help = helpWindowController_.lock())
        help->show();
}

void StatusItemController::openAbout() {
    if (viewModel_)
        viewModel_->openURL(AppLinkDestination::about());
}

void StatusItemController::openBugReport() {
    if (viewModel_)
        viewModel_->openBugReport();
}

void StatusItemController::openSettings() {
    if (const auto settings = settingsWindowController_.lock())
        settings->show();
}

void StatusItemController::quitApp() {
    platform_.application.terminate();
}

} // namespace pindle
