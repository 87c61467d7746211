#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace pindle {

/// An indeterminate progress wheel. It turns only while it can be seen.
class Spinner : public QWidget {
    Q_OBJECT
public:
    Spinner();

    bool isTurning() const { return timer_.isActive(); }

protected:
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QBasicTimer timer_;
    int step_ = 0;
};

} // namespace pindle
