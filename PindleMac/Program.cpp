#include "PindleMac/Program.h"

#include "PindleConversion/ConversionService.h"
#include "PindleMac/AppViewModel.h"
#include "PindleMac/PindleMacApp.h"
#include "PindleMac/platform/linux/LinuxPlatform.h"

#include <QApplication>
#include <QTimer>
#include <cstdio>

namespace pindle {

namespace {

constexpr int okStatus = 200;
constexpr int notFoundStatus = 404;
/// After start-up, how long the machine is left alone before the first press is made ready.
constexpr std::chrono::milliseconds settling{250};

} // namespace

QString embeddedServiceHost() {
    return QStringLiteral("conversion.pindle.localhost");
}

URLResult answerInProcess(const URLRequest &request) {
    const QString endpoint = request.url.fileName();
    if (endpoint != QLatin1String("on-install") && endpoint != QLatin1String("text-conversion"))
        return {{true, notFoundStatus}, QByteArrayLiteral("No such endpoint."), std::nullopt};
    const std::string reply =
        conversion::answer(endpoint.toStdString(),
                           std::string_view(request.httpBody.constData(),
                                            static_cast<std::size_t>(request.httpBody.size())));
    return {{true, okStatus}, QByteArray::fromStdString(reply), std::nullopt};
}

int runProgram(int argc, char **argv,
               const std::function<std::unique_ptr<URLSession>()> &makeSession) {
    QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pindle"));
    QApplication::setApplicationDisplayName(QStringLiteral("Pindle"));
    QApplication::setDesktopFileName(QStringLiteral("app.pindle.Pindle"));

    const auto desktop = LinuxPlatform::create(makeSession());
    if (!desktop) {
        std::fputs("pindle: there is no X11 display to run on; is DISPLAY set?\n", stderr);
        return EXIT_FAILURE;
    }
    Platform::install(desktop->platform());
    AppDelegate delegate(desktop->platform(), AppViewModel::shared());
    delegate.applicationDidFinishLaunching();
    QTimer::singleShot(settling, &application, [&] {
        desktop->prepareFirstPress();
        delegate.prepareFirstPress();
    });
    return QApplication::exec();
}

} // namespace pindle
