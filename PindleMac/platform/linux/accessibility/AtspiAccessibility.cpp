#include "PindleMac/platform/linux/accessibility/AtspiAccessibility.h"

#include "PindleMac/platform/linux/accessibility/ActiveApplication.h"
#include "PindleMac/platform/linux/accessibility/SelectionChoice.h"
#include "PindleMac/platform/linux/accessibility/WebEngineProcess.h"
#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QPointer>
#include <QTimer>
#include <algorithm>
#include <unistd.h>

namespace pindle {

namespace {

constexpr AXUIElement kSystemWide{1};
/// Presses in quick succession run side by side; more than this many do not.
constexpr std::size_t kRememberedCaptures = 8;
/// PRIMARY is not worth asking for when less than this is left.
constexpr std::chrono::milliseconds kLeastForPrimary{5};
/// Kept back from the time PRIMARY may take, for what was read before to be delivered.
constexpr std::chrono::milliseconds kReserve{10};

std::chrono::milliseconds timeLeft(Deadline deadline) {
    const auto left = std::chrono::duration_cast<std::chrono::milliseconds>(
        deadline - std::chrono::steady_clock::now());
    return std::max(left, std::chrono::milliseconds::zero());
}

AXAttributeResult failure(AXError error) {
    return {error, std::nullopt};
}

AXAttributeResult success(AXObject value) {
    return {AXError::kAXErrorSuccess, std::move(value)};
}

/// Runs on the worker; tries again once when the bus turns out to have been replaced.
FocusReading readFocus(AccessibilityBuses &buses, pid_t process, Deadline deadline) {
    for (int attempt = 0; attempt < 2; ++attempt) {
        try {
            BusConnection *bus = buses.accessibilityBus(deadline);
            if (!bus)
                return {};
            const auto focus = FocusFinder(*bus, deadline).focusOf(process);
            return focus ? TextReader(*bus, deadline).read(*focus) : FocusReading{};
        } catch (const BusSilent &) {
            FocusReading unanswered;
            unanswered.kind = FocusReading::Kind::unanswered;
            return unanswered;
        } catch (const BusLost &) {
        }
    }
    return {};
}

QTimer *timerAt(QObject *parent, Deadline deadline, std::function<void()> function) {
    auto *timer = new QTimer(parent);
    timer->setTimerType(Qt::PreciseTimer);
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, parent, std::move(function));
    timer->start(timeLeft(deadline));
    return timer;
}

} // namespace

struct AtspiAccessibility::Capture {
    AXUIElement element;
    ActiveApplication application;
    Deadline deadline;
    FocusReading reading;
    std::optional<QString> selectedText; ///< absent where the element offers none
    Completion completion;               ///< empty once called
    QTimer *timer = nullptr;
};

AtspiAccessibility::AtspiAccessibility(XConnection &connection, Ask ask)
    : connection_(connection)
    , ask_(std::move(ask))
    , primary_(connection)
    , nextElement_(kSystemWide.id + 1)
    , worker_(std::make_unique<AccessibilityWorker>(
          [this](bool isOn) { onMainThread([this, isOn] { trustRead(isOn); }); })) {}

/// The worker ends first: what it still queues for this object is dropped with the object.
AtspiAccessibility::~AtspiAccessibility() {
    worker_.reset();
}

void AtspiAccessibility::prepare() {
    if (std::exchange(isPrepared_, true))
        return;
    worker_->post([](AccessibilityBuses &buses) { buses.refreshStatus(); });
}

AXUIElement AtspiAccessibility::AXUIElementCreateSystemWide() {
    return kSystemWide;
}

void AtspiAccessibility::AXUIElementCopyAttributeValue(AXUIElement element,
                                                       const QString &attribute,
                                                       Completion completion) {
    if (element == kSystemWide) {
        if (attribute == QLatin1String("AXFocusedUIElement"))
            copyFocusedElement(std::move(completion));
        else
            completeLater(completion, failure(AXError::kAXErrorAttributeUnsupported));
    } else if (const CapturePtr capture = captureOf(element)) {
        copyFromElement(*capture, attribute, std::move(completion));
    } else {
        completeLater(completion, failure(AXError::kAXErrorInvalidUIElement));
    }
}

