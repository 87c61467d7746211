#pragma once

#include "PindleMac/platform/Accessibility.h"
#include "PindleMac/platform/linux/accessibility/AccessibilityWorker.h"
#include "PindleMac/platform/linux/accessibility/TextReader.h"
#include "PindleMac/platform/linux/pasteboard/SelectionReader.h"

#include <QObject>
#include <deque>
#include <vector>

namespace pindle {

class XConnection;

/// One capture, from the request for the focused element on, is over by then.
inline constexpr std::chrono::milliseconds kCaptureDeadline{250};

/// Reads the application in front through AT-SPI 2; where that application offers no text, its
/// element is its window, whose selected text is the PRIMARY selection if that is its own. The
/// request for the focused element reads the selected text along; what is asked after that is
/// answered from there as far as it goes. This program's own windows are no elements.
class AtspiAccessibility : public QObject, public Accessibility {
public:
    /// Asks the user to switch accessibility on and passes the answer on, on the main thread.
    using Ask = std::function<void(std::function<void(bool yes)>)>;

    AtspiAccessibility(XConnection &connection, Ask ask);
    ~AtspiAccessibility() override;

    /// Connects in the background, so that the first press is as quick as the others, and keeps the
    /// answer to AXIsProcessTrusted up to date from then on.
    void prepare();

    AXUIElement AXUIElementCreateSystemWide() override;
    void AXUIElementCopyAttributeValue(AXUIElement element, const QString &attribute,
                                       Completion completion) override;
    /// False until the state is known, which the first call sets going.
    bool AXIsProcessTrusted() override;
    bool AXIsProcessTrustedWithOptions(bool prompt) override;
    void observeTrust(std::function<void()> changed) override;

    /// Switches the desktop's accessibility bus on or off, for this session and all later ones;
    /// what came of it is observed. Programs that read this one's windows lose sight of them with
    /// it.
    void setSwitchedOn(bool on);

private:
    struct Capture;
    using CapturePtr = std::shared_ptr<Capture>;

    CapturePtr captureOf(AXUIElement element) const;
    void copyFocusedElement(Completion completion);
    void focusRead(const CapturePtr &capture, FocusReading reading);
    void readPrimary(const CapturePtr &capture);
    void settle(const CapturePtr &capture, AXError error);
    void copyFromElement(const Capture &capture, const QString &attribute, Completion completion);
    void copyLater(const Capture &capture, Completion completion,
                   std::function<AXAttributeResult(TextReader &, const FocusReading &)> read);
    void completeLater(const Completion &completion, AXAttributeResult result);
    void onMainThread(std::function<void()> function);
    void offerToSwitchOn();
    void trustRead(bool isOn);

    XConnection &connection_;
    Ask ask_;
    SelectionReader primary_;
    std::deque<CapturePtr> recent_; ///< whose elements can be read, the oldest first
    quint64 nextElement_;
    bool isPrepared_ = false;
    bool isTrusted_ = false;
    bool isAsking_ = false;
    std::vector<std::function<void()>> trustObservers_;
    std::unique_ptr<AccessibilityWorker> worker_;
};

} // namespace pindle
