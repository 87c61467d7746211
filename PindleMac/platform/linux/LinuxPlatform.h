#pragma once

#include "PindleMac/platform/Platform.h"
#include "PindleMac/platform/linux/urlsession/QtURLSession.h"

#include <memory>

namespace pindle {

/// The real facilities of an X11 desktop, made in the order they need each other. Main thread.
class LinuxPlatform {
public:
    /// Null when there is no X11 display to connect to. `urlSession` is what requests go through.
    static std::unique_ptr<LinuxPlatform> create(std::unique_ptr<URLSession> urlSession);
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