AtspiAccessibility::CapturePtr AtspiAccessibility::captureOf(AXUIElement element) const {
    const auto found = std::find_if(recent_.begin(), recent_.end(), [&](const CapturePtr &capture) {
        return capture->element == element;
    });
    return found == recent_.end() ? nullptr : *found;
}

void AtspiAccessibility::copyFocusedElement(Completion completion) {
    const auto capture = std::make_shared<Capture>();
    capture->element = {nextElement_++};
    capture->deadline = std::chrono::steady_clock::now() + kCaptureDeadline;
    capture->application = activeApplication(connection_);
    recent_.push_back(capture);
    if (recent_.size() > kRememberedCaptures)
        recent_.pop_front();
    // The main thread serves this program's own accessibility; nothing of it is to be captured.
    const ActiveApplication &application = capture->application;
    if (application.window == XCB_NONE || application.process == getpid())
        return completeLater(completion, failure(AXError::kAXErrorNoValue));

    capture->completion = std::move(completion);
    capture->timer = timerAt(this, capture->deadline,
                             [this, capture] { settle(capture, AXError::kAXErrorCannotComplete); });
    worker_->post([this, capture, process = application.process,
                   deadline = capture->deadline](AccessibilityBuses &buses) {
        onMainThread([this, capture, reading = readFocus(buses, process, deadline)]() mutable {
            focusRead(capture, std::move(reading));
        });
    });
}

void AtspiAccessibility::focusRead(const CapturePtr &capture, FocusReading reading) {
    using Kind = FocusReading::Kind;
    capture->reading = std::move(reading);
    const Kind kind = capture->reading.kind;
    if (kind == Kind::unanswered)
        return settle(capture, AXError::kAXErrorCannotComplete);
    if (kind == Kind::text)
        capture->selectedText = selectionchoice::selectedText(capture->reading, std::nullopt);
    // Whether the focus is in a password field is not known of an element without text.
    const bool wantsPrimary = kind == Kind::noText
                                  ? !exportsPasswords(capture->application.process)
                                  : selectionchoice::wantsPrimary(capture->reading);
    if (capture->application.ownsPrimary && wantsPrimary &&
        timeLeft(capture->deadline) >= kReserve + kLeastForPrimary)
        readPrimary(capture);
    else
        settle(capture, AXError::kAXErrorSuccess);
}

void AtspiAccessibility::readPrimary(const CapturePtr &capture) {
    primary_.read(XCB_ATOM_PRIMARY, timeLeft(capture->deadline) - kReserve,
                  [this, capture](std::optional<QString> primary) {
                      if (capture->reading.kind == FocusReading::Kind::noText)
                          capture->selectedText = std::move(primary);
                      else
                          capture->selectedText =
                              selectionchoice::selectedText(capture->reading, primary);
                      settle(capture, AXError::kAXErrorSuccess);
                  });
}

void AtspiAccessibility::settle(const CapturePtr &capture, AXError error) {
    if (!capture->completion)
        return;
    capture->timer->stop();
    capture->timer->deleteLater();
    const Completion completion = std::exchange(capture->completion, nullptr);
    completion(error == AXError::kAXErrorSuccess ? success(capture->element) : failure(error));
}

