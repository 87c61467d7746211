#pragma once

#include <QString>
#include <functional>
#include <optional>

namespace pindle {

/// The general clipboard (NSPasteboard.general). Called on the main thread.
class Pasteboard {
public:
    using TextCompletion = std::function<void(std::optional<QString>)>;

    virtual ~Pasteboard() = default;

    /// Number of changes of ownership or content so far.
    virtual qint64 changeCount() = 0;

    /// The plain text (NSPasteboardTypeString), absent when there is none, when its owner stays
    /// silent for 250 ms, or when it is larger than the program is prepared to read.
    virtual void stringForType(TextCompletion completion) = 0;

    /// Empties the clipboard.
    virtual void clearContents() = 0;

    /// Puts plain text on the clipboard, to be served for as long as the process lives.
    virtual void setString(const QString &text) = 0;
};

} // namespace pindle
