#pragma once

#include <QString>
#include <exception>

namespace pindle {

/// A failure of a platform service (transport, calendar store, login item). It is passed up as it
/// is and shown by its own description: one plain sentence for the user, never user text.
class PlatformError : public std::exception {
public:
    explicit PlatformError(const QString &description)
        : description_(description)
        , utf8_(description.toUtf8()) {}
    QString localizedDescription() const { return description_; }
    const char *what() const noexcept override { return utf8_.constData(); }

private:
    QString description_;
    QByteArray utf8_;
};

} // namespace pindle
