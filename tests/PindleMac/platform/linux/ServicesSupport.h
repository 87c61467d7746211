#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>
#include <chrono>
#include <functional>
#include <sys/types.h>

namespace pindle {

/// Runs the event loop until `condition` holds; false when that took longer than `limit`.
bool waitUntil(const std::function<bool()> &condition,
               std::chrono::milliseconds limit = std::chrono::seconds(10));

/// The whole of a file; empty when there is none.
QByteArray contents(const QString &path);
/// Makes a file with these bytes.
void putFile(const QString &path, const QByteArray &bytes);
/// Every name in a folder, hidden ones too.
QStringList names(const QString &folder);
/// The permission bits of a file or folder.
mode_t modeOf(const QString &path);

/// Runs a script of this folder with the system's Python; its output, or nothing when it failed.
QByteArray runPython(const QString &script, const QStringList &arguments);

/// For its lifetime the process may not write where only root may: tests of refused writes run as
/// root as well.
class WithoutRootRights {
public:
    WithoutRootRights();
    ~WithoutRootRights();
    WithoutRootRights(const WithoutRootRights &) = delete;
    WithoutRootRights &operator=(const WithoutRootRights &) = delete;

private:
    bool dropped_ = false;
};

/// Sets an environment variable for its lifetime.
class WithEnvironment {
public:
    WithEnvironment(const char *name, const QByteArray &value);
    ~WithEnvironment();
    WithEnvironment(const WithEnvironment &) = delete;
    WithEnvironment &operator=(const WithEnvironment &) = delete;

private:
    const char *name_;
    QByteArray before_;
    bool wasSet_;
};

/// A child process that runs `work` for ever in a loop, each time with the next number, and is
/// killed without warning.
class EndlessChild {
public:
    explicit EndlessChild(const std::function<void(int)> &work);
    ~EndlessChild() { kill(); }
    EndlessChild(const EndlessChild &) = delete;
    EndlessChild &operator=(const EndlessChild &) = delete;

    void kill();

private:
    pid_t pid_ = -1;
};

} // namespace pindle
