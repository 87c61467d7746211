#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QWidget>
#include <QWindow>
#include <functional>

namespace pindle::bench {

/// Tells each time a window has been painted and its pixels sent to the X server.
class FlushWatch : public QObject {
public:
    /// `top` is a top-level widget whose window exists, and must outlive it.
    FlushWatch(QWidget &top, std::function<void()> flushed)
        : top_(top)
        , flushed_(std::move(flushed)) {
        top_.installEventFilter(this);
        top_.windowHandle()->installEventFilter(this);
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        const bool paints =
            event->type() == QEvent::Expose || event->type() == QEvent::UpdateRequest;
        if (inside_ || !paints)
            return false;
        // Painting and sending happen within the delivery, so the watch delivers by itself.
        inside_ = true;
        QCoreApplication::sendEvent(watched, event);
        inside_ = false;
        if (top_.windowHandle()->isExposed())
            flushed_();
        return true;
    }

private:
    QWidget &top_;
    std::function<void()> flushed_;
    bool inside_ = false;
};

} // namespace pindle::bench
