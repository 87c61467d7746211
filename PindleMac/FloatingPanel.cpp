#include "PindleMac/FloatingPanel.h"

#include "PindleMac/ContentView.h"
#include "PindleMac/PanelPlacement.h"
#include "PindleMac/platform/WindowServer.h"
#include "PindleMac/views/AccessibleRole.h"
#include "PindleMac/views/PanelOutline.h"
#include "PindleMac/views/Theme.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPointer>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <cmath>

namespace pindle {

namespace {

/// How long the keyboard may be on its way back from a question or a menu.
constexpr std::chrono::milliseconds keyboardReturn{500};

QRectF mainScreenGeometry() {
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? QRectF(screen->geometry()) : QRectF(0, 0, 1440, 900);
}

/// All pixels whose centre lies within the rounded corners.
QRegion roundedRegion(const QRect &rect) {
    constexpr double radius = PanelOutline::radius;
    constexpr auto rows = static_cast<int>(radius);
    QRegion region = rect.adjusted(0, rows, 0, -rows);
    for (int row = 0; row < rows; ++row) {
        const double below = radius - row - 0.5;
        const int inset = qRound(radius - std::sqrt(radius * radius - below * below));
        const int width = rect.width() - 2 * inset;
        region += QRect(rect.x() + inset, rect.y() + row, width, 1);
        region += QRect(rect.x() + inset, rect.bottom() - row, width, 1);
    }
    return region;
}

} // namespace

CursorPopoverPanel::CursorPopoverPanel(ContentView *content, WindowServer &windowServer)
    : QWidget(nullptr, Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint |
                           Qt::NoDropShadowWindowHint)
    , windowServer_(windowServer)
    , content_(content) {
    setAttribute(Qt::WA_TranslucentBackground);
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QStringLiteral("Pindle"));
    setAccessibleRole(*this, QAccessible::Dialog);
    setPalette(theme::palette());
    setFixedSize(panelSize);
    content_->setParent(this);
    connect(content_, &ContentView::contentHeightChanged, this, &CursorPopoverPanel::placeContent);
    windowServer_.observeCompositing([self = QPointer(this)] {
        if (self)
            self->placeContent();
    });
    placeContent();
}

void CursorPopoverPanel::createWindow() {
    if (windowHandle())
        return;
    winId();
    windowHandle()->installEventFilter(this);
}

void CursorPopoverPanel::prepare() {
    createWindow();
    content_->renderPendingChanges();
    // Loads the fonts and symbols.
    grab();
}

void CursorPopoverPanel::setFrame(QPointF origin, QPointF anchor) {
    origin_ = origin;
    anchor_ = anchor;
    move(toolkitTopLeft(origin, panelSize.height(), mainScreenGeometry()));
    placeContent();
}

void CursorPopoverPanel::orderFrontRegardless() {
    createWindow();
    content_->renderPendingChanges();
    // Left to itself the toolkit would give the keyboard, once it comes, to the first control.
    if (!isVisible())
        setFocus(Qt::OtherFocusReason);
    show();
    raise();
    windowServer_.floatOnAllSpaces(winId());
}

void CursorPopoverPanel::orderOut() {
    hide();
}

void CursorPopoverPanel::resignKeyWindow() {
    if (isKeyboardLent())
        return awaitKeyboard();
    orderOut();
    Q_EMIT didResignKey();
}

bool CursorPopoverPanel::isKeyboardLent() const {
    return windowServer_.systemQuestionShown() || QApplication::activePopupWidget();
}

void CursorPopoverPanel::awaitKeyboard() {
    QTimer::singleShot(keyboardReturn, this, [this] {
        if (!isVisible() || isActiveWindow())
            return;
        if (isKeyboardLent())
            return awaitKeyboard();
        // A window manager may give the keyboard to another program as the question closes. It is
        // asked for once; where that is refused, the panel has lost it.
        becomeKey();
        QTimer::singleShot(keyboardReturn, this, [this] {
            if (isVisible() && !isActiveWindow())
                resignKeyWindow();
        });
    });
}

void CursorPopoverPanel::placeContent() {
    const int height = content_->contentHeight();
    const double offset = cardOffset(anchor_, origin_, panelSize.height(), height);
    const QRect card(0, qRound(offset), panelSize.width(), height);
    content_->setGeometry(card);
    // Without a compositor a translucent pixel is a black one: the window takes the card's shape
    // and the card fills it.
    const bool translucent = windowServer_.compositingActive();
    content_->setRoundedCorners(translucent);
    setMask(translucent ? QRegion(card) : roundedRegion(card));
}

void CursorPopoverPanel::becomeKey() {
    if (!isActiveWindow())
        activateWindow();
}

bool CursorPopoverPanel::event(QEvent *event) {
    if (event->type() == QEvent::WindowDeactivate)
        resignKeyWindow();
    return QWidget::event(event);
}

bool CursorPopoverPanel::eventFilter(QObject *watched, QEvent *event) {
    if (watched == windowHandle() && event->type() == QEvent::MouseButtonPress)
        becomeKey();
    return QWidget::eventFilter(watched, event);
}

void CursorPopoverPanel::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape)
        content_->requestClose();
    else
        QWidget::keyPressEvent(event);
}

} // namespace pindle
