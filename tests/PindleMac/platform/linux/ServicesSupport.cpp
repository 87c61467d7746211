#include "ServicesSupport.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTest>
#include <csignal>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace pindle {

namespace {
constexpr uid_t nobody = 65534;
constexpr int scriptLimitMs = 60'000;
} // namespace

bool waitUntil(const std::function<bool()> &condition, std::chrono::milliseconds limit) {
    return QTest::qWaitFor(condition, static_cast<int>(limit.count()));
}

QByteArray contents(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void putFile(const QString &path, const QByteArray &bytes) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("a test's file could not be made");
}

QStringList names(const QString &folder) {
    return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot);
}

mode_t modeOf(const QString &path) {
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? status.st_mode & 07777U : 0U;
}

QByteArray runPython(const QString &script, const QStringList &arguments) {
    const QString path = QStringLiteral(PINDLE_TEST_FOLDER "/") + script;
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral("/usr/bin/python3"), QStringList{path} + arguments);
    const bool ended = process.waitForFinished(scriptLimitMs);
    return ended && process.exitCode() == 0 ? process.readAllStandardOutput() : QByteArray();
}

WithoutRootRights::WithoutRootRights() {
    dropped_ = ::geteuid() == 0 && ::seteuid(nobody) == 0;
}

WithoutRootRights::~WithoutRootRights() {
    if (dropped_ && ::seteuid(0) != 0)
        qFatal("root's rights did not come back");
}

WithEnvironment::WithEnvironment(const char *name, const QByteArray &value)
    : name_(name)
    , before_(qgetenv(name))
    , wasSet_(qEnvironmentVariableIsSet(name)) {
    qputenv(name, value);
}

WithEnvironment::~WithEnvironment() {
    if (wasSet_)
        qputenv(name_, before_);
    else
        qunsetenv(name_);
}

EndlessChild::EndlessChild(const std::function<void(int)> &work)
    : pid_(::fork()) {
    if (pid_ != 0)
        return;
    for (int i = 0;; ++i)
        work(i);
}

void EndlessChild::kill() {
    if (pid_ <= 0)
        return;
    ::kill(pid_, SIGKILL);
    ::waitpid(pid_, nullptr, 0);
    pid_ = -1;
}

} // namespace pindle
