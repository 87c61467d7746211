#pragma once

#include "PindleMac/platform/Platform.h"
#include "PindleMac/platform/linux/statusbar/LinuxStatusBar.h"
#include "PindleMac/platform/linux/urlsession/QtURLSession.h"

#include <memory>

namespace pindle {

/// What the desktop's facilities are built on and does not belong to them.
struct Surroundings {
    SessionBus *bus = nullptr; ///< null where there is none
    Application &application;
    SymbolSource symbols;
};

/// The real facilities of an X11 desktop, made in the order they need each other. Main thread.
class LinuxPlatform {
public:
    /// Null when there is no X11 display to connect to. `urlSession` is what requests go through;
    /// the surroundings outlive the platform.
    static std::unique_ptr<LinuxPlatform> create(std::unique_ptr<URLSession> urlSession,
                                                 const Surroundings &surroundings);
    ~LinuxPlatform();

    Platform &platform();
    /// Makes ready, in the background, what the first press would otherwise wait for.
    void prepareFirstPress();

private:
    struct Facilities;
    explicit LinuxPlatform(std::unique_ptr<Facilities> facilities);

    std::unique_ptr<Facilities> facilities_;
};

} // namespace pindle
