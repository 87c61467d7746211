#include "PindleMac/platform/linux/eventstore/ServerCalendar.h"

#include "PindleMac/platform/linux/eventstore/IcsEvent.h"
#include "PindleMac/platform/linux/eventstore/SaveCall.h"

#include <QCoreApplication>
#include <algorithm>
#include <utility>

namespace pindle {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds connectLimit{5000};   ///< a store that is started for it takes a second
constexpr milliseconds saveLimit{250};       ///< the main thread waits no longer
constexpr std::size_t rememberedAttempts{8}; ///< of saves whose success is not certain

using State = BackendConnection::State;

BackendConnection failed(const QString &error) {
    return {State::failed, {}, {}, error.toStdString()};
}

const QString silent =
    QStringLiteral("The calendar service does not answer. The event was not saved.");

} // namespace

ServerCalendar::ServerCalendar(CalendarWorker::MakeBackend make)
    : self_(std::make_shared<ServerCalendar *>(this))
    , connection_(failed(QStringLiteral("The calendar is not open yet.")))
    , worker_(std::move(make)) {
    deadline_.setSingleShot(true);
    deadline_.setTimerType(Qt::PreciseTimer);
    QObject::connect(&deadline_, &QTimer::timeout, &deadline_, [this] {
        worker_.giveUp(connecting_);
        connectionEnded(connecting_, failed(silent));
    });
}

ServerCalendar::~ServerCalendar() = default;

void ServerCalendar::connect(std::function<void()> done) {
    waiting_.push_back(std::move(done));
    if (waiting_.size() > 1)
        return;
    const auto number = std::make_shared<int>(0); // written before any result is looked at
    *number = connecting_ = worker_.post([number,
                                          self = std::weak_ptr(self_)](CalendarBackend *backend) {
        auto result = backend ? backend->connect() : BackendConnection{State::absent, {}, {}, {}};
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [number, self, result = std::move(result)] {
                if (const auto calendar = self.lock())
                    (*calendar)->connectionEnded(*number, result);
            },
            Qt::QueuedConnection);
    });
    deadline_.start(connectLimit);
}

void ServerCalendar::connectionEnded(int number, BackendConnection connection) {
    if (number != connecting_)
        return; // it was given up
    connecting_ = 0;
    deadline_.stop();
    connection_ = std::move(connection);
    everConnected_ = everConnected_ || connection_.state == State::connected;
    if (connection_.state == State::absent && everConnected_)
        connection_ = failed(QStringLiteral("No default calendar is available."));
    const auto waiting = std::exchange(waiting_, {});
    for (const auto &done : waiting)
        done();
}

bool ServerCalendar::isAbsent() const {
    return connection_.state == State::absent;
}

std::optional<EKCalendar> ServerCalendar::calendar() const {
    if (connection_.state != State::connected)
        return std::nullopt;
    return EKCalendar{QString::fromStdString(connection_.identifier)};
}

void ServerCalendar::save(const IcsEvent &event) {
    const auto content = icsText(event, {}, {}, IcsTimes::lastingZone);
    if (!content)
        throw PlatformError(yearNotWritable());
    Attempt &attempt = attemptFor(*content);
    if (!attempt.call || !attempt.call->isUnderWay())
        start(attempt, event);
    finish(attempt);
    std::erase_if(attempts_,
                  [uid = attempt.uid](const Attempt &other) { return other.uid == uid; });
}

ServerCalendar::Attempt &ServerCalendar::attemptFor(const QByteArray &content) {
    const auto found = std::find_if(attempts_.begin(), attempts_.end(),
                                    [&](const Attempt &other) { return other.content == content; });
    if (found != attempts_.end())
        return *found;
    if (attempts_.size() == rememberedAttempts)
        attempts_.erase(attempts_.begin());
    return attempts_.emplace_back(Attempt{content, newEventIdentifier(), {}, nullptr});
}

void ServerCalendar::start(Attempt &attempt, const IcsEvent &event) {
    if (connection_.state != State::connected)
        throw PlatformError(QString::fromStdString(connection_.error));
    if (!event.calendar)
        throw PlatformError(QStringLiteral("No default calendar is available."));
    const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
    const auto text = [&](IcsTimes times) {
        return icsText(event, attempt.uid, now, times).value_or(QByteArray()).toStdString();
    };
    attempt.calendarName = QString::fromStdString(connection_.name);
    attempt.call = std::make_shared<SaveCall>(BackendEvent{
        attempt.uid.toStdString(), text(IcsTimes::lastingZone), text(IcsTimes::universal),
        event.start.time_since_epoch().count(), event.end.time_since_epoch().count()});
    worker_.post([call = attempt.call](CalendarBackend *backend) { call->run(backend); });
}

void ServerCalendar::finish(const Attempt &attempt) {
    switch (attempt.call->waitFor(saveLimit)) {
    case SaveCall::Step::waiting: // for a thread that hangs in another call
        throw PlatformError(silent);
    case SaveCall::Step::running:
        throw PlatformError(
            QStringLiteral("“%1” has not confirmed the event yet. It may still appear there; "
                           "saving it again does not add it twice.")
                .arg(attempt.calendarName));
    case SaveCall::Step::done:
        break;
    }
    const BackendSave result = attempt.call->result();
    const QString error = QString::fromStdString(result.error);
    if (result.outcome == BackendSave::Outcome::refused)
        throw PlatformError(error);
    if (result.outcome == BackendSave::Outcome::unknown) {
        throw PlatformError(QStringLiteral("%1. The event may have been saved all the same; saving "
                                           "it again does not add it twice.")
                                .arg(error));
    }
}

} // namespace pindle
