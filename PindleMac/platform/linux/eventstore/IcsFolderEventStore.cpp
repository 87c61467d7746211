#include "PindleMac/platform/linux/eventstore/IcsFolderEventStore.h"

#include "PindleMac/platform/linux/eventstore/IcsEvent.h"
#include "PindleMac/platform/linux/files/PrivateFile.h"
#include "PindleMac/platform/linux/questions/AccessDecisions.h"

#include <QFile>
#include <QPointer>
#include <QTimer>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace pindle {

namespace {

const Question accessQuestion{
    QStringLiteral("“Pindle” would like to add events to your calendar."),
    QStringLiteral("It adds the events you choose to save. It does not read your calendar."),
    QStringLiteral("Don’t Allow"),
    QStringLiteral("Allow"),
};

QString failure(const std::error_code &error, const QString &folder) {
    if (error == std::errc::no_space_on_device || error.value() == EDQUOT)
        return QStringLiteral("The event was not saved: there is no space left for the calendar "
                              "folder %1.")
            .arg(folder);
    if (error == std::errc::not_a_directory || error == std::errc::file_exists)
        return QStringLiteral("The event was not saved: the calendar folder %1 is not a folder.")
            .arg(folder);
    if (error == std::errc::permission_denied || error == std::errc::operation_not_permitted ||
        error == std::errc::read_only_file_system)
        return QStringLiteral("The event was not saved: the calendar folder %1 cannot be written "
                              "to.")
            .arg(folder);
    return QStringLiteral("The event was not saved: writing to the calendar folder %1 failed.")
        .arg(folder);
}

bool isWritableFolder(const QString &folder) {
    return !makePrivateFolder(folder) &&
           ::faccessat(AT_FDCWD, QFile::encodeName(folder).constData(), W_OK | X_OK, AT_EACCESS) ==
               0;
}

} // namespace

IcsFolderEventStore::IcsFolderEventStore(AccessDecisions &decisions, AskQuestion ask,
                                         QString folder)
    : decisions_(decisions)
    , ask_(std::move(ask))
    , folder_(std::move(folder)) {}

QString IcsFolderEventStore::defaultFolder() {
    return dataHome() + QStringLiteral("/pindle/calendar");
}

void IcsFolderEventStore::requestWriteOnlyAccessToEvents(AccessCompletion completion) {
    if (const auto decision = decisions_.calendar()) {
        const bool granted = *decision == AccessDecisions::Decision::writeOnly;
        QTimer::singleShot(0, &context_, [completion = std::move(completion), granted] {
            completion(granted, std::nullopt);
        });
        return;
    }
    waiting_.push_back(std::move(completion));
    if (waiting_.size() == 1)
        askForAccess();
}

void IcsFolderEventStore::askForAccess() {
    ask_(accessQuestion, [this, alive = QPointer<QObject>(&context_)](QuestionAnswer answer) {
        if (alive)
            accessAnswered(answer);
    });
}

void IcsFolderEventStore::accessAnswered(QuestionAnswer answer) {
    if (answer != QuestionAnswer::none) {
        decisions_.setCalendar(answer == QuestionAnswer::accepted
                                   ? AccessDecisions::Decision::writeOnly
                                   : AccessDecisions::Decision::denied);
    }
    // The answer is for those who waited; a request one of them makes now is a new one.
    const auto waiting = std::exchange(waiting_, {});
    for (const AccessCompletion &completion : waiting) {
        QTimer::singleShot(0, &context_, [completion, answer] {
            completion(answer == QuestionAnswer::accepted, std::nullopt);
        });
    }
}

EKAuthorizationStatus IcsFolderEventStore::authorizationStatus() {
    const auto decision = decisions_.calendar();
    if (!decision)
        return EKAuthorizationStatus::notDetermined;
    return *decision == AccessDecisions::Decision::writeOnly ? EKAuthorizationStatus::writeOnly
                                                             : EKAuthorizationStatus::denied;
}

std::unique_ptr<EKEvent> IcsFolderEventStore::makeEvent() {
    return std::make_unique<IcsEvent>();
}

std::optional<EKCalendar> IcsFolderEventStore::defaultCalendarForNewEvents() {
    return isWritableFolder(folder_) ? std::optional(EKCalendar{folder_}) : std::nullopt;
}

void IcsFolderEventStore::save(EKEvent &event, EKSpan) {
    const IcsEvent &own = eventToSave(event, authorizationStatus());
    if (!own.calendar) {
        throw PlatformError(QStringLiteral("No default calendar is available: the calendar folder "
                                           "%1 cannot be written to.")
                                .arg(folder_));
    }
    const QByteArray uid = newEventIdentifier();
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    const auto text = icsText(own, uid, now);
    if (!text)
        throw yearNotWritable();
    std::error_code error = makePrivateFolder(folder_);
    if (!error) {
        removeAbandonedFiles(folder_);
        error = replaceFile(folder_ + QLatin1Char('/') + QString::fromLatin1(uid) +
                                QStringLiteral(".ics"),
                            *text, Durability::synced);
    }
    if (error)
        throw PlatformError(failure(error, folder_));
}

} // namespace pindle
