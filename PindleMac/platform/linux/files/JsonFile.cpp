#include "PindleMac/platform/linux/files/JsonFile.h"

#include "PindleMac/platform/linux/files/PrivateFile.h"

#include <QDateTime>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <cstdio>

namespace pindle {

namespace {
constexpr qint64 sizeLimit = 1 << 20; ///< bytes; no file of ours comes near
}

QJsonValue JsonFile::value(const QString &key) {
    if (const auto changed = unwritten_.constFind(key); changed != unwritten_.constEnd())
        return *changed;
    if (removed_.contains(key))
        return QJsonValue(QJsonValue::Undefined);
    QJsonObject object;
    read(object);
    return object.value(key);
}

bool JsonFile::set(const QString &key, const QJsonValue &value) {
    if (value.isUndefined()) {
        unwritten_.remove(key);
        removed_.append(key);
    } else {
        removed_.removeAll(key);
        unwritten_.insert(key, value);
    }
    if (!write())
        return false;
    unwritten_ = {};
    removed_.clear();
    return true;
}

JsonFile::State JsonFile::read(QJsonObject &object) const {
    std::error_code error;
    const auto bytes = readFile(path_, sizeLimit, error);
    if (error == std::errc::file_too_large)
        return setAside() ? State::readable : State::unreadable;
    if (error)
        return State::unreadable;
    if (!bytes)
        return State::readable;
    const QJsonDocument document = QJsonDocument::fromJson(*bytes);
    if (!document.isObject())
        return setAside() ? State::readable : State::unreadable;
    object = document.object();
    return State::readable;
}

bool JsonFile::setAside() const {
    const QString stamp =
        QDateTime::currentDateTimeUtc().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"));
    QString aside = path_ + QStringLiteral(".damaged-") + stamp;
    for (int i = 2; QFileInfo::exists(aside); ++i)
        aside = path_ + QStringLiteral(".damaged-%1-%2").arg(stamp).arg(i);
    return std::rename(QFile::encodeName(path_).constData(),
                       QFile::encodeName(aside).constData()) == 0;
}

bool JsonFile::write() {
    const QString folder = QFileInfo(path_).path();
    QJsonObject object;
    // What cannot be read is not replaced either: it may be whole and only out of reach.
    if (makePrivateFolder(folder) || read(object) == State::unreadable)
        return false;
    for (const QString &key : std::as_const(removed_))
        object.remove(key);
    for (auto it = unwritten_.constBegin(); it != unwritten_.constEnd(); ++it)
        object.insert(it.key(), it.value());
    removeAbandonedFiles(folder);
    return !replaceFile(path_, QJsonDocument(object).toJson(), Durability::synced);
}

} // namespace pindle
