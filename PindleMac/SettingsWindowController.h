#pragma once

#include <memory>

namespace pindle {

class AppViewModel;
class TitledWindow;

/// Owns the settings window for as long as the program runs. Main thread only.
class SettingsWindowController {
public:
    /// Makes the window without showing it. The view model must outlive it.
    explicit SettingsWindowController(AppViewModel &viewModel);
    ~SettingsWindowController();

    /// Brings the program and the window to the front.
    void show();

    TitledWindow &window() { return *window_; }

private:
    std::unique_ptr<TitledWindow> window_;
};

} // namespace pindle
