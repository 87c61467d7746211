#pragma once

#include <QPointer>
#include <QScrollBar>

namespace pindle {

/// A narrow vertical scroll bar without arrows or groove; there only while there is something to
/// scroll.
class ThinScrollBar : public QScrollBar {
    Q_OBJECT
public:
    static constexpr int thicknessWithMargin = 10;

    explicit ThinScrollBar(QWidget *parent = nullptr);

    /// Shows and moves `other`, a hidden bar, from here on.
    void standInFor(QScrollBar &other);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

private:
    QRectF thumb() const;

    QPointer<QScrollBar> source_;
    /// Where the pointer holds the thumb, from its top; negative while it does not.
    double grip_ = -1;
};

} // namespace pindle
