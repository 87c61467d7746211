#pragma once

#include "PindleMac/platform/Application.h"

#include <any>
#include <memory>

namespace pindle {

class AppViewModel;
class FloatingPanelController;
class HelpWindowController;
class SettingsWindowController;
class StatusItemController;
struct Platform;

/// Starts the program's parts in their order and keeps them alive until the process ends. Main
/// thread only.
class AppDelegate {
public:
    AppDelegate(Platform &platform, AppViewModel &viewModel);
    ~AppDelegate();

    /// To be called once, when the event loop is about to run.
    void applicationDidFinishLaunching();

    /// Makes ready what the first press needs; to be called when nothing else is left to do.
    void prepareFirstPress();

private:
    void showPanel(const std::any &object);
    void closePanel();
    void perform(ApplicationRequest request);

    Platform &platform_;
    AppViewModel &viewModel_;
    std::shared_ptr<FloatingPanelController> panelController_;
    std::shared_ptr<SettingsWindowController> settingsWindowController_;
    std::shared_ptr<HelpWindowController> helpWindowController_;
    std::unique_ptr<StatusItemController> statusItemController_;
};

} // namespace pindle
