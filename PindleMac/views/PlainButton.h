#pragma once

#include <QAbstractButton>

namespace pindle {

/// A button without a bezel: its content is drawn as it is, fainter while pressed or disabled.
/// Space and Return press it, the keyboard's focus shows as a ring, and the second press of a
/// double click is not another click.
class PlainButton : public QAbstractButton {
    Q_OBJECT
public:
    PlainButton();

    /// What assistive technologies call the button; never interpreted as a mnemonic.
    void setNames(const QString &name, const QString &description);

protected:
    /// Corner radius of the button's shape, in logical pixels.
    virtual double cornerRadius() const = 0;
    virtual QColor fill() const = 0;
    /// Draws what lies on the filled shape.
    virtual void paintContent(QPainter &painter) = 0;

    /// Whether the keyboard is on the button and came there by a key.
    bool showsFocusRing() const { return hasFocus() && focusFromKeyboard_; }

    bool event(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;

private:
    double contentOpacity() const;

    bool focusFromKeyboard_ = false;
};

} // namespace pindle
