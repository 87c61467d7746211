#pragma once

#include "PindleMac/platform/Workspace.h"

#include <functional>

namespace pindle {

/// Opens web addresses through the desktop's own opener, xdg-open, with the address as its one
/// argument, percent-encoded.
class DesktopWorkspace final : public Workspace {
public:
    /// Shows the settings page an address means; false when it knows none for it.
    using SettingsOpener = std::function<bool(const QUrl &)>;

    /// Without `settingsOpener` no settings address can be opened.
    explicit DesktopWorkspace(SettingsOpener settingsOpener = {});

    bool open(const QUrl &url) override;

private:
    SettingsOpener settingsOpener_;
};

} // namespace pindle
