#pragma once

#include "PindleMac/platform/Screens.h"
#include "PindleMac/platform/linux/screens/ScreenGeometry.h"

class QScreen;

namespace pindle {

class XConnection;

/// The toolkit's screens and pointer in the global space. On X11 the visible frames leave out the
/// space that docks reserve, monitor by monitor, which the toolkit does for one monitor only.
class QtScreens : public Screens {
public:
    /// `connection` is null where there is no X server; else it must outlive it.
    explicit QtScreens(XConnection *connection);

    QPointF mouseLocation() override;
    QList<Screen> screens() override;
    std::optional<Screen> mainScreen() override;

private:
    /// The space reserved on the whole X screen; absent when nobody tells.
    std::optional<QList<Strut>> struts();
    Screen screenOf(const QScreen &screen, const std::optional<QList<Strut>> &struts) const;

    XConnection *connection_;
    QSize whole_; ///< the whole X screen in pixels, as struts() last found it
};

} // namespace pindle
