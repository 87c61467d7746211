#pragma once

#include "PindleMac/platform/linux/files/JsonFile.h"

#include <optional>

namespace pindle {

/// What the user has answered to the platform's access questions, in a file that only they can
/// read. Main thread.
class AccessDecisions {
public:
    enum class Decision { denied, writeOnly };

    /// `path` is the file; by default $XDG_CONFIG_HOME/pindle/permissions.json. Nothing is read or
    /// made before the first use.
    explicit AccessDecisions(const QString &path = defaultPath())
        : file_(path) {}

    static QString defaultPath();

    /// The answer kept for the calendar, read afresh; absent when none was given. A damaged file is
    /// kept aside and counts as no answer.
    std::optional<Decision> calendar();
    /// Keeps the answer. Where it cannot be written it holds until the program ends.
    void setCalendar(Decision decision);
    /// The next request asks again.
    void forgetCalendar();

private:
    JsonFile file_;
};

} // namespace pindle
