#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <variant>

namespace pindle {

/// Result code of an accessibility call; only `kAXErrorSuccess` counts as success.
enum class AXError : int {
    kAXErrorSuccess = 0,
    kAXErrorFailure = -25200,
    kAXErrorInvalidUIElement = -25202,
    kAXErrorCannotComplete = -25204, ///< the deadline passed or the application did not answer
    kAXErrorAttributeUnsupported = -25205,
    kAXErrorNoValue = -25212,
};

/// Handle of one accessible element; only the implementation that gave it out can read it.
struct AXUIElement {
    quint64 id = 0;
    bool operator==(const AXUIElement &) const = default;
};

/// A range of a text, counted in UTF-16 code units.
struct CFRange {
    qint64 location = 0;
    qint64 length = 0;
    bool operator==(const CFRange &) const = default;
};

/// Text with attributes, of which the logic needs only the plain characters.
struct AttributedString {
    QString string;
    bool operator==(const AttributedString &) const = default;
};

enum class AXValueType { kAXValueTypeIllegal = 0, kAXValueTypeCFRange = 4 };

/// A boxed value; `range` is absent where AXValueGetValue would return false.
struct AXValue {
    AXValueType type = AXValueType::kAXValueTypeIllegal;
    std::optional<CFRange> range;
    bool operator==(const AXValue &) const = default;
};

/// A value of a kind the program does not know.
struct OtherObject {
    bool operator==(const OtherObject &) const = default;
};

/// A value read from an element; the alternative held is what CFGetTypeID tells.
using AXObject = std::variant<AXUIElement, QString, AttributedString, AXValue, OtherObject>;

struct AXAttributeResult {
    AXError error = AXError::kAXErrorFailure;
    std::optional<AXObject> value;
};

/// Reading of other applications' user interface. Called on the main thread, which never waits:
/// results come back there through completions, at the latest when the deadline of
/// 250 ms for the whole of one capture has passed.
class Accessibility {
public:
    using Completion = std::function<void(AXAttributeResult)>;

    virtual ~Accessibility() = default;

    /// The system-wide element, root of every read; never fails.
    virtual AXUIElement AXUIElementCreateSystemWide() = 0;

    /// Reads one attribute ("AXFocusedUIElement" of the system-wide element; "AXSelectedText",
    /// "AXSelectedTextRange", "AXValue" of others). Ranges count UTF-16 code units.
    /// A password field has no selected text and no value.
    virtual void AXUIElementCopyAttributeValue(AXUIElement element, const QString &attribute,
                                               Completion completion) = 0;

    /// Whether this process may read other applications; never prompts, never blocks.
    virtual bool AXIsProcessTrusted() = 0;

    /// As above; with `prompt` (kAXTrustedCheckOptionPrompt) the system may ask the user for trust.
    virtual bool AXIsProcessTrustedWithOptions(bool prompt) = 0;

    /// `changed` is called on the main thread whenever AXIsProcessTrusted() begins to answer
    /// otherwise, for as long as the program runs.
    virtual void observeTrust(std::function<void()> changed) = 0;
};

} // namespace pindle