void AtspiAccessibility::copyFromElement(const Capture &capture, const QString &attribute,
                                         Completion completion) {
    const bool isRange = attribute == QLatin1String("AXSelectedTextRange");
    const bool isValue = attribute == QLatin1String("AXValue");
    if (attribute == QLatin1String("AXSelectedText")) {
        completeLater(completion, capture.selectedText ? success(*capture.selectedText)
                                                       : failure(AXError::kAXErrorNoValue));
    } else if (!(isRange || isValue) || !selectionchoice::offersRange(capture.reading)) {
        completeLater(completion, failure(AXError::kAXErrorAttributeUnsupported));
    } else if (isRange) {
        copyLater(capture, std::move(completion), [](TextReader &reader, const FocusReading &from) {
            const auto range = reader.range(from);
            return range ? success(AXValue{AXValueType::kAXValueTypeCFRange, range})
                         : failure(AXError::kAXErrorNoValue);
        });
    } else {
        copyLater(capture, std::move(completion), [](TextReader &reader, const FocusReading &from) {
            auto value = reader.value(from);
            return value ? success(std::move(*value)) : failure(AXError::kAXErrorNoValue);
        });
    }
}

/// Reads on the worker within the deadline of the capture the element comes from.
void AtspiAccessibility::copyLater(
    const Capture &capture, Completion completion,
    std::function<AXAttributeResult(TextReader &, const FocusReading &)> read) {
    struct Once {
        Completion completion;
        QTimer *timer = nullptr;
        void operator()(AXAttributeResult result) {
            if (!completion)
                return;
            timer->stop();
            timer->deleteLater();
            std::exchange(completion, nullptr)(std::move(result));
        }
    };
    const auto once = std::make_shared<Once>();
    once->completion = std::move(completion);
    once->timer = timerAt(this, capture.deadline,
                          [once] { (*once)(failure(AXError::kAXErrorCannotComplete)); });
    worker_->post([this, once, read = std::move(read), reading = capture.reading,
                   deadline = capture.deadline](AccessibilityBuses &buses) {
        AXAttributeResult result = failure(AXError::kAXErrorCannotComplete);
        try {
            if (BusConnection *bus = buses.accessibilityBus(deadline)) {
                TextReader reader(*bus, deadline);
                result = read(reader, reading);
            }
        } catch (const std::exception &) {
            // Silent or gone: it cannot complete.
        }
        onMainThread([once, result = std::move(result)]() mutable { (*once)(std::move(result)); });
    });
}

/// Results never arrive inside the call that asked for them.
void AtspiAccessibility::completeLater(const Completion &completion, AXAttributeResult result) {
    onMainThread([completion, result = std::move(result)] { completion(result); });
}

void AtspiAccessibility::onMainThread(std::function<void()> function) {
    QMetaObject::invokeMethod(this, std::move(function), Qt::QueuedConnection);
}

bool AtspiAccessibility::AXIsProcessTrusted() {
    prepare();
    return isTrusted_;
}

bool AtspiAccessibility::AXIsProcessTrustedWithOptions(bool prompt) {
    if (prompt && !isTrusted_ && !std::exchange(isAsking_, true)) {
        // What is known may be out of date by a moment; the user is asked on fresh knowledge only.
        worker_->post([this](AccessibilityBuses &buses) {
            const bool isOn = buses.refreshStatus();
            onMainThread([this, isOn] {
                if (isOn)
                    isAsking_ = false;
                else
                    offerToSwitchOn();
            });
        });
    }
    return AXIsProcessTrusted();
}

void AtspiAccessibility::observeTrust(std::function<void()> changed) {
    trustObservers_.push_back(std::move(changed));
}

void AtspiAccessibility::trustRead(bool isOn) {
    if (std::exchange(isTrusted_, isOn) == isOn)
        return;
    for (const auto &changed : trustObservers_)
        changed();
}

void AtspiAccessibility::setSwitchedOn(bool on) {
    worker_->post([on](AccessibilityBuses &buses) { buses.setSwitchedOn(on); });
}

void AtspiAccessibility::offerToSwitchOn() {
    ask_([self = QPointer(this)](bool yes) {
        if (!self)
            return;
        self->isAsking_ = false;
        if (yes)
            self->setSwitchedOn(true);
    });
}

} // namespace pindle
