#pragma once

#include "PindleMac/views/PlainButton.h"

namespace pindle {

/// A push button of an ordinary window: filled with the accent colour, or bordered.
class WindowButton : public PlainButton {
    Q_OBJECT
public:
    enum class Kind { prominent, bordered };

    /// `subject` is what the button is about, for those who hear its label alone.
    WindowButton(const QString &label, Kind kind, const QString &subject);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    double cornerRadius() const override;
    QColor fill() const override;
    void paintContent(QPainter &painter) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QString label_;
    Kind kind_;
};

} // namespace pindle
