#pragma once

#include "PindleMac/FloatingPanelController.h"

#include <any>
#include <memory>

namespace pindle {

class AppViewModel;
struct Platform;

/// Starts the program's parts in their order and keeps them alive until the process ends. Main
/// thread only.
class AppDelegate {
public:
    AppDelegate(Platform &platform, AppViewModel &viewModel);

    /// To be called once, when the event loop is about to run.
    void applicationDidFinishLaunching();

    /// Makes ready what the first press needs; to be called when nothing else is left to do.
    void prepareFirstPress();

private:
    void showPanel(const std::any &object);
    void closePanel();

    Platform &platform_;
    AppViewModel &viewModel_;
    std::unique_ptr<FloatingPanelController> panelController_;
};

} // namespace pindle
