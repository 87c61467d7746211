#pragma once

#include "PindleMac/platform/Accessibility.h"
#include "PindleMac/platform/Application.h"
#include "PindleMac/platform/Bundle.h"
#include "PindleMac/platform/Clock.h"
#include "PindleMac/platform/EventPosting.h"
#include "PindleMac/platform/EventStore.h"
#include "PindleMac/platform/HotKeys.h"
#include "PindleMac/platform/LoginItem.h"
#include "PindleMac/platform/NotificationCenter.h"
#include "PindleMac/platform/Pasteboard.h"
#include "PindleMac/platform/Platform.h"
#include "PindleMac/platform/Screens.h"
#include "PindleMac/platform/StatusBar.h"
#include "PindleMac/platform/URLSession.h"
#include "PindleMac/platform/UserDefaults.h"
#include "PindleMac/platform/WindowServer.h"
#include "PindleMac/platform/Workspace.h"

#include <QHash>
#include <QSet>
#include <QStringList>
#include <deque>
#include <map>
#include <vector>

namespace pindle::fake {

/// What was asked of the desktop, one line per operation, in order.
using CallLog = QStringList;

/// Completions held back so that a test decides when, and in which order, they run.
template<class Completion> class Held {
public:
    void add(Completion completion) { waiting_.push_back(std::move(completion)); }
    std::size_t count() const { return waiting_.size(); }
    /// Removes and returns the completion at `index`.
    Completion take(std::size_t index = 0) {
        auto completion = std::move(waiting_.at(index));
        waiting_.erase(waiting_.begin() + static_cast<std::ptrdiff_t>(index));
        return completion;
    }

private:
    std::deque<Completion> waiting_;
};

class FakeAccessibility final : public Accessibility {
public:
    explicit FakeAccessibility(CallLog &log)
        : log_(log) {}

    /// The answer to each attribute; one that is not scripted is unsupported.
    QHash<QString, AXAttributeResult> attributes;
    bool trusted = true;
    bool trustAfterPrompt = false;
    int prompts = 0;
    bool holdReads = false;
    Held<std::function<void()>> held;

    /// A focused element whose "AXSelectedText" is `text`.
    void select(const QString &text);
    /// A focused element that offers only a range of its whole text.
    void selectRange(const QString &value, CFRange range);
    void setAttribute(const QString &name, AXObject value);

    AXUIElement AXUIElementCreateSystemWide() override;
    void AXUIElementCopyAttributeValue(AXUIElement element, const QString &attribute,
                                       Completion completion) override;
    bool AXIsProcessTrusted() override { return trusted; }
    bool AXIsProcessTrustedWithOptions(bool prompt) override;
    void observeTrust(std::function<void()> changed) override { trustChanged = std::move(changed); }
    std::function<void()> trustChanged;

private:
    CallLog &log_;
};

class FakeApplication final : public Application {
public:
    explicit FakeApplication(CallLog &log)
        : log_(log) {}
    int terminations = 0;
    /// What the desktop asks of the program; null until it listens.
    RequestHandler ask;

    void setActivationPolicy(ActivationPolicy policy) override;
    void setRequestHandler(RequestHandler handler) override;
    void terminate() override;

private:
    CallLog &log_;
};

class FakePasteboard final : public Pasteboard {
public:
    explicit FakePasteboard(CallLog &log)
        : log_(log) {}

    std::optional<QString> text;
    bool holdsImage = false;
    qint64 count = 0;

    /// What an application's copy does.
    void copyText(const QString &copied);
    void copyImage();

    qint64 changeCount() override;
    void stringForType(TextCompletion completion) override;
    void clearContents() override;
    void setString(const QString &string) override;

private:
    CallLog &log_;
};

class FakeEventPosting final : public EventPosting {
public:
    explicit FakeEventPosting(CallLog &log)
        : log_(log) {}

    bool sourceAvailable = true;
    bool downAvailable = true;
    bool upAvailable = true;
    /// What the application in front does on the copy chord's key-down.
    std::function<void()> onCopy;

    std::optional<CGEventSource> CGEventSourceCreate(CGEventSourceStateID state) override;
    std::optional<CGEvent> CGEventCreateKeyboardEvent(const CGEventSource &source,
                                                      CGKeyCode virtualKey, bool keyDown) override;
    void CGEventSetFlags(CGEvent &event, CGEventFlags flags) override;
    void CGEventPost(CGEventTapLocation tap, const CGEvent &event) override;

private:
    CallLog &log_;
};

class FakeHotKeys final : public HotKeys {
public:
    explicit FakeHotKeys(CallLog &log)
        : log_(log) {}

