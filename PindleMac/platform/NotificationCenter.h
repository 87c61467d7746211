#pragma once

#include <QString>
#include <any>
#include <functional>

namespace pindle {

/// The default notification center: delivery is synchronous, on the main thread, in the order the
/// observers were added.
class NotificationCenter {
public:
    /// `object` is empty when the notification was posted without one.
    using Observer = std::function<void(const std::any &object)>;

    virtual ~NotificationCenter() = default;

    virtual void addObserver(const QString &name, Observer observer) = 0;
    virtual void post(const QString &name, const std::any &object) = 0;
};

} // namespace pindle
