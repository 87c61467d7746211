#include "tests/platform/FakeDesktop.h"

#include <algorithm>

namespace pindle::fake {

namespace {

QString hex(quint64 value) {
    return QStringLiteral("0x") + QString::number(value, 16);
}

} // namespace

// Accessibility

void FakeAccessibility::setAttribute(const QString &name, AXObject value) {
    attributes[name] = {AXError::kAXErrorSuccess, std::move(value)};
}

void FakeAccessibility::select(const QString &text) {
    setAttribute(QStringLiteral("AXFocusedUIElement"), AXUIElement{7});
    setAttribute(QStringLiteral("AXSelectedText"), text);
}

void FakeAccessibility::selectRange(const QString &value, CFRange range) {
    setAttribute(QStringLiteral("AXFocusedUIElement"), AXUIElement{7});
    setAttribute(QStringLiteral("AXSelectedTextRange"),
                 AXValue{AXValueType::kAXValueTypeCFRange, range});
    setAttribute(QStringLiteral("AXValue"), value);
}

AXUIElement FakeAccessibility::AXUIElementCreateSystemWide() {
    log_ += QStringLiteral("ax systemwide");
    return {1};
}

void FakeAccessibility::AXUIElementCopyAttributeValue(AXUIElement element, const QString &attribute,
                                                      Completion completion) {
    log_ += QStringLiteral("ax read %1 of %2").arg(attribute).arg(element.id);
    const auto result = attributes.value(
        attribute, AXAttributeResult{AXError::kAXErrorAttributeUnsupported, std::nullopt});
    if (holdReads)
        held.add([completion, result] { completion(result); });
    else
        completion(result);
}

bool FakeAccessibility::AXIsProcessTrustedWithOptions(bool prompt) {
    log_ += QStringLiteral("ax trusted prompt=%1").arg(int(prompt));
    if (prompt && !trusted) {
        ++prompts;
        trusted = trustAfterPrompt;
    }
    return trusted;
}

// Application and status item

void FakeApplication::setActivationPolicy(ActivationPolicy policy) {
    log_ += QStringLiteral("application policy %1").arg(static_cast<int>(policy));
}

void FakeApplication::setRequestHandler(RequestHandler handler) {
    log_ += QStringLiteral("application listens");
    ask = std::move(handler);
}

void FakeApplication::terminate() {
    log_ += QStringLiteral("application terminate");
    ++terminations;
}

namespace {

class FakeStatusItem final : public StatusItem {
public:
    FakeStatusItem(FakeStatusBar &bar, CallLog &log)
        : bar_(bar)
        , log_(log) {
        bar_.itemShown = true;
    }
    ~FakeStatusItem() override {
        bar_.itemShown = false;
        bar_.action = nullptr;
    }
    Q_DISABLE_COPY_MOVE(FakeStatusItem)

