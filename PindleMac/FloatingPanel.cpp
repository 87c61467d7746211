#include "PindleMac/FloatingPanel.h"

#include "PindleMac/ContentView.h"
#include "PindleMac/PanelPlacement.h"
#include "PindleMac/platform/WindowServer.h"
#include "PindleMac/views/PanelOutline.h"
#include "PindleMac/views/Theme.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainterPath>
#include <QPointer>
#include <QScreen>
#include <QWindow>

namespace pindle {

namespace {

QRectF mainScreenGeometry() {
    const QScreen *screen = QGuiApplication::primaryScreen();
    return screen ? QRectF(screen->geometry()) : QRectF(0, 0, 1440, 900);
}

QRegion roundedRegion(const QRect &rect) {
    QPainterPath path;
    path.addRoundedRect(rect, PanelOutline::radius, PanelOutline::radius);
    return QRegion(path.toFillPolygon().toPolygon());
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
    show();
    raise();
    windowServer_.floatOnAllSpaces(winId());
}

void CursorPopoverPanel::orderOut() {
    hide();
}

void CursorPopoverPanel::resignKeyWindow() {
    if (windowServer_.systemQuestionShown() || QApplication::activePopupWidget())
        return;
    orderOut();
    Q_EMIT didResignKey();
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
    if (isActiveWindow())
        return;
    activateWindow();
    if (!focusWidget())
        setFocus(Qt::MouseFocusReason);
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
