#pragma once

#include "PindleMac/views/PlainButton.h"

namespace pindle {

/// The small round button in the panel's corner.
class CloseButton : public PlainButton {
    Q_OBJECT
public:
    CloseButton();

    QSize sizeHint() const override;

protected:
    double cornerRadius() const override;
    QColor fill() const override;
    void paintContent(QPainter &painter) override;
};

} // namespace pindle
