#pragma once

#include "PindleMac/platform/NotificationCenter.h"

#include <QHash>
#include <QList>

namespace pindle {

/// Notifications inside the process. An observer added while one is delivered sees the next.
class LocalNotificationCenter final : public NotificationCenter {
public:
    void addObserver(const QString &name, Observer observer) override;
    void post(const QString &name, const std::any &object) override;

private:
    QHash<QString, QList<Observer>> observers_;
};

} // namespace pindle