    bool nextRegistrationFails = false;
    std::map<quint64, quint32> registered; ///< handle to key code
    int handlersInstalled = 0;

    /// A press of Command + Shift + the key of this code; false when nothing is bound to it.
    bool press(quint32 keyCode);
    /// Delivers a press as the window system does; what the callback returned.
    OSStatus deliver();
    EventHandlerCallback callback = nullptr;
    void *userData = nullptr;

    EventTargetRef GetApplicationEventTarget() override { return {1}; }
    OSStatus RegisterEventHotKey(quint32 keyCode, quint32 modifiers, EventHotKeyID identity,
                                 EventTargetRef target, quint32 options,
                                 std::optional<EventHotKeyRef> &ref) override;
    OSStatus UnregisterEventHotKey(EventHotKeyRef ref) override;
    OSStatus InstallEventHandler(EventTargetRef target, EventHandlerCallback installed,
                                 const QList<EventTypeSpec> &types, void *data,
                                 std::optional<EventHandlerRef> &ref) override;

private:
    CallLog &log_;
    quint64 nextHandle_ = 1;
};

/// One event as it was when it was saved.
struct SavedEvent {
    std::optional<EKCalendar> calendar;
    QString title;
    QString location;
    QString notes;
    std::chrono::sys_seconds start;
    std::chrono::sys_seconds end;
    TimeZone zone;
};

class FakeEventStore final : public EventStore {
public:
    explicit FakeEventStore(CallLog &log)
        : log_(log) {}

    EKAuthorizationStatus status = EKAuthorizationStatus::notDetermined;
    bool userAllows = true;
    std::optional<PlatformError> accessError;
    std::optional<PlatformError> saveError;
    std::optional<EKCalendar> calendar = EKCalendar{QStringLiteral("default")};
    bool holdAccess = false;
    Held<std::function<void()>> held;
    int prompts = 0;
    std::vector<SavedEvent> saved;

    void requestWriteOnlyAccessToEvents(AccessCompletion completion) override;
    EKAuthorizationStatus authorizationStatus() override { return status; }
    std::unique_ptr<EKEvent> makeEvent() override;
    std::optional<EKCalendar> defaultCalendarForNewEvents() override;
    void save(EKEvent &event, EKSpan span) override;

private:
    CallLog &log_;
};

class FakeWorkspace final : public Workspace {
public:
    explicit FakeWorkspace(CallLog &log)
        : log_(log) {}

    QSet<QString> refused; ///< encoded addresses that cannot be opened
    bool refusesAll = false;
    QStringList opened; ///< encoded addresses, in order

    bool open(const QUrl &url) override;

private:
    CallLog &log_;
};

class FakeLoginItem final : public LoginItem {
public:
    explicit FakeLoginItem(CallLog &log)
        : log_(log) {}
    bool refuses = false;
    void registerItem() override;
    void unregisterItem() override;

private:
    CallLog &log_;
};

class FakeUserDefaults final : public UserDefaults {
public:
    explicit FakeUserDefaults(CallLog &log)
        : log_(log) {}
    QHash<QString, QVariant> values;

    std::optional<QString> string(const QString &key) override;
    bool boolean(const QString &key) override;
    void setString(const QString &key, const QString &value) override;
    void setBoolean(const QString &key, bool value) override;

private:
    CallLog &log_;
};

class FakeURLSession final : public URLSession {
public:
    explicit FakeURLSession(CallLog &log)
        : log_(log) {}

    std::vector<URLRequest> requests;
    /// The reply to each request; by default the scripted bodies below with status 200.
    std::function<URLResult(const URLRequest &)> reply;
    QByteArray installBody = QByteArrayLiteral(R"({"anonymized_key":"key-1"})");
    QByteArray conversionBody;
    bool hold = false;
    Held<std::function<void()>> held;

    /// Replies to conversions with this draft.
    void convertsTo(const QByteArray &details, const QByteArray &userMessage = {});
    static URLResult http(int status, const QByteArray &body);
    static URLResult failure(const QString &description);
    int requestsTo(const QString &endpoint) const;

