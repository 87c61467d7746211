#include "PindleMac/platform/linux/statusbar/PopUpMenu.h"

#include <QGuiApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScreen>

namespace pindle {

namespace {

/// A menu whose key equivalents work while it is open, and only then.
class StatusMenu final : public QMenu {
public:
    explicit StatusMenu(const Menu &menu) {
        setObjectName(QStringLiteral("statusMenu"));
        setAccessibleName(QStringLiteral("Pindle"));
        setAttribute(Qt::WA_DeleteOnClose);
        // The program does not end with a window of its, and a menu is one.
        setAttribute(Qt::WA_QuitOnClose, false);
        for (const MenuItem &item : menu)
            add(item);
    }

protected:
    void keyPressEvent(QKeyEvent *event) override {
        for (QAction *action : actions()) {
            const QKeySequence keys = action->shortcut();
            if (!keys.isEmpty() && keys == QKeySequence(event->keyCombination())) {
                close();
                return action->trigger();
            }
        }
        QMenu::keyPressEvent(event);
    }

private:
    void add(const MenuItem &item) {
        if (item.isSeparator) {
            addSeparator();
            return;
        }
        QString text = item.title;
        QAction *action = addAction(text.replace(QLatin1Char('&'), QStringLiteral("&&")));
        if (!item.keyEquivalent.isEmpty())
            action->setShortcut(QKeySequence(shortcutText(item.keyEquivalent)));
        connect(action, &QAction::triggered, qApp, item.action, Qt::QueuedConnection);
    }
};

} // namespace

QString shortcutText(const QString &keyEquivalent) {
    return QStringLiteral("Ctrl+") + keyEquivalent.toUpper();
}

void popUpMenu(const Menu &menu, const QRect &item) {
    auto *view = new StatusMenu(menu);
    const QScreen *screen = QGuiApplication::screenAt(item.center());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    const bool above = screen && item.center().y() > screen->geometry().center().y();
    view->popup(above ? QPoint(item.left(), item.top() - view->sizeHint().height())
                      : QPoint(item.left(), item.bottom() + 1));
}

} // namespace pindle
