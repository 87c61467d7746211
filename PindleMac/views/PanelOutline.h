#pragma once

#include "PindleMac/views/Backdrop.h"

#include <QWidget>

namespace pindle {

/// Lies over the whole panel: clips all below it to the panel's rounded shape and draws a hairline
/// along its edge. Clicks go through.
class PanelOutline : public QWidget {
    Q_OBJECT
public:
    explicit PanelOutline(QWidget *parent);

    /// Corner radius of the panel, in logical pixels.
    static constexpr double radius = 28;

    /// Whether the corners are made transparent; false where that would show as black.
    void setClipping(bool clipping);
    bool clipping() const { return clipping_; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    bool clipping_ = true;
    Backdrop edge_;
};

} // namespace pindle
