#include "PindleMac/views/TitledWindow.h"

#include "PindleMac/platform/WindowServer.h"
#include "PindleMac/views/AccessibleRole.h"

#include <QCursor>
#include <QEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

namespace pindle {

namespace {

Qt::WindowFlags flags(bool miniaturizable) {
    Qt::WindowFlags result = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                             Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint;
    result.setFlag(Qt::WindowMinimizeButtonHint, miniaturizable);
    return result;
}

} // namespace

TitledWindow::TitledWindow(const Form &form, QWidget *content, WindowServer &windowServer)
    : QWidget(nullptr, flags(form.miniaturizable))
    , windowServer_(windowServer)
    , content_(content)
    , contentSize_(form.contentSize) {
    setWindowTitle(form.title);
    setAccessibleRole(*this, QAccessible::Window);
    // A utility that lives without windows does not end with its last one.
    setAttribute(Qt::WA_QuitOnClose, false);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->addWidget(content_);
    fit();
}

void TitledWindow::show() {
    if (!centered_) {
        center();
        // Left to itself the toolkit would give the keyboard to the first control.
        (content_->focusProxy() ? content_ : this)->setFocus(Qt::OtherFocusReason);
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    QWidget::show();
    raise();
    activateWindow();
    windowServer_.activateIgnoringOtherApps(winId());
}

void TitledWindow::center() {
    const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    if (!screen)
        return;
    QRect frame(QPoint(), size());
    frame.moveCenter(screen->availableGeometry().center());
    move(frame.topLeft());
    centered_ = true;
}

void TitledWindow::fit() {
    const int needed = content_->hasHeightForWidth()
                           ? content_->heightForWidth(contentSize_.width())
                           : content_->minimumSizeHint().height();
    setFixedSize(contentSize_.width(), std::max(contentSize_.height(), needed));
}

bool TitledWindow::event(QEvent *event) {
    if (event->type() == QEvent::LayoutRequest)
        fit();
    return QWidget::event(event);
}

void TitledWindow::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
        close();
    else
        QWidget::keyPressEvent(event);
}

} // namespace pindle
