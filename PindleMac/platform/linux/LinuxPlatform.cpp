#include "PindleMac/platform/linux/LinuxPlatform.h"

#include "PindleMac/platform/Application.h"
#include "PindleMac/platform/linux/SystemQuestions.h"
#include "PindleMac/platform/linux/accessibility/AtspiAccessibility.h"
#include "PindleMac/platform/linux/application/TerminationSignals.h"
#include "PindleMac/platform/linux/bundle/ExecutableBundle.h"
#include "PindleMac/platform/linux/clock/SystemClock.h"
#include "PindleMac/platform/linux/eventposting/X11EventPosting.h"
#include "PindleMac/platform/linux/eventstore/DesktopEventStore.h"
#include "PindleMac/platform/linux/eventstore/EvolutionBackend.h"
#include "PindleMac/platform/linux/hotkeys/X11HotKeys.h"
#include "PindleMac/platform/linux/loginitem/AutostartLoginItem.h"
#include "PindleMac/platform/linux/notificationcenter/LocalNotificationCenter.h"
#include "PindleMac/platform/linux/pasteboard/X11Pasteboard.h"
#include "PindleMac/platform/linux/privacy/PrivacyWindow.h"
#include "PindleMac/platform/linux/questions/AccessDecisions.h"
#include "PindleMac/platform/linux/questions/QuestionQueue.h"
#include "PindleMac/platform/linux/screens/QtScreens.h"
#include "PindleMac/platform/linux/userdefaults/JsonUserDefaults.h"
#include "PindleMac/platform/linux/windowserver/X11WindowServer.h"
#include "PindleMac/platform/linux/workspace/DesktopWorkspace.h"
#include "PindleMac/platform/linux/x11/XConnection.h"
#include "PindleMac/platform/linux/x11/XKeyboard.h"

#include <QCoreApplication>
#include <QUrl>

namespace pindle {

namespace {

Question accessibilityQuestion() {
    return {QStringLiteral("Switch on accessibility for this desktop?"),
            QStringLiteral("Pindle reads the text you have highlighted through the accessibility "
                           "service. Programs that are running already may have to be restarted."),
            QStringLiteral("Not Now"), QStringLiteral("Switch On")};
}

} // namespace

struct LinuxPlatform::Facilities {
    Facilities(std::unique_ptr<XConnection> opened, std::unique_ptr<URLSession> session,
               const Surroundings &around)
        : surroundings(around)
        , connection(std::move(opened))
        , urlSession(std::move(session)) {}

    AskQuestion asker() {
        return [this](const Question &question, std::function<void(QuestionAnswer)> answered) {
            questions.ask(question, std::move(answered));
        };
    }
    /// The privacy pages open here; every other page is refused.
    bool openSettings(const QUrl &url) {
        const auto page = privacyPageFor(url);
        if (!page)
            return false;
        if (!privacy) {
            privacy = std::make_unique<PrivacyWindow>(
                std::vector{calendarPermission(decisions), accessibilityPermission(accessibility)},
                [this](quintptr window) { windowServer.activateIgnoringOtherApps(window); });
            accessibility.observeTrust([this] { privacy->refresh(); });
        }
        privacy->show(*page);
        return true;
    }
    AtspiAccessibility::Ask accessibilityAsker() {
        return [this](std::function<void(bool)> answered) {
            questions.ask(accessibilityQuestion(),
                          [answered = std::move(answered)](QuestionAnswer answer) {
                              answered(answer == QuestionAnswer::accepted);
                          });
        };
    }

    Surroundings surroundings;
    std::unique_ptr<XConnection> connection;
    std::unique_ptr<URLSession> urlSession;
    TerminationSignals signals{[this] { surroundings.application.terminate(); }};
    XKeyboard keyboard{*connection};
    SystemQuestions shownQuestions;
    QuestionQueue questions{shownQuestions};
    AccessDecisions decisions;

    AtspiAccessibility accessibility{*connection, accessibilityAsker()};
    ExecutableBundle bundle;
    SystemClock clock;
    X11EventPosting eventPosting{*connection, keyboard};
    DesktopEventStore eventStore{decisions, asker(), loadEvolutionBackend};
    X11HotKeys hotKeys{*connection, keyboard};
    AutostartLoginItem loginItem{QCoreApplication::applicationFilePath()};
    LocalNotificationCenter notificationCenter;
    X11Pasteboard pasteboard{*connection};
    QtScreens screens{connection.get()};
    LinuxStatusBar statusBar{*connection, surroundings.bus, surroundings.symbols};
    JsonUserDefaults userDefaults;
    X11WindowServer windowServer{*connection, shownQuestions};
    DesktopWorkspace workspace{[this](const QUrl &url) { return openSettings(url); }};

    std::unique_ptr<PrivacyWindow> privacy; ///< made when first asked for

    Platform platform{accessibility,
                      surroundings.application,
                      bundle,
                      clock,
                      eventPosting,
                      eventStore,
                      hotKeys,
                      loginItem,
                      notificationCenter,
                      pasteboard,
                      screens,
                      statusBar,
                      *urlSession,
                      userDefaults,
                      windowServer,
                      workspace};
};

std::unique_ptr<LinuxPlatform> LinuxPlatform::create(std::unique_ptr<URLSession> urlSession,
                                                     const Surroundings &surroundings) {
    auto connection = XConnection::open();
    if (!connection)
        return nullptr;
    return std::unique_ptr<LinuxPlatform>(new LinuxPlatform(
        std::make_unique<Facilities>(std::move(connection), std::move(urlSession), surroundings)));
}

LinuxPlatform::LinuxPlatform(std::unique_ptr<Facilities> facilities)
    : facilities_(std::move(facilities)) {}

LinuxPlatform::~LinuxPlatform() = default;

Platform &LinuxPlatform::platform() {
    return facilities_->platform;
}

void LinuxPlatform::prepareFirstPress() {
    facilities_->accessibility.prepare();
}

} // namespace pindle
