#include "PindleMac/FloatingPanelController.h"

#include "PindleMac/ContentView.h"
#include "PindleMac/FloatingPanel.h"
#include "PindleMac/PanelPlacement.h"
#include "PindleMac/platform/Platform.h"
#include "PindleMac/platform/Screens.h"

namespace pindle {

FloatingPanelController::FloatingPanelController(AppViewModel &viewModel, Platform &platform)
    : screens_(platform.screens)
    , panel_(
          std::make_unique<CursorPopoverPanel>(new ContentView(viewModel), platform.windowServer)) {
    connect(panel_.get(), &CursorPopoverPanel::didResignKey, this,
            &FloatingPanelController::windowDidResignKey);
}

FloatingPanelController::~FloatingPanelController() = default;

void FloatingPanelController::prepare() {
    panel_->prepare();
}

void FloatingPanelController::show(std::optional<QPointF> near) {
    const QPointF anchor = near ? *near : screens_.mouseLocation();
    const QPointF origin = panelOrigin(near, anchor, screens_.screens(), screens_.mainScreen(),
                                       CursorPopoverPanel::panelSize);
    panel_->setFrame(origin, anchor);
    panel_->orderFrontRegardless();
}

void FloatingPanelController::close() {
    panel_->orderOut();
}

void FloatingPanelController::toggleFromStatusItem(std::optional<QRectF> itemFrame) {
    if (isShown())
        close();
    else if (itemFrame)
        show(QPointF(itemFrame->center().x(), itemFrame->top()));
    else
        show(std::nullopt);
}

bool FloatingPanelController::isShown() const {
    return panel_->isVisible();
}

void FloatingPanelController::windowDidResignKey() {
    panel_->orderOut();
}

} // namespace pindle
