#pragma once

#include "PindleMac/views/TextLabel.h"

namespace pindle {

/// A key hint in a capsule.
class ShortcutPill : public TextLabel {
    Q_OBJECT
public:
    explicit ShortcutPill(const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace pindle
