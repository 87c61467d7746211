#pragma once

#include <QCheckBox>

namespace pindle {

/// A check box in the shape of a switch, beside its label. Space and Return turn it.
class SwitchControl : public QCheckBox {
    Q_OBJECT
public:
    explicit SwitchControl(const QString &label);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    bool hitButton(const QPoint &position) const override { return rect().contains(position); }
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QRectF track() const;
    void paintOutline(QPainter &painter, const QColor &edge);
    QFont labelFont() const;
};

} // namespace pindle
