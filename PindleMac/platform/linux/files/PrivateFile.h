#pragma once

#include <QByteArray>
#include <QString>
#include <optional>
#include <system_error>

namespace pindle {

/// Small files of the user's own, each written whole or not at all. They return the system's error
/// instead of throwing, because what a failure means is the caller's to say. Any thread.

/// The folder an XDG variable names, without a trailing slash; `fallback` below the home folder
/// where the variable is unset or not absolute, as the base directory specification wants.
QString xdgFolder(const char *variable, const QString &fallback);
/// $XDG_CONFIG_HOME.
QString configHome();
/// $XDG_DATA_HOME.
QString dataHome();

/// Makes the folder and the missing ones above it, readable by the user alone. A folder that
/// exists keeps its mode.
std::error_code makePrivateFolder(const QString &folder);

enum class Durability {
    atomic, ///< a killed program leaves the old or the new file
    synced, ///< so does a power cut: the file and its folder have reached the disk
};

/// Replaces `path` by a file of mode 0600 with exactly `bytes`; on an error the old file is as it
/// was. The bytes are first written to a file beside it whose name starts with a dot and ends in
/// `temporarySuffix`. A link is followed, so that what it points to is replaced.
std::error_code replaceFile(const QString &path, const QByteArray &bytes, Durability durability);

/// How names of files that are still being written end.
extern const QString temporarySuffix;

/// Deletes what writers that were killed left in `folder`, once it is older than an hour.
void removeAbandonedFiles(const QString &folder);

/// What a file holds; absent, without an error, when there is none. An error also for anything
/// that is no regular file and for one above `limit` bytes.
std::optional<QByteArray> readFile(const QString &path, qint64 limit, std::error_code &error);

} // namespace pindle
