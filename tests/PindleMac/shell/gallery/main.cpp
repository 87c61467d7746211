/// Renders the panel in each of its states into a folder of images, to be looked at.
///
///     panel_gallery FOLDER
///     panel_gallery --time            how long the prepared panel takes from show to painted
///     panel_gallery --show N [--plain]    shows the Nth state as a panel for some seconds, with
///                                         --plain as on a desktop without a compositor

#include "PindleMac/ContentView.h"
#include "PindleMac/FloatingPanelController.h"
#include "PindleMac/views/Symbols.h"
#include "tests/PindleMac/shell/ShellFixture.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPainter>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <cstdio>

namespace pindle {
namespace {

using shelltest::Shell;

struct Scene {
    QString name;
    std::function<void(Shell &)> arrange;
    /// Accessible name of the control that has the keyboard, if any.
    QString focused = {};
};

void fail(Shell &shell, AppError::Case error, bool calendar, bool accessibility) {
    TestAccess::setError(*shell.model, AppError(error).errorDescription());
    TestAccess::setOffers(*shell.model, calendar, accessibility);
}

QList<Scene> scenes() {
    using Case = AppError::Case;
    return {
        {QStringLiteral("01-idle"), [](Shell &) {}},
        {QStringLiteral("02-capturing"),
         [](Shell &shell) { TestAccess::setPhase(*shell.model, ParserPhase::capturing); }},
        {QStringLiteral("03-parsing"),
         [](Shell &shell) { TestAccess::setPhase(*shell.model, ParserPhase::parsing); }},
        {QStringLiteral("04-ready"), [](Shell &shell) { shell.becomeReady(); }},
        {QStringLiteral("05-ready-untitled"),
         [](Shell &shell) {
             auto details = Shell::lunch();
             details.title.clear();
             shell.becomeReady(details);
         }},
        {QStringLiteral("06-ready-notice"),
         [](Shell &shell) {
             shell.becomeReady();
             TestAccess::setUserMessage(*shell.model,
                                        QStringLiteral("No year was given, so 2025 was assumed."));
         }},
        {QStringLiteral("07-saved"),
         [](Shell &shell) {
             shell.becomeReady();
             TestAccess::setSuccess(*shell.model, QStringLiteral("Event saved to Apple Calendar."));
         }},
        {QStringLiteral("08-save-refused"),
         [](Shell &shell) {
             shell.becomeReady();
             fail(shell, Case::calendarPermissionDenied, true, false);
         }},
        {QStringLiteral("09-failed"),
         [](Shell &shell) {
             TestAccess::setPhase(*shell.model, ParserPhase::failed);
             fail(shell, Case::missingSelection, false, true);
         }},
        {QStringLiteral("10-everything-failed"),
         [](Shell &shell) {
             TestAccess::setPhase(*shell.model, ParserPhase::failed);
             fail(shell, Case::clipboardAccess, true, true);
             TestAccess::setSuccess(*shell.model, QStringLiteral("Event saved to Apple Calendar."));
             TestAccess::setUserMessage(*shell.model,
                                        QStringLiteral("No year was given, so 2025 was assumed."));
         }},
        {QStringLiteral("11-long-texts"),
         [](Shell &shell) {
             auto details = Shell::lunch();
             details.title = QStringLiteral("A title that goes on and on, far beyond the end of "
                                            "the field it is shown in");
             details.description = QStringLiteral("A line of a description.\n").repeated(12);
             shell.becomeReady(details);
             auto links = shell.model->calendarLinks();
             links[3].id = QStringLiteral("other");
             links[3].title = QStringLiteral("Some & Other Calendar");
             TestAccess::setLinks(*shell.model, links);
             TestAccess::setUserMessage(*shell.model,
                                        QStringLiteral("x").repeated(150) +
                                            QStringLiteral(" <b>not bold</b> & plain"));
         }},
        {QStringLiteral("12-focused-field"), [](Shell &shell) { shell.becomeReady(); },
         QStringLiteral("Start Time")},
        {QStringLiteral("13-focused-description"), [](Shell &shell) { shell.becomeReady(); },
         QStringLiteral("Description")},
        {QStringLiteral("14-focused-tile"), [](Shell &shell) { shell.becomeReady(); },
         QStringLiteral("Google Calendar")},
        {QStringLiteral("15-focused-close"), [](Shell &) {}, QStringLiteral("Close")},
    };
}

/// On a dark and light ground, so that corners and edges show.
QImage onGround(const QPixmap &pixmap) {
    constexpr int margin = 24;
    const qreal ratio = pixmap.devicePixelRatio();
    const QSize size = pixmap.deviceIndependentSize().toSize() + QSize(2 * margin, 2 * margin);
    QImage image(size * ratio, QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    QLinearGradient ground(0, 0, size.width(), 0);
    ground.setColorAt(0.49, Qt::white);
    ground.setColorAt(0.51, QColor(0x30, 0x3a, 0x4c));
    painter.fillRect(QRect({}, size), ground);
    painter.drawPixmap(margin, margin, pixmap);
    return image;
}

/// The view as the panel shows it, or, `whole`, as it were without the panel's limit of height.
QImage render(const Scene &scene, bool whole) {
    Shell shell;
    scene.arrange(shell);
    ContentView view(*shell.model);
    view.setAttribute(Qt::WA_TranslucentBackground);
    int height = view.contentHeight();
    if (whole)
        height = view.fullHeight();
    view.resize(ContentView::panelWidth, height);
    view.show();
    if (!scene.focused.isEmpty()) {
        view.setFocus();
        view.activateWindow();
        QTest::qWait(10);
        for (QWidget *control : view.findChildren<QWidget *>())
            if (control->accessibleName() == scene.focused)
                control->setFocus(Qt::TabFocusReason);
    }
    return onGround(view.grab());
}

bool renderSymbols(const QString &path) {
    const QStringList names{QStringLiteral("apple.logo"),          QStringLiteral("globe"),
                            QStringLiteral("envelope.badge"),      QStringLiteral("calendar"),
                            QStringLiteral("calendar.badge.plus"), QStringLiteral("xmark"),
                            QStringLiteral("gearshape"),           QStringLiteral("hand.tap"),
                            QStringLiteral("figure.wave")};
    QImage image(static_cast<int>(names.size()) * 140, 180, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    for (qsizetype index = 0; index < names.size(); ++index) {
        const double x = static_cast<double>(index) * 140 + 10;
        symbols::draw(painter, names[index], {x, 10, 120, 120}, Qt::black);
        symbols::draw(painter, names[index], {x, 145, 18, 18}, Qt::black);
        symbols::draw(painter, names[index], {x + 40, 147, 14, 14}, Qt::black);
    }
    return image.save(path);
}

class PaintWatch : public QObject {
public:
    explicit PaintWatch(std::function<void()> painted)
        : painted_(std::move(painted)) {}

protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::UpdateRequest || event->type() == QEvent::Paint)
            QTimer::singleShot(0, this, painted_);
        return QObject::eventFilter(watched, event);
    }

private:
    std::function<void()> painted_;
};

int measure() {
    Shell shell;
    FloatingPanelController controller(*shell.model, shell.desktop.platform);
    controller.prepare();
    QWidget *panel = nullptr;
    for (QWidget *widget : QApplication::topLevelWidgets())
        if (widget->inherits("pindle::CursorPopoverPanel"))
            panel = widget;
    int runs = 0;
    QElapsedTimer timer;
    double callMilliseconds = 0;
    const auto showNow = [&] {
        timer.start();
        controller.show(QPointF(600, 700));
        callMilliseconds = static_cast<double>(timer.nsecsElapsed()) / 1e6;
    };
    bool waiting = false;
    PaintWatch watch([&] {
        if (!waiting)
            return;
        waiting = false;
        std::printf("show to painted: %.2f ms, of which the call %.2f ms\n",
                    static_cast<double>(timer.nsecsElapsed()) / 1e6, callMilliseconds);
        QTimer::singleShot(300, panel, [&] {
            controller.close();
            QTimer::singleShot(300, panel, [&] {
                if (++runs == 8) {
                    QApplication::quit();
                    return;
                }
                waiting = true;
                showNow();
            });
        });
    });
    for (QWidget *child : panel->findChildren<QWidget *>())
        if (child->inherits("pindle::ContentView"))
            child->installEventFilter(&watch);
    QTimer::singleShot(500, panel, [&] {
        waiting = true;
        showNow();
    });
    return QApplication::exec();
}

int showPanel(int index, bool plain) {
    constexpr int shownMilliseconds = 12000;
    Shell shell;
    shell.desktop.windowServer.compositing = !plain;
    FloatingPanelController controller(*shell.model, shell.desktop.platform);
    shell.desktop.notificationCenter.addObserver(
        closePindlePopover, [&controller](const std::any &) { controller.close(); });
    controller.prepare();
    scenes().at(index).arrange(shell);
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    shell.desktop.screens.all = {{QRectF(screen), QRectF(screen)}};
    QTimer::singleShot(300, &controller, [&] {
        controller.show(QPointF(screen.width() / 2.0, screen.height() - 50));
    });
    QTimer::singleShot(shownMilliseconds, qApp, &QApplication::quit);
    return QApplication::exec();
}

} // namespace
} // namespace pindle

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.contains(QStringLiteral("--time")))
        return pindle::measure();
    if (arguments.value(1) == QStringLiteral("--show"))
        return pindle::showPanel(arguments.value(2).toInt(),
                                 arguments.contains(QStringLiteral("--plain")));
    if (arguments.size() < 2) {
        std::fputs("panel_gallery FOLDER | --time | --show N [--plain]\n", stderr);
        return 2;
    }
    const QDir folder(arguments.at(1));
    folder.mkpath(QStringLiteral("."));
    bool saved = pindle::renderSymbols(folder.filePath(QStringLiteral("symbols.png")));
    for (const auto &scene : pindle::scenes()) {
        saved &=
            pindle::render(scene, false).save(folder.filePath(scene.name + QStringLiteral(".png")));
        saved &= pindle::render(scene, true)
                     .save(folder.filePath(scene.name + QStringLiteral("-whole.png")));
    }
    return saved ? 0 : 1;
}
