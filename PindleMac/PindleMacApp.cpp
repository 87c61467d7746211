#include "PindleMac/PindleMacApp.h"

#include "PindleMac/AppViewModel.h"
#include "PindleMac/platform/NotificationCenter.h"
#include "PindleMac/platform/Platform.h"

#include <QApplication>

namespace pindle {

AppDelegate::AppDelegate(Platform &platform, AppViewModel &viewModel)
    : platform_(platform)
    , viewModel_(viewModel) {}

void AppDelegate::applicationDidFinishLaunching() {
    // An accessory application: it lives on without a window.
    QApplication::setQuitOnLastWindowClosed(false);
    viewModel_.bootstrap();
    panelController_ = std::make_unique<FloatingPanelController>(viewModel_, platform_);
    platform_.notificationCenter.addObserver(showPindlePopover,
                                             [this](const std::any &object) { showPanel(object); });
    platform_.notificationCenter.addObserver(closePindlePopover,
                                             [this](const std::any &) { closePanel(); });
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

} // namespace pindle