    void setImage(const QString &symbolName, const QString &accessibilityDescription) override {
        bar_.symbol = symbolName;
        bar_.description = accessibilityDescription;
    }
    void setImagePosition(ImagePosition position) override { bar_.imagePosition = position; }
    void sendActionOn(EventTypeMask mask) override { bar_.mask = mask; }
    void setAction(Action action) override { bar_.action = std::move(action); }
    void announceMenu(const Menu &menu) override { bar_.announced = menu; }
    void popUpMenu(const Menu &menu) override {
        log_ += QStringLiteral("status menu");
        bar_.open = menu;
    }
    std::optional<QRectF> frame() override { return bar_.itemFrame; }

private:
    FakeStatusBar &bar_;
    CallLog &log_;
};

} // namespace

void FakeStatusBar::click(std::optional<EventType> event) {
    if (open)
        return dismiss();
    if (action && (!event || (mask & maskOf(*event)) != 0))
        action(event);
}

void FakeStatusBar::choose(const QString &title) {
    const Menu menu = std::exchange(open, std::nullopt).value_or(Menu());
    for (const MenuItem &item : menu) {
        if (item.title == title && item.action)
            item.action();
    }
}

std::unique_ptr<StatusItem> FakeStatusBar::statusItem(double wanted) {
    log_ += QStringLiteral("status item");
    length = wanted;
    if (!hasRoom)
        return nullptr;
    return std::make_unique<FakeStatusItem>(*this, log_);
}

// Pasteboard

void FakePasteboard::copyText(const QString &copied) {
    text = copied;
    holdsImage = false;
    ++count;
}

void FakePasteboard::copyImage() {
    text.reset();
    holdsImage = true;
    ++count;
}

qint64 FakePasteboard::changeCount() {
    log_ += QStringLiteral("pasteboard changeCount");
    return count;
}

void FakePasteboard::stringForType(TextCompletion completion) {
    log_ += QStringLiteral("pasteboard stringForType");
    completion(text);
}

void FakePasteboard::clearContents() {
    log_ += QStringLiteral("pasteboard clearContents");
    text.reset();
    holdsImage = false;
    ++count;
}

void FakePasteboard::setString(const QString &string) {
    log_ += QStringLiteral("pasteboard setString ") + string;
    text = string;
    ++count;
}

// Synthetic keys

std::optional<CGEventSource> FakeEventPosting::CGEventSourceCreate(CGEventSourceStateID state) {
    log_ += QStringLiteral("keys source %1").arg(static_cast<int>(state));
    return sourceAvailable ? std::optional(CGEventSource{1}) : std::nullopt;
}

std::optional<CGEvent> FakeEventPosting::CGEventCreateKeyboardEvent(const CGEventSource &,
                                                                    CGKeyCode virtualKey,
                                                                    bool keyDown) {
    log_ += QStringLiteral("keys create %1 %2").arg(virtualKey).arg(int(keyDown));
    const bool available = keyDown ? downAvailable : upAvailable;
    return available ? std::optional(CGEvent{virtualKey, keyDown, 0}) : std::nullopt;
}

void FakeEventPosting::CGEventSetFlags(CGEvent &event, CGEventFlags flags) {
    log_ += QStringLiteral("keys flags %1 %2").arg(int(event.keyDown)).arg(hex(flags));
    event.flags = flags;
}

void FakeEventPosting::CGEventPost(CGEventTapLocation tap, const CGEvent &event) {
    log_ += QStringLiteral("keys post %1 %2 %3 tap=%4")
                .arg(event.virtualKey)
                .arg(int(event.keyDown))
                .arg(hex(event.flags))
                .arg(static_cast<int>(tap));
    if (event.keyDown && event.flags == kCGEventFlagMaskCommand && onCopy)
        onCopy();
}

// Hot keys

OSStatus FakeHotKeys::RegisterEventHotKey(quint32 keyCode, quint32 modifiers,
                                          EventHotKeyID identity, EventTargetRef, quint32 options,
                                          std::optional<EventHotKeyRef> &ref) {
    log_ += QStringLiteral("hotkey register %1 %2 %3/%4 options=%5")
                .arg(keyCode)
                .arg(hex(modifiers))
                .arg(hex(identity.signature))
                .arg(identity.id)
                .arg(options);
    if (std::exchange(nextRegistrationFails, false))
        return eventHotKeyExistsErr;
    ref = EventHotKeyRef{nextHandle_++};
    registered[ref->id] = keyCode;
    return noErr;
}

OSStatus FakeHotKeys::UnregisterEventHotKey(EventHotKeyRef ref) {
    log_ += QStringLiteral("hotkey unregister %1").arg(registered[ref.id]);
    registered.erase(ref.id);
    return noErr;
}

OSStatus FakeHotKeys::InstallEventHandler(EventTargetRef, EventHandlerCallback installed,
                                          const QList<EventTypeSpec> &types, void *data,
                                          std::optional<EventHandlerRef> &ref) {
    log_ += QStringLiteral("hotkey handler %1 %2/%3")
                .arg(types.size())
                .arg(hex(types.front().eventClass))
                .arg(types.front().eventKind);
    callback = installed;
    userData = data;
    ++handlersInstalled;
    ref = EventHandlerRef{1};
    return noErr;
}

bool FakeHotKeys::press(quint32 keyCode) {
    const bool bound = std::any_of(registered.begin(), registered.end(),
                                   [&](const auto &entry) { return entry.second == keyCode; });
    if (bound)
        deliver();
    return bound;
}

OSStatus FakeHotKeys::deliver() {
    return callback(userData);
}

// Calendar

namespace {

class FakeEvent final : public EKEvent {
public:
    explicit FakeEvent(CallLog &log)
        : log_(log) {}
    SavedEvent event;

