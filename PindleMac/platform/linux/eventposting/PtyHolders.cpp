#include "PindleMac/platform/linux/eventposting/PtyHolders.h"

#include <QHash>
#include <QList>
#include <array>
#include <cstdlib>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <optional>
#include <string_view>
#include <unistd.h>

namespace pindle {
namespace {

using Clock = std::chrono::steady_clock;
struct CloseFolder {
    void operator()(DIR *folder) const { closedir(folder); }
};
using Folder = std::unique_ptr<DIR, CloseFolder>;

/// The controlling side is the same file in every mount of the pseudo-terminals, by this name.
constexpr std::string_view controllingSide = "/ptmx";

enum class Answer { no, yes, unreadable };

Folder openFolder(const QByteArray &path) {
    return Folder(opendir(path.constData()));
}

qint64 number(const char *text) {
    char *end = nullptr;
    const long value = std::strtol(text, &end, 10);
    return *end == '\0' && value > 0 ? value : 0;
}

Answer holdsPty(const QByteArray &procFolder, qint64 process, Clock::time_point deadline) {
    const Folder folder = openFolder(procFolder + '/' + QByteArray::number(process) + "/fd");
    if (!folder)
        return Answer::unreadable;
    std::array<char, 64> target{};
    while (const dirent *entry = readdir(folder.get())) {
        const ssize_t length =
            readlinkat(dirfd(folder.get()), entry->d_name, target.data(), target.size());
        if (length > 0 &&
            std::string_view(target.data(), std::size_t(length)).ends_with(controllingSide))
            return Answer::yes;
        if (Clock::now() > deadline)
            return Answer::yes;
    }
    return Answer::no;
}

std::optional<qint64> parentOf(const QByteArray &procFolder, const char *process) {
    const QByteArray path = procFolder + '/' + process + "/stat";
    const int file = open(path.constData(), O_RDONLY | O_CLOEXEC);
    if (file < 0)
        return std::nullopt;
    std::array<char, 256> text{};
    const ssize_t length = read(file, text.data(), text.size());
    close(file);
    // "PID (name) state parent …"; the name may hold anything, also parentheses.
    const std::string_view stat(text.data(), length > 0 ? std::size_t(length) : 0);
    const std::size_t name = stat.rfind(") ");
    if (name == std::string_view::npos || name + 4 >= stat.size())
        return std::nullopt;
    const std::string_view rest = stat.substr(name + 4);
    return QByteArray(rest.data(), qsizetype(rest.find(' '))).toLongLong();
}

/// The processes below each process; absent when the deadline has passed.
std::optional<QMultiHash<qint64, qint64>> children(const QByteArray &procFolder,
                                                   Clock::time_point deadline) {
    QMultiHash<qint64, qint64> below;
    const Folder folder = openFolder(procFolder);
    if (!folder)
        return std::nullopt;
    while (const dirent *entry = readdir(folder.get())) {
        const qint64 process = number(entry->d_name);
        if (process == 0)
            continue;
        if (const auto parent = parentOf(procFolder, entry->d_name))
            below.insert(*parent, process);
        if (Clock::now() > deadline)
            return std::nullopt;
    }
    return below;
}

} // namespace

bool mayShowTerminal(qint64 process, const QSet<qint64> &otherClients,
                     std::chrono::milliseconds budget, const QByteArray &procFolder) {
    const auto deadline = Clock::now() + budget;
    if (holdsPty(procFolder, process, deadline) != Answer::no)
        return true;
    const auto below = children(procFolder, deadline);
    if (!below)
        return true;
    QSet<qint64> seen{process};
    QList<qint64> open = below->values(process);
    while (!open.isEmpty()) {
        const qint64 next = open.takeLast();
        if (seen.contains(next) || otherClients.contains(next))
            continue;
        seen.insert(next);
        // Sandboxed helpers do not let themselves be looked into; they cannot open terminals.
        if (holdsPty(procFolder, next, deadline) == Answer::yes)
            return true;
        open += below->values(next);
    }
    return false;
}

} // namespace pindle
