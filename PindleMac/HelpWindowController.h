#pragma once

#include "PindleMac/platform/Platform.h"

#include <memory>

namespace pindle {

class TitledWindow;

/// Owns the help window for as long as the program runs. Main thread only.
class HelpWindowController {
public:
    /// Makes the window without showing it. The platform must outlive it.
    explicit HelpWindowController(Platform &platform = Platform::shared());
    ~HelpWindowController();

    /// Brings the program and the window to the front.
    void show();

    TitledWindow &window() { return *window_; }

private:
    std::unique_ptr<TitledWindow> window_;
};

} // namespace pindle