    void setCalendar(const std::optional<EKCalendar> &calendar) override {
        log_ += QStringLiteral("event calendar");
        event.calendar = calendar;
    }
    void setTitle(const QString &title) override {
        log_ += QStringLiteral("event title");
        event.title = title;
    }
    void setLocation(const QString &location) override {
        log_ += QStringLiteral("event location");
        event.location = location;
    }
    void setNotes(const QString &notes) override {
        log_ += QStringLiteral("event notes");
        event.notes = notes;
    }
    void setStartDate(std::chrono::sys_seconds start) override {
        log_ += QStringLiteral("event start");
        event.start = start;
    }
    void setEndDate(std::chrono::sys_seconds end) override {
        log_ += QStringLiteral("event end");
        event.end = end;
    }
    void setTimeZone(const TimeZone &zone) override {
        log_ += QStringLiteral("event zone");
        event.zone = zone;
    }

private:
    CallLog &log_;
};

} // namespace

void FakeEventStore::requestWriteOnlyAccessToEvents(AccessCompletion completion) {
    log_ += QStringLiteral("store request access");
    const auto answer = [this, completion] {
        if (accessError)
            return completion(false, accessError);
        if (status == EKAuthorizationStatus::notDetermined) {
            ++prompts;
            status = userAllows ? EKAuthorizationStatus::writeOnly : EKAuthorizationStatus::denied;
        }
        completion(status == EKAuthorizationStatus::writeOnly, std::nullopt);
    };
    if (holdAccess)
        held.add(answer);
    else
        answer();
}

std::unique_ptr<EKEvent> FakeEventStore::makeEvent() {
    log_ += QStringLiteral("store make event");
    return std::make_unique<FakeEvent>(log_);
}

std::optional<EKCalendar> FakeEventStore::defaultCalendarForNewEvents() {
    return calendar;
}

void FakeEventStore::save(EKEvent &event, EKSpan span) {
    log_ += QStringLiteral("store save span=%1").arg(static_cast<int>(span));
    if (saveError)
        throw *saveError;
    saved.push_back(static_cast<FakeEvent &>(event).event);
}

// Workspace and login item

bool FakeWorkspace::open(const QUrl &url) {
    const QString address = QString::fromLatin1(url.toEncoded());
    log_ += QStringLiteral("workspace open ") + address;
    if (refusesAll || refused.contains(address))
        return false;
    opened += address;
    return true;
}

void FakeLoginItem::registerItem() {
    log_ += QStringLiteral("login register");
    if (refuses)
        throw PlatformError(QStringLiteral("not allowed here"));
}

void FakeLoginItem::unregisterItem() {
    log_ += QStringLiteral("login unregister");
    if (refuses)
        throw PlatformError(QStringLiteral("not allowed here"));
}

// Defaults

std::optional<QString> FakeUserDefaults::string(const QString &key) {
    const QVariant value = values.value(key);
    return value.metaType() == QMetaType::fromType<QString>() ? std::optional(value.toString())
                                                              : std::nullopt;
}

bool FakeUserDefaults::boolean(const QString &key) {
    const QVariant value = values.value(key);
    return value.metaType() == QMetaType::fromType<bool>() && value.toBool();
}

void FakeUserDefaults::setString(const QString &key, const QString &value) {
    log_ += QStringLiteral("defaults set %1=%2").arg(key, value);
    values[key] = value;
}

void FakeUserDefaults::setBoolean(const QString &key, bool value) {
    log_ += QStringLiteral("defaults set %1=%2").arg(key).arg(int(value));
    values[key] = value;
}

// Service

void FakeURLSession::convertsTo(const QByteArray &details, const QByteArray &userMessage) {
    conversionBody = R"({"success":true)";
    if (!details.isEmpty())
        conversionBody += R"(,"details":)" + details;
    if (!userMessage.isEmpty())
        conversionBody += R"(,"user_message":")" + userMessage + '"';
    conversionBody += '}';
}

