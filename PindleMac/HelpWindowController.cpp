#include "PindleMac/HelpWindowController.h"

#include "PindleMac/HelpView.h"
#include "PindleMac/views/TitledWindow.h"

namespace pindle {

namespace {
constexpr QSize contentSize{440, 320};
}

HelpWindowController::HelpWindowController(Platform &platform)
    : window_(std::make_unique<TitledWindow>(
          TitledWindow::Form{QStringLiteral("Help"), contentSize, false}, new HelpView(platform),
          platform.windowServer)) {}

HelpWindowController::~HelpWindowController() = default;

void HelpWindowController::show() {
    window_->show();
}

} // namespace pindle
