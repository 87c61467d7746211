#include "PindleMac/AppServices.h"
#include "PindleMac/Async.h"
#include "PindleMac/Text.h"
#include "PindleMac/platform/EventPosting.h"
#include "PindleMac/platform/Pasteboard.h"

#include <algorithm>

namespace pindle {

namespace {

/// Time for the user's keys to come up before the copy.
constexpr std::chrono::milliseconds waitBeforeCopy{140};
/// Time for the application in front to put its selection on the clipboard.
constexpr std::chrono::milliseconds waitAfterCopy{280};

/// The trimmed text, or nothing when there is none or nothing is left of it.
std::optional<QString> usableText(const std::optional<QString> &text) {
    const QString trimmed = trimmingWhitespaceAndNewlines(text.value_or(QString()));
    return trimmed.isEmpty() ? std::nullopt : std::optional(trimmed);
}

/// The part of `text` that `range` means, as far as it lies inside; UTF-16 code units.
QString clampedSubstring(const QString &text, CFRange range) {
    const qint64 size = text.size();
    const qint64 start = std::max<qint64>(0, std::min(range.location, size));
    const qint64 available = size - start;
    const qint64 length = std::max<qint64>(0, std::min(range.length, available));
    return text.mid(start, length);
}

} // namespace

QString AppServices::CopyOutcome::value() const {
    if (error)
        std::rethrow_exception(error);
    return text;
}

QCoro::Task<QString> AppServices::captureSelectedText() {
    if (const auto text = co_await readSelectedTextViaAccessibility())
        co_return *text;
    co_return co_await copySelectionOnce();
}

// A copy changes the clipboard and puts it back. Two of them at once would take each other's
// changes for copied text, down to the user's old clipboard; so a capture that finds one under way
// shares its outcome.
QCoro::Task<QString> AppServices::copySelectionOnce() {
    if (!copyUnderWay_) {
        copyUnderWay_ = std::make_shared<CopyUnderWay>();
        CopyOutcome outcome;
        try {
            outcome.text = co_await copySelectionThroughClipboard();
        } catch (...) {
            outcome.error = std::current_exception();
        }
        const auto ended = std::exchange(copyUnderWay_, nullptr);
        for (const auto &waiting : ended->waiting)
            waiting(outcome);
        co_return outcome.value();
    }
    const auto outcome = co_await awaitCompletion<CopyOutcome>(
        [this](auto completion) { copyUnderWay_->waiting.push_back(std::move(completion)); });
    co_return outcome.value();
}

QCoro::Task<std::optional<AXObject>> AppServices::copyAttribute(QString attribute,
                                                                AXUIElement element) {
    const auto result =
        co_await awaitCompletion<AXAttributeResult>([&](Accessibility::Completion completion) {
            platform_.accessibility.AXUIElementCopyAttributeValue(element, attribute,
                                                                  std::move(completion));
        });
    if (result.error != AXError::kAXErrorSuccess)
        co_return std::nullopt;
    co_return result.value;
}

QCoro::Task<std::optional<QString>> AppServices::copyStringAttribute(QString attribute,
                                                                     AXUIElement element) {
    const auto value = co_await copyAttribute(attribute, element);
    if (!value)
        co_return std::nullopt;
    if (const auto *text = std::get_if<QString>(&*value))
        co_return *text;
    if (const auto *attributed = std::get_if<AttributedString>(&*value))
        co_return attributed->string;
    co_return std::nullopt;
}

QCoro::Task<std::optional<QString>> AppServices::readSelectedTextViaAccessibility() {
    const AXUIElement systemWide = platform_.accessibility.AXUIElementCreateSystemWide();
    const auto focused = co_await copyAttribute(QStringLiteral("AXFocusedUIElement"), systemWide);
    const auto *element = focused ? std::get_if<AXUIElement>(&*focused) : nullptr;
    if (!element)
        co_return std::nullopt;
    const auto selected = co_await copyStringAttribute(QStringLiteral("AXSelectedText"), *element);
    if (const auto text = usableText(selected))
        co_return text;
    co_return co_await readSelectedRange(*element);
}

QCoro::Task<std::optional<QString>> AppServices::readSelectedRange(AXUIElement element) {
    const auto object = co_await copyAttribute(QStringLiteral("AXSelectedTextRange"), element);
    const auto *value = object ? std::get_if<AXValue>(&*object) : nullptr;
    if (!value || value->type != AXValueType::kAXValueTypeCFRange || !value->range)
        co_return std::nullopt;
    const CFRange range = *value->range;
    if (range.length <= 0)
        co_return std::nullopt;
    const auto whole = co_await copyStringAttribute(QStringLiteral("AXValue"), element);
    if (!whole)
        co_return std::nullopt;
    co_return usableText(clampedSubstring(*whole, range));
}

QCoro::Task<QString> AppServices::copySelectionThroughClipboard() {
    Pasteboard &pasteboard = platform_.pasteboard;
    const auto previousText = co_await clipboardText();
    const qint64 previousCount = pasteboard.changeCount();

    co_await wait(waitBeforeCopy);
    postCopyKeystroke();
    co_await wait(waitAfterCopy);

    if (pasteboard.changeCount() == previousCount)
        throw AppError(AppError::Case::missingSelection);
    const auto copied = usableText(co_await clipboardText());
    if (!copied)
        throw AppError(AppError::Case::missingSelection);
    restoreClipboard(previousText);
    co_return *copied;
}

void AppServices::postCopyKeystroke() {
    EventPosting &posting = platform_.eventPosting;
    const auto source =
        posting.CGEventSourceCreate(CGEventSourceStateID::kCGEventSourceStateHIDSystemState);
    if (!source)
        throw AppError(AppError::Case::clipboardAccess);
    auto down = posting.CGEventCreateKeyboardEvent(*source, kVK_ANSI_C, true);
    auto up = posting.CGEventCreateKeyboardEvent(*source, kVK_ANSI_C, false);
    if (down)
        posting.CGEventSetFlags(*down, kCGEventFlagMaskCommand);
    if (up)
        posting.CGEventSetFlags(*up, kCGEventFlagMaskCommand);
    if (down)
        posting.CGEventPost(CGEventTapLocation::kCGHIDEventTap, *down);
    if (up)
        posting.CGEventPost(CGEventTapLocation::kCGHIDEventTap, *up);
}

QCoro::Task<void> AppServices::wait(std::chrono::milliseconds duration) {
    const bool cancelled = co_await awaitCompletion<bool>([&](Clock::SleepCompletion completion) {
        platform_.clock.sleep(duration, std::move(completion));
    });
    if (cancelled)
        throw CancellationError();
}

QCoro::Task<std::optional<QString>> AppServices::clipboardText() {
    co_return co_await awaitCompletion<std::optional<QString>>(
        [this](Pasteboard::TextCompletion completion) {
            platform_.pasteboard.stringForType(std::move(completion));
        });
}

void AppServices::restoreClipboard(const std::optional<QString> &text) {
    platform_.pasteboard.clearContents();
    if (text && !text->isEmpty())
        platform_.pasteboard.setString(*text);
}

} // namespace pindle
