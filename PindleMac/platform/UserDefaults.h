#pragma once

#include <QString>
#include <optional>

namespace pindle {

/// The user's small persisted values. Each setter has written through when it returns; a value
/// that could not be written is kept in memory and written with the next one. Main thread.
class UserDefaults {
public:
    virtual ~UserDefaults() = default;

    /// Absent when nothing, or a value of another type, is stored.
    virtual std::optional<QString> string(const QString &key) = 0;
    /// False when nothing, or a value of another type, is stored.
    virtual bool boolean(const QString &key) = 0;

    virtual void setString(const QString &key, const QString &value) = 0;
    virtual void setBoolean(const QString &key, bool value) = 0;
};

} // namespace pindle
