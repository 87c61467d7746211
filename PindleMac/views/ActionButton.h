#pragma once

#include "PindleMac/views/PlainButton.h"

namespace pindle {

/// A capsule with a symbol and a text, which takes more lines where the width does not suffice.
class ActionButton : public PlainButton {
    Q_OBJECT
public:
    ActionButton(const QString &text, const QString &symbol);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    double cornerRadius() const override;
    QColor fill() const override;
    void paintContent(QPainter &painter) override;

private:
    QString text_;
    QString symbol_;
};

} // namespace pindle