URLResult FakeURLSession::http(int status, const QByteArray &body) {
    return {{true, status}, body, std::nullopt};
}

URLResult FakeURLSession::failure(const QString &description) {
    return {{}, {}, PlatformError(description)};
}

int FakeURLSession::requestsTo(const QString &endpoint) const {
    return static_cast<int>(
        std::count_if(requests.begin(), requests.end(), [&](const URLRequest &request) {
            return request.url.path().endsWith(QLatin1Char('/') + endpoint);
        }));
}

URLResult FakeURLSession::answer(const URLRequest &request) const {
    if (reply)
        return reply(request);
    const bool install = request.url.path().endsWith(QLatin1String("/on-install"));
    return http(200, install ? installBody : conversionBody);
}

void FakeURLSession::dataTask(const URLRequest &request, Completion completion) {
    log_ += QStringLiteral("http ") + request.url.path();
    requests.push_back(request);
    const URLResult result = answer(request);
    if (hold)
        held.add([completion, result] { completion(result); });
    else
        completion(result);
}

QVariant FakeBundle::objectForInfoDictionaryKey(const QString &key) {
    return key == QLatin1String("CFBundleShortVersionString") ? version : QVariant();
}

// Notifications, pointer, time

void FakeNotificationCenter::addObserver(const QString &name, Observer observer) {
    log_ += QStringLiteral("observe ") + name;
    observers_.emplace_back(name, std::move(observer));
}

void FakeNotificationCenter::post(const QString &name, const std::any &object) {
    log_ += QStringLiteral("post ") + name;
    posted.emplace_back(name, object);
    for (const auto &[observed, observer] : observers_) {
        if (observed == name)
            observer(object);
    }
}

QPointF FakeScreens::mouseLocation() {
    log_ += QStringLiteral("mouse location");
    return pointer;
}

void FakeClock::sleep(std::chrono::milliseconds duration, SleepCompletion completion) {
    log_ += QStringLiteral("sleep %1").arg(duration.count());
    ++sleeps_;
    if (sleeps_ == cancelledSleep)
        completion(true);
    else if (sleepsPassAtOnce)
        completion(false);
    else
        sleepers_.push_back({monotonic_ + duration, std::move(completion)});
}

void FakeClock::advance(std::chrono::milliseconds duration) {
    monotonic_ += duration;
    std::vector<Sleeper> due;
    for (auto it = sleepers_.begin(); it != sleepers_.end();) {
        if (it->until <= monotonic_) {
            due.push_back(std::move(*it));
            it = sleepers_.erase(it);
        } else {
            ++it;
        }
    }
    for (const Sleeper &sleeper : due)
        sleeper.completion(false);
}

QStringList FakeDesktop::logged(const QStringList &prefixes) const {
    QStringList lines;
    for (const QString &line : log) {
        if (std::any_of(prefixes.begin(), prefixes.end(),
                        [&](const QString &prefix) { return line.startsWith(prefix); }))
            lines += line;
    }
    return lines;
}

} // namespace pindle::fake
