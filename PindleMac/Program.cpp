#include "PindleMac/Program.h"

#include "PindleConversion/ConversionService.h"
#include "PindleMac/AppViewModel.h"
#include "PindleMac/CommandLine.h"
#include "PindleMac/PindleMacApp.h"
#include "PindleMac/platform/linux/LinuxPlatform.h"
#include "PindleMac/platform/linux/application/SessionApplication.h"
#include "PindleMac/platform/linux/bundle/ExecutableBundle.h"
#include "PindleMac/views/Symbols.h"

#include <QApplication>
#include <QTimer>
#include <cstdio>

namespace pindle {

namespace {

constexpr int okStatus = 200;
constexpr int notFoundStatus = 404;
constexpr int usageFault = 2; ///< exit status for wrong arguments
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

namespace {

int say(std::FILE *stream, const QString &text, int status) {
    std::fputs(text.toLocal8Bit().constData(), stream);
    return status;
}

/// The answer to arguments that are not for running the program; absent for those that are.
std::optional<int> answered(const CommandLine &command) {
    switch (command.kind) {
    case CommandLine::Kind::help:
        return say(stdout, usageText(), EXIT_SUCCESS);
    case CommandLine::Kind::version:
        return say(
            stdout,
            QStringLiteral("pindle %1\n")
                .arg(ExecutableBundle()
                         .objectForInfoDictionaryKey(QStringLiteral("CFBundleShortVersionString"))
                         .toString()),
            EXIT_SUCCESS);
    case CommandLine::Kind::fault:
        return say(stderr, QStringLiteral("pindle: %1\n\n%2").arg(command.message, usageText()),
                   usageFault);
    case CommandLine::Kind::run:
        break;
    }
    return std::nullopt;
}

/// What is left to do when the session has the program already, or is to have it no longer.
std::optional<int> handedOver(SessionApplication &application, ApplicationRequest request) {
    if (!application.claim()) {
        if (application.forward(request))
            return EXIT_SUCCESS;
        return say(stderr, QStringLiteral("pindle: it runs already, but does not answer.\n"),
                   EXIT_FAILURE);
    }
    return request == ApplicationRequest::quit ? std::optional(EXIT_SUCCESS) : std::nullopt;
}

QStringList argumentsOf(int argc, char **argv) {
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments += QString::fromLocal8Bit(argv[i]);
    return arguments;
}

int runHere(char **argv, SessionBus *bus, SessionApplication &application,
            ApplicationRequest request,
            const std::function<std::unique_ptr<URLSession>()> &makeSession) {
    int argc = 1; // the toolkit's own options are none of the program's
    QApplication toolkit(argc, argv);
    QApplication::setApplicationName(QStringLiteral("pindle"));
    QApplication::setApplicationDisplayName(QStringLiteral("Pindle"));
    QApplication::setDesktopFileName(QStringLiteral("app.pindle.Pindle"));

    const auto desktop =
        LinuxPlatform::create(makeSession(), {bus, application, symbols::document});
    if (!desktop) {
        return say(stderr,
                   QStringLiteral("pindle: there is no X11 display to run on; is DISPLAY set?\n"),
                   EXIT_FAILURE);
    }
    Platform::install(desktop->platform());
    AppDelegate delegate(desktop->platform(), AppViewModel::shared());
    delegate.applicationDidFinishLaunching();
    if (request != ApplicationRequest::reopen)
        application.request(request);
    if (bus)
        bus->attach();
    QTimer::singleShot(settling, &toolkit, [&] {
        desktop->prepareFirstPress();
        delegate.prepareFirstPress();
    });
    return QApplication::exec();
}

} // namespace

int runProgram(int argc, char **argv,
               const std::function<std::unique_ptr<URLSession>()> &makeSession) {
    const CommandLine command = parseCommandLine(argumentsOf(argc, argv));
    if (const auto status = answered(command))
        return *status;
    const auto bus = SessionBus::open();
    SessionApplication application(bus.get());
    if (const auto status = handedOver(application, command.request))
        return *status;
    return runHere(argv, bus.get(), application, command.request, makeSession);
}

void endProcess(int status) {
    std::fflush(nullptr);
    std::_Exit(status);
}

} // namespace pindle
