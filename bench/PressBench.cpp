#include "bench/PressBench.h"

#include "PindleMac/AppViewModel.h"
#include "PindleMac/FloatingPanel.h"
#include "PindleMac/platform/HotKeys.h"
#include "PindleMac/platform/NotificationCenter.h"
#include "PindleMac/platform/Platform.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRandomGenerator>
#include <QTimer>
#include <thread>

namespace pindle::bench {

namespace {

using namespace std::chrono_literals;

/// How long a finger stays on the key.
constexpr std::chrono::milliseconds held{50};
/// From a ready draft to the closing of the panel: the keys are up by then.
constexpr std::chrono::milliseconds look{120};
/// From there to the next press; the jitter keeps presses from falling into step with anything.
constexpr std::chrono::milliseconds pause{150};
constexpr int pauseJitterMs = 50;
constexpr std::chrono::milliseconds strokeGap{20};
constexpr std::chrono::milliseconds strokesAfter{500};
/// A press that has not become a draft by then never will.
constexpr std::chrono::milliseconds pressDeadline{5000};

template<class Widget> Widget *widgetWhere(const std::function<bool(const Widget &)> &wanted) {
    for (QWidget *widget : QApplication::allWidgets()) {
        auto *typed = qobject_cast<Widget *>(widget);
        if (typed && wanted(*typed))
            return typed;
    }
    return nullptr;
}

} // namespace

PressBench::PressBench(PressPlan plan)
    : plan_(std::move(plan)) {
    hands_.moveToThread(&thread_);
    thread_.start();
    QMetaObject::invokeMethod(&hands_, [this] { keys_ = std::make_unique<KeyPresses>(); });
    panel_ = widgetWhere<CursorPopoverPanel>([](const auto &) { return true; });
    title_ = widgetWhere<QLineEdit>(
        [](const QLineEdit &field) { return field.accessibleName() == QLatin1String("Title"); });
    if (!panel_ || !panel_->windowHandle() || !title_) {
        fail(QStringLiteral("the program has no panel made ready for the first press"));
        return;
    }
    watch();
    press();
}

PressBench::~PressBench() {
    thread_.quit();
    thread_.wait();
}

void PressBench::watch() {
    HotKeys &hotKeys = Platform::shared().hotKeys;
    std::optional<EventHandlerRef> handler;
    hotKeys.InstallEventHandler(
        hotKeys.GetApplicationEventTarget(),
        [](void *self) -> OSStatus {
            static_cast<PressBench *>(self)->stamps_.handler = now();
            return noErr;
        },
        {{kEventClassKeyboard, kEventHotKeyPressed}}, this, handler);
    connect(&AppViewModel::shared(), &AppViewModel::objectWillChange, this,
            [this](AppViewModel::Property property) {
                if (property == AppViewModel::Property::phase)
                    stamps_.hasBegun = true;
            });
    flushWatch_.emplace(*panel_, [this] { flushed(); });
}

void PressBench::press() {
    stamps_ = {};
    running_ = true;
    QMetaObject::invokeMethod(&hands_, [this] {
        pressed_ = keys_->pressShortcut('e');
        std::this_thread::sleep_for(held);
        keys_->releaseShortcut();
    });
    QTimer::singleShot(pressDeadline, this, [this, number = press_] {
        if (running_ && number == press_)
            fail(QStringLiteral("no draft came"));
    });
}

void PressBench::flushed() {
    const Instant at = now();
    if (!running_ || !stamps_.handler)
        return;
    if (!stamps_.painted)
        stamps_.painted = at;
    // Until its run begins, a press still shows the outcome of the one before.
    if (!stamps_.hasBegun)
        return;
    if (AppViewModel::shared().phase() == ParserPhase::failed)
        return fail(AppViewModel::shared().errorMessage().value_or(QString()));
    if (!showsDraft())
        return;
    stamps_.ready = at;
    running_ = false;
    QTimer::singleShot(look, this, [this] { settled(); });
}

bool PressBench::showsDraft() const {
    const AppViewModel &viewModel = AppViewModel::shared();
    return viewModel.phase() == ParserPhase::ready && !viewModel.isLoading() &&
           title_->isVisible() && title_->text() == plan_.expectedTitle &&
           viewModel.eventDetails().title == plan_.expectedTitle;
}

void PressBench::settled() {
    const Instant pressed = pressed_;
    samples_.add("handler", pressed, stamps_.handler);
    samples_.add("painted", pressed, stamps_.painted);
    samples_.add("ready", pressed, stamps_.ready);
    if (++press_ == plan_.presses)
        return beginStrokes();
    Platform::shared().notificationCenter.post(closePindlePopover, {});
    const auto jitter =
        std::chrono::milliseconds(QRandomGenerator::global()->bounded(pauseJitterMs));
    QTimer::singleShot(pause + jitter, this, [this] { press(); });
}

void PressBench::beginStrokes() {
    panel_->activateWindow();
    title_->setFocus();
    title_->end(false);
    QTimer::singleShot(strokesAfter, this, [this] { stroke(); });
}

void PressBench::stroke() {
    if (stroke_ == plan_.strokes)
        return finish();
    if (!title_->hasFocus())
        return fail(QStringLiteral("the title lost the keyboard"));
    // A letter, and away again.
    const bool letter = stroke_++ % 2 == 0;
    QKeyEvent key(QEvent::KeyPress, letter ? Qt::Key_X : Qt::Key_Backspace, Qt::NoModifier,
                  letter ? QStringLiteral("x") : QString());
    const auto before = AppViewModel::shared().calendarLinks();
    const Instant from = now();
    QCoreApplication::sendEvent(title_, &key);
    samples_.add("stroke", from, now());
    if (AppViewModel::shared().calendarLinks() == before)
        return fail(QStringLiteral("a key stroke left the links as they were"));
    QTimer::singleShot(strokeGap, this, [this] { stroke(); });
}

void PressBench::finish() {
    if (!samples_.write(plan_.output))
        return fail(QStringLiteral("the samples could not be written"));
    QCoreApplication::exit(EXIT_SUCCESS);
}

void PressBench::fail(const QString &why) {
    running_ = false;
    qCritical("press-bench: press %d, key %d: %s", press_ + 1, stroke_, qPrintable(why));
    QCoreApplication::exit(EXIT_FAILURE);
}

} // namespace pindle::bench
