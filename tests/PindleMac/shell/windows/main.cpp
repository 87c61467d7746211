/// Renders the ordinary windows in their states, on light and on dark desktops, into a folder of
/// images, to be looked at.
///
///     window_gallery FOLDER

#include "PindleMac/HelpWindowController.h"
#include "PindleMac/SettingsWindowController.h"
#include "PindleMac/platform/linux/SystemQuestions.h"
#include "PindleMac/platform/linux/privacy/PrivacyWindow.h"
#include "PindleMac/platform/linux/questions/QuestionDialog.h"
#include "PindleMac/views/TitledWindow.h"
#include "tests/PindleMac/shell/ShellFixture.h"
#include "tests/PindleMac/shell/WindowPalettes.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <cstdio>

namespace pindle {
namespace {

using shelltest::Shell;

struct Scene {
    QString name;
    /// Makes the window in its state and passes it on to be pictured.
    std::function<void(const std::function<void(QWidget &)> &)> show;
};

QWidget *named(QWidget &in, const QString &name, const QString &description = {}) {
    for (QWidget *control : in.findChildren<QWidget *>()) {
        if (control->accessibleName() == name &&
            (description.isEmpty() || control->accessibleDescription() == description))
            return control;
    }
    qFatal("no control %s", qPrintable(name));
}

void focus(QWidget &in, const QString &name, const QString &description = {}) {
    in.activateWindow();
    QTest::qWait(10);
    named(in, name, description)->setFocus(Qt::TabFocusReason);
}

void settings(const std::function<void(QWidget &)> &picture, bool refused, const QString &focused) {
    Shell shell;
    shell.desktop.loginItem.refuses = refused;
    SettingsWindowController controller(*shell.model);
    controller.show();
    if (refused || focused == QStringLiteral("on"))
        static_cast<QAbstractButton *>(
            named(controller.window(), QStringLiteral("Launch at login")))
            ->click();
    if (!focused.isEmpty() && focused != QStringLiteral("on"))
        focus(controller.window(), focused);
    QTest::qWait(20);
    picture(controller.window());
}

void help(const std::function<void(QWidget &)> &picture, bool granted, bool unfolded, int scroll) {
    Shell shell;
    shell.desktop.accessibility.trusted = granted;
    if (granted)
        shell.desktop.eventStore.status = EKAuthorizationStatus::writeOnly;
    HelpWindowController controller(shell.desktop.platform);
    controller.show();
    QWidget &window = controller.window();
    if (unfolded) {
        focus(window, QStringLiteral("Prompt"));
        static_cast<QAbstractButton *>(named(window, QStringLiteral("Prompt")))->click();
        static_cast<QAbstractButton *>(named(window, QStringLiteral("Debug Status")))->click();
    }
    QTest::qWait(30);
    if (scroll < 0) { // the whole of it
        const auto *area = window.findChild<QScrollArea *>();
        window.setFixedSize(window.width(), area->widget()->height());
        QTest::qWait(30);
    } else {
        window.findChild<QScrollArea *>()->verticalScrollBar()->setValue(scroll);
    }
    picture(window);
}

void privacy(const std::function<void(QWidget &)> &picture, PrivacyPage page, bool granted) {
    PrivacyPermission calendar{
        QStringLiteral("Calendars"),
        QStringLiteral("Pindle adds the events you choose to save to your calendar. It never "
                       "reads it."),
        QStringLiteral("Allow Pindle to add events"),
        QStringLiteral("Events that are in the calendar already stay there."),
        [granted] {
            return PrivacyPermission::State{granted,
                                            granted ? QStringLiteral("Pindle may add events.")
                                                    : QStringLiteral("Pindle may not add events.")};
        },
        [](bool) {},
        [] {}};
    PrivacyPermission accessibility = calendar;
    accessibility.title = QStringLiteral("Accessibility");
    accessibility.purpose = QStringLiteral("Pindle reads the text you have highlighted through the "
                                           "desktop’s accessibility service.");
    accessibility.choice = QStringLiteral("Switch on the accessibility service");
    accessibility.note =
        QStringLiteral("Programs that are running already may have to be restarted to take part. "
                       "While the service is off, screen readers cannot work either.");
    accessibility.state = [] {
        return PrivacyPermission::State{false, QStringLiteral("The accessibility service is off.")};
    };
    accessibility.openSettings = {};
    PrivacyWindow window({calendar, accessibility}, {});
    window.show(page);
    QTest::qWait(20);
    picture(window);
}

void question(const std::function<void(QWidget &)> &picture) {
    SystemQuestions count;
    QuestionDialog dialog(
        {QStringLiteral("“Pindle” would like to add events to your calendar."),
         QStringLiteral("It adds the events you choose to save. It does not read your calendar."),
         QStringLiteral("Don’t Allow"), QStringLiteral("Allow")},
        count, [](QuestionAnswer) {});
    dialog.present();
    QTest::qWait(20);
    picture(dialog);
}

QList<Scene> scenes() {
    using Picture = const std::function<void(QWidget &)> &;
    return {
        {QStringLiteral("settings"), [](Picture p) { settings(p, false, {}); }},
        {QStringLiteral("settings-on"),
         [](Picture p) { settings(p, false, QStringLiteral("on")); }},
        {QStringLiteral("settings-refused"),
         [](Picture p) { settings(p, true, QStringLiteral("Launch at login")); }},
        {QStringLiteral("settings-picker"),
         [](Picture p) { settings(p, false, QStringLiteral("Shortcut key")); }},
        {QStringLiteral("help"), [](Picture p) { help(p, false, false, 0); }},
        {QStringLiteral("help-whole"), [](Picture p) { help(p, false, false, -1); }},
        {QStringLiteral("help-unfolded"), [](Picture p) { help(p, true, true, -1); }},
        {QStringLiteral("help-scrolled"), [](Picture p) { help(p, true, true, 420); }},
        {QStringLiteral("privacy-calendars"),
         [](Picture p) { privacy(p, PrivacyPage::calendars, true); }},
        {QStringLiteral("privacy-accessibility"),
         [](Picture p) { privacy(p, PrivacyPage::accessibility, false); }},
        {QStringLiteral("question"), [](Picture p) { question(p); }},
    };
}

} // namespace
} // namespace pindle

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "qt.qpa.*=false");
    QApplication application(argc, argv);
    if (argc < 2) {
        std::fputs("window_gallery FOLDER\n", stderr);
        return 2;
    }
    const QDir folder(QApplication::arguments().at(1));
    folder.mkpath(QStringLiteral("."));
    bool saved = true;
    for (const auto &[name, palette] : pindle::shelltest::desktopPalettes()) {
        QApplication::setPalette(palette);
        for (const auto &scene : pindle::scenes()) {
            scene.show([&](QWidget &window) {
                saved &= window.grab().save(
                    folder.filePath(scene.name + QLatin1Char('-') + name + QStringLiteral(".png")));
            });
        }
    }
    return saved ? 0 : 1;
}
