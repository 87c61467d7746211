#pragma once

namespace pindle {

/// The program's own login item (SMAppService.mainApp). Called on the main thread.
class LoginItem {
public:
    virtual ~LoginItem() = default;

    /// The program starts with the next session. Throws PlatformError; then nothing has changed.
    virtual void registerItem() = 0;

    /// The program no longer starts with the session; also when it never did. Throws PlatformError.
    virtual void unregisterItem() = 0;
};

} // namespace pindle
