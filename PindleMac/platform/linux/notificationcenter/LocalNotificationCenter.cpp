#include "PindleMac/platform/linux/notificationcenter/LocalNotificationCenter.h"

namespace pindle {

void LocalNotificationCenter::addObserver(const QString &name, Observer observer) {
    observers_[name].append(std::move(observer));
}

void LocalNotificationCenter::post(const QString &name, const std::any &object) {
    // A copy (shared, not deep): an observer may add observers.
    const QList<Observer> observers = observers_.value(name);
    for (const Observer &observer : observers)
        observer(object);
}

} // namespace pindle
