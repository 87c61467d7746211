#include "PindleMac/SettingsWindowController.h"

#include "PindleMac/AppViewModel.h"
#include "PindleMac/SettingsView.h"
#include "PindleMac/views/TitledWindow.h"

namespace pindle {

namespace {
constexpr QSize contentSize{420, 280};
}

SettingsWindowController::SettingsWindowController(AppViewModel &viewModel)
    : window_(std::make_unique<TitledWindow>(
          TitledWindow::Form{QStringLiteral("Settings"), contentSize, true},
          new SettingsView(viewModel), viewModel.windowServer())) {}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show() {
    window_->show();
}

} // namespace pindle
