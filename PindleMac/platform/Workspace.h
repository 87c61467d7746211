#pragma once

#include <QUrl>

namespace pindle {

/// Opening of addresses outside the program. Called on the main thread; never waits for the
/// program it starts.
class Workspace {
public:
    virtual ~Workspace() = default;

    /// Opens an https address in the default browser, or a settings address on the page it means.
    /// False, and nothing opened, for everything else and where nothing could be started.
    virtual bool open(const QUrl &url) = 0;
};

} // namespace pindle
