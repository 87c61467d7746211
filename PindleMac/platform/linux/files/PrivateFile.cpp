#include "PindleMac/platform/linux/files/PrivateFile.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QUuid>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace pindle {

const QString temporarySuffix = QStringLiteral(".pindle-new");

namespace {

constexpr qint64 abandonedAfterSeconds = 3600;
constexpr mode_t privateFileMode = 0600;
constexpr mode_t privateFolderMode = 0700;

std::error_code lastError() {
    return {errno, std::generic_category()};
}

/// An open file descriptor, closed at the end of its scope.
class Descriptor {
public:
    explicit Descriptor(int value)
        : value_(value) {}
    ~Descriptor() { close(); }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    bool isOpen() const { return value_ >= 0; }
    int get() const { return value_; }
    /// Some file systems report a failed write only here.
    bool close() {
        const int closing = std::exchange(value_, -1);
        return closing < 0 || ::close(closing) == 0;
    }

private:
    int value_;
};

bool writeAll(int file, const QByteArray &bytes) {
    const char *next = bytes.constData();
    auto left = static_cast<size_t>(bytes.size());
    while (left > 0) {
        const ssize_t written = ::write(file, next, left);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        next += written;
        left -= static_cast<size_t>(written);
    }
    return true;
}

std::error_code writeNewFile(const QByteArray &path, const QByteArray &bytes,
                             Durability durability) {
    Descriptor file(::open(path.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW,
                           privateFileMode));
    if (!file.isOpen())
        return lastError();
    const bool onDisk = writeAll(file.get(), bytes) &&
                        (durability == Durability::atomic || ::fsync(file.get()) == 0);
    if (!onDisk || !file.close()) {
        const std::error_code error = lastError();
        ::unlink(path.constData());
        return error;
    }
    return {};
}

/// A rename that a power cut undoes is no reason to report a failure: the file is there now.
void syncFolder(const QString &folder) {
    const Descriptor descriptor(
        ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.isOpen())
        ::fsync(descriptor.get());
}

} // namespace

QString xdgFolder(const char *variable, const QString &fallback) {
    const QString value = QFile::decodeName(qgetenv(variable));
    if (QDir::isAbsolutePath(value))
        return QDir::cleanPath(value);
    return QDir::homePath() + QLatin1Char('/') + fallback;
}

QString configHome() {
    return xdgFolder("XDG_CONFIG_HOME", QStringLiteral(".config"));
}

QString dataHome() {
    return xdgFolder("XDG_DATA_HOME", QStringLiteral(".local/share"));
}

std::error_code makePrivateFolder(const QString &folder) {
    const QByteArray path = QFile::encodeName(folder);
    if (::mkdir(path.constData(), privateFolderMode) == 0)
        return {};
    if (errno == ENOENT) {
        const QString parent = QFileInfo(folder).path();
        if (parent == folder)
            return lastError();
        if (const std::error_code error = makePrivateFolder(parent))
            return error;
        if (::mkdir(path.constData(), privateFolderMode) == 0)
            return {};
    }
    if (errno != EEXIST)
        return lastError();
    return QFileInfo(folder).isDir() ? std::error_code{}
                                     : std::make_error_code(std::errc::not_a_directory);
}

std::error_code replaceFile(const QString &path, const QByteArray &bytes, Durability durability) {
    const QFileInfo info(path);
    const QString target = info.isSymLink() && info.exists() ? info.canonicalFilePath() : path;
    const QString folder = QFileInfo(target).path();
    const QString temporary = folder + QStringLiteral("/.") +
                              QUuid::createUuid().toString(QUuid::WithoutBraces) + temporarySuffix;
    const QByteArray from = QFile::encodeName(temporary);
    if (const std::error_code error = writeNewFile(from, bytes, durability))
        return error;
    if (::rename(from.constData(), QFile::encodeName(target).constData()) != 0) {
        const std::error_code error = lastError();
        ::unlink(from.constData());
        return error;
    }
    if (durability == Durability::synced)
        syncFolder(folder);
    return {};
}

void removeAbandonedFiles(const QString &folder) {
    const QDir dir(folder);
    const QStringList pattern{QStringLiteral(".*") + temporarySuffix};
    const QDateTime now = QDateTime::currentDateTimeUtc();
    for (const QFileInfo &file : dir.entryInfoList(pattern, QDir::Files | QDir::Hidden)) {
        if (file.lastModified().secsTo(now) > abandonedAfterSeconds)
            QFile::remove(file.filePath());
    }
}

std::optional<QByteArray> readFile(const QString &path, qint64 limit, std::error_code &error) {
    error.clear();
    // Not blocking: what lies there may be a pipe nobody writes to.
    const Descriptor file(
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        if (errno != ENOENT)
            error = lastError();
        return std::nullopt;
    }
    if (!S_ISREG(status.st_mode))
        error = std::make_error_code(std::errc::invalid_argument);
    else if (status.st_size > limit)
        error = std::make_error_code(std::errc::file_too_large);
    if (error)
        return std::nullopt;

    QByteArray bytes(static_cast<qsizetype>(status.st_size), Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled < bytes.size()) {
        const ssize_t count =
            ::read(file.get(), bytes.data() + filled, static_cast<size_t>(bytes.size() - filled));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0) {
            error = lastError();
            return std::nullopt;
        }
        if (count == 0)
            break;
        filled += count;
    }
    bytes.truncate(filled);
    return bytes;
}

} // namespace pindle
