#pragma once

#include "PindleMac/platform/Accessibility.h"
#include "PindleMac/platform/linux/accessibility/FocusFinder.h"

#include <QString>

namespace pindle {

/// Longest text read, in the toolkit's units (at most 1 MiB of UTF-16).
inline constexpr int32_t kTextLimit = 512 * 1024;

/// What the focused object of the application in front had to say.
struct FocusReading {
    enum class Kind {
        noText,        ///< not on the bus, nothing focused, or without a text interface
        passwordField, ///< nothing of it is ever read
        text,
        unanswered, ///< the application did not answer in time
    };
    Kind kind = Kind::noText;
    atspi::Ref element;
    uint32_t role = 0;
    QString toolkit;
    QString selectedText;
    int32_t start = 0; ///< of the first selection, in the toolkit's units; the caret without one
    int32_t end = 0;
    bool hasObjects = false; ///< the selected text was put together from objects inside the element
};

/// Reads texts through org.a11y.atspi.Text. Worker thread; throws BusSilent and BusLost.
class TextReader {
public:
    TextReader(BusConnection &bus, Deadline deadline)
        : bus_(bus)
        , deadline_(deadline) {}

    /// Selection of a focused object; a password field is not asked.
    FocusReading read(const Focus &focus);

    /// The selected range in UTF-16 units of `value()`; absent where it cannot be told.
    std::optional<CFRange> range(const FocusReading &reading);

    /// The whole text, cut at the limit.
    std::optional<QString> value(const FocusReading &reading);

private:
    using Span = std::pair<int32_t, int32_t>;

    BusMessage textMethod(const atspi::Ref &element, const char *member);
    std::vector<Span> selections(const atspi::Ref &element, int32_t count);
    QString rawText(const atspi::Ref &element, Span span);
    QString expanded(const atspi::Ref &element, Span span, int depth);
    QString textOfObject(const atspi::Ref &element, qint64 offset, int depth);
    std::optional<atspi::Ref> objectAt(const atspi::Ref &element, qint64 offset);

    BusConnection &bus_;
    Deadline deadline_;
    std::size_t objects_ = 0;
};

} // namespace pindle
