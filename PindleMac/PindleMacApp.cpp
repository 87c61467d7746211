#include "PindleMac/PindleMacApp.h"

#include "PindleMac/AppViewModel.h"
#include "PindleMac/FloatingPanelController.h"
#include "PindleMac/HelpWindowController.h"
#include "PindleMac/SettingsWindowController.h"
#include "PindleMac/StatusItemController.h"
#include "PindleMac/platform/NotificationCenter.h"
#include "PindleMac/platform/Platform.h"

namespace pindle {

AppDelegate::AppDelegate(Platform &platform, AppViewModel &viewModel)
    : platform_(platform)
    , viewModel_(viewModel) {}

AppDelegate::~AppDelegate() = default;

void AppDelegate::applicationDidFinishLaunching() {
    platform_.application.setActivationPolicy(ActivationPolicy::accessory);
    viewModel_.bootstrap();
    panelController_ = std::make_shared<FloatingPanelController>(viewModel_, platform_);
    settingsWindowController_ = std::make_shared<SettingsWindowController>(viewModel_);
    helpWindowController_ = std::make_shared<HelpWindowController>(platform_);
    statusItemController_ = std::make_unique<StatusItemController>(
        panelController_, settingsWindowController_, helpWindowController_, &viewModel_, platform_);
    platform_.notificationCenter.addObserver(showPindlePopover,
                                             [this](const std::any &object) { showPanel(object); });
    platform_.notificationCenter.addObserver(closePindlePopover,
                                             [this](const std::any &) { closePanel(); });
    // Without a place for the icon, starting the program again is how to reach it.
    platform_.application.setRequestHandler(
        [this](ApplicationRequest request) { perform(request); });
}

void AppDelegate::prepareFirstPress() {
    if (panelController_)
        panelController_->prepare();
}

void AppDelegate::showPanel(const std::any &object) {
    const auto *request = std::any_cast<FloatingPanelRequest>(&object);
    if (panelController_)
        panelController_->show(request ? std::optional(request->screenPoint) : std::nullopt);
}

void AppDelegate::closePanel() {
    if (panelController_)
        panelController_->close();
}

void AppDelegate::perform(ApplicationRequest request) {
    switch (request) {
    case ApplicationRequest::reopen:
        return showPanel({});
    case ApplicationRequest::capture:
        return viewModel_.shortcutPressed();
    case ApplicationRequest::settings:
        return statusItemController_->openSettings();
    case ApplicationRequest::help:
        return statusItemController_->openHelp();
    case ApplicationRequest::reportBugs:
        return statusItemController_->openBugReport();
    case ApplicationRequest::about:
        return statusItemController_->openAbout();
    case ApplicationRequest::quit:
        return statusItemController_->quitApp();
    }
}

} // namespace pindle
