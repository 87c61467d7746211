#pragma once

#include "PindleMac/views/Theme.h"

#include <QLabel>

namespace pindle {

/// A label in one of the panel's text styles: plain text, wrapped, shown whole.
class TextLabel : public QLabel {
    Q_OBJECT
public:
    TextLabel(const QString &text, theme::TextStyle style, const QColor &colour);

    void setColour(const QColor &colour);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    theme::TextStyle style_;
    QColor colour_;
};

} // namespace pindle