    void dataTask(const URLRequest &request, Completion completion) override;

private:
    URLResult answer(const URLRequest &request) const;
    CallLog &log_;
};

class FakeBundle final : public Bundle {
public:
    QVariant version = QStringLiteral("3.2.1");
    QString identifier = QStringLiteral("app.pindle.Pindle");
    QVariant objectForInfoDictionaryKey(const QString &key) override;
    QString bundleIdentifier() override { return identifier; }
    QString bundlePath() override { return QStringLiteral("/opt/pindle"); }
};

class FakeNotificationCenter final : public NotificationCenter {
public:
    explicit FakeNotificationCenter(CallLog &log)
        : log_(log) {}
    std::vector<std::pair<QString, std::any>> posted;
    void addObserver(const QString &name, Observer observer) override;
    void post(const QString &name, const std::any &object) override;

private:
    CallLog &log_;
    std::vector<std::pair<QString, Observer>> observers_;
};

class FakeScreens final : public Screens {
public:
    explicit FakeScreens(CallLog &log)
        : log_(log) {}
    QPointF pointer{100, 200};
    QList<Screen> all{{QRectF(0, 0, 1920, 1080), QRectF(0, 0, 1920, 1055)}};
    QPointF mouseLocation() override;
    QList<Screen> screens() override { return all; }
    std::optional<Screen> mainScreen() override {
        return all.isEmpty() ? std::nullopt : std::optional(all.front());
    }

private:
    CallLog &log_;
};

/// The desktop's place for icons, with at most one icon in it.
class FakeStatusBar final : public StatusBar {
public:
    explicit FakeStatusBar(CallLog &log)
        : log_(log) {}

    bool hasRoom = true;
    bool itemShown = false;
    double length = 0;
    QString symbol;
    QString description;
    std::optional<ImagePosition> imagePosition;
    EventTypeMask mask = 0;
    StatusItem::Action action;
    Menu announced;
    /// The menu that is open; choose() and dismiss() close it.
    std::optional<Menu> open;
    std::optional<QRectF> itemFrame = QRectF(1600, 1055, 24, 25);

    /// A click as the desktop delivers it: while a menu is open it closes that instead.
    void click(std::optional<EventType> event);
    void choose(const QString &title);
    void dismiss() { open.reset(); }

    std::unique_ptr<StatusItem> statusItem(double length) override;

private:
    CallLog &log_;
};

class FakeWindowServer final : public WindowServer {
public:
    bool compositing = true;
    bool questionShown = false;
    int floated = 0;
    QList<quintptr> activated;
    std::function<void()> compositingChanged;
    void floatOnAllSpaces(quintptr) override { ++floated; }
    void activateIgnoringOtherApps(quintptr window) override { activated.append(window); }
    bool compositingActive() override { return compositing; }
    void observeCompositing(std::function<void()> changed) override {
        compositingChanged = std::move(changed);
    }
    bool systemQuestionShown() override { return questionShown; }
};

/// Time stands still until a test moves it; a sleep ends when its time has come.
class FakeClock final : public Clock {
public:
    explicit FakeClock(CallLog &log)
        : log_(log) {}

    std::chrono::sys_seconds instant{std::chrono::sys_days{std::chrono::year{2025} / 3 / 10} +
                                     std::chrono::hours{12}};
    TimeZone zone{QStringLiteral("Europe/Berlin")};
    /// Sleeps end at once, with the clock moved on; what most tests want.
    bool sleepsPassAtOnce = true;
    /// The sleep of this number (1 is the first) is cancelled.
    int cancelledSleep = 0;

    void advance(std::chrono::milliseconds duration);
    std::size_t sleeping() const { return sleepers_.size(); }

    std::chrono::sys_seconds now() override { return instant; }
    TimeZone currentTimeZone() override { return zone; }
    void sleep(std::chrono::milliseconds duration, SleepCompletion completion) override;

private:
    struct Sleeper {
        std::chrono::milliseconds until;
        SleepCompletion completion;
    };
    CallLog &log_;
    int sleeps_ = 0;
    std::chrono::milliseconds monotonic_{0};
    std::vector<Sleeper> sleepers_;
};

/// A whole scriptable desktop, with one log of everything asked of it.
struct FakeDesktop {
    CallLog log;
    FakeAccessibility accessibility{log};
    FakeApplication application{log};
    FakeBundle bundle;
    FakeClock clock{log};
    FakeEventPosting eventPosting{log};
    FakeEventStore eventStore{log};
    FakeHotKeys hotKeys{log};
    FakeLoginItem loginItem{log};
    FakeNotificationCenter notificationCenter{log};
    FakePasteboard pasteboard{log};
    FakeScreens screens{log};
    FakeStatusBar statusBar{log};
    FakeURLSession urlSession{log};
    FakeUserDefaults userDefaults{log};
    FakeWindowServer windowServer;
    FakeWorkspace workspace{log};

    Platform platform{accessibility,      application,  bundle,       clock,
                      eventPosting,       eventStore,   hotKeys,      loginItem,
                      notificationCenter, pasteboard,   screens,      statusBar,
                      urlSession,         userDefaults, windowServer, workspace};

    /// The log's lines that begin with one of `prefixes`, in order.
    QStringList logged(const QStringList &prefixes) const;
};

} // namespace pindle::fake
