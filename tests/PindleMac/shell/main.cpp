#include <QApplication>
#include <QFont>
#include <gtest/gtest.h>

namespace {

QtMessageHandler standard = nullptr;

/// Off screen there is no window manager to raise windows or to give them shapes, and each such
/// request is remarked upon.
void withoutRemarksOnThePlugin(QtMsgType type, const QMessageLogContext &context,
                               const QString &message) {
    if (!message.startsWith(QStringLiteral("This plugin does not support")))
        standard(type, context, message);
}

} // namespace

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    // Views are rendered off screen, also where there is a display.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    standard = qInstallMessageHandler(withoutRemarksOnThePlugin);
    QApplication application(argc, argv);
    // The sizes the expectations speak of, whatever the machine's own font is.
    QFont font = QApplication::font();
    font.setPixelSize(13);
    QApplication::setFont(font);
    return RUN_ALL_TESTS();
}
