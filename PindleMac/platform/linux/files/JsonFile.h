#pragma once

#include <QJsonObject>
#include <QJsonValue>
#include <QString>

namespace pindle {

/// A small JSON object in a private file that others may edit as well: it is read afresh each time
/// and written as what it holds by then with the program's own changes on top. Main thread.
class JsonFile {
public:
    explicit JsonFile(QString path)
        : path_(std::move(path)) {}

    /// What is stored under `key`, changes that could not be written yet included; undefined when
    /// nothing is. A file that holds no JSON object is kept aside under another name and counts as
    /// absent.
    QJsonValue value(const QString &key);

    /// Stores `value`, or removes the key when it is undefined. False when the file could not be
    /// written: the change then stays in memory and goes along with the next one.
    bool set(const QString &key, const QJsonValue &value);

private:
    enum class State { readable, unreadable };
    State read(QJsonObject &object) const;
    bool setAside() const;
    bool write();

    QString path_;
    QJsonObject unwritten_;
    QStringList removed_;
};

} // namespace pindle
