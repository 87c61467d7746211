#include "PindleMac/platform/linux/privacy/PrivacyWindow.h"

#include "PindleMac/platform/linux/privacy/PrivacyPageView.h"

#include <QCheckBox>
#include <QCursor>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QTabWidget>
#include <QVBoxLayout>

namespace pindle {

namespace {

constexpr int margin = 12; ///< device-independent pixels

QRect pointersScreen() {
    const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    return screen ? screen->availableGeometry() : QRect();
}

} // namespace

PrivacyWindow::PrivacyWindow(std::vector<PrivacyPermission> pages, Activate activate)
    : QDialog(nullptr, Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowSystemMenuHint | Qt::WindowCloseButtonHint)
    , activate_(std::move(activate))
    , tabs_(new QTabWidget) {
    setWindowTitle(QStringLiteral("Privacy"));
    setObjectName(QStringLiteral("privacyWindow"));
    // A utility that lives without windows does not end with its last one.
    setAttribute(Qt::WA_QuitOnClose, false);
    tabs_->setAccessibleName(QStringLiteral("Permissions"));
    for (PrivacyPermission &permission : pages) {
        const QString title = permission.title;
        pages_.push_back(new PrivacyPageView(std::move(permission)));
        tabs_->addTab(pages_.back(), title);
    }
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(tabs_);
}

void PrivacyWindow::show(PrivacyPage page) {
    refresh();
    tabs_->setCurrentIndex(static_cast<int>(page));
    this->page(page).choice()->setFocus();
    if (!placed_) {
        adjustSize();
        QRect frame(QPoint(), sizeHint());
        frame.moveCenter(pointersScreen().center());
        move(frame.topLeft());
        placed_ = true;
    }
    setWindowState(windowState() & ~Qt::WindowMinimized);
    QDialog::show();
    raise();
    activateWindow();
    if (activate_)
        activate_(winId());
}

void PrivacyWindow::refresh() {
    for (PrivacyPageView *page : pages_)
        page->refresh();
}

PrivacyPageView &PrivacyWindow::page(PrivacyPage page) const {
    return *pages_.at(static_cast<std::size_t>(page));
}

void PrivacyWindow::changeEvent(QEvent *event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow())
        refresh();
    QDialog::changeEvent(event);
}

void PrivacyWindow::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close))
        close();
    else
        event->ignore(); // Return is for the control that has the keyboard
}

} // namespace pindle
