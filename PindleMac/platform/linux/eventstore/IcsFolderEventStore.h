#pragma once

#include "PindleMac/platform/EventStore.h"
#include "PindleMac/platform/linux/questions/Question.h"

#include <QObject>
#include <vector>

namespace pindle {

class AccessDecisions;

/// The user's calendar as a folder of iCalendar files, one per event and named by its UID, as khal
/// and vdirsyncer read it. An event appears whole or not at all, also when the program is killed or
/// the disk is full.
class IcsFolderEventStore final : public EventStore {
public:
    /// `decisions` outlives the store; `ask` puts the access question. `folder` is the calendar, by
    /// default $XDG_DATA_HOME/pindle/calendar.
    IcsFolderEventStore(AccessDecisions &decisions, AskQuestion ask,
                        QString folder = defaultFolder());

    static QString defaultFolder();

    /// Requests made while the question is on screen get its answer. The completion never runs
    /// before this returns; it does not run at all once the store is destroyed.
    void requestWriteOnlyAccessToEvents(AccessCompletion completion) override;
    EKAuthorizationStatus authorizationStatus() override;
    std::unique_ptr<EKEvent> makeEvent() override;
    std::optional<EKCalendar> defaultCalendarForNewEvents() override;
    void save(EKEvent &event, EKSpan span) override;

private:
    void askForAccess();
    void accessAnswered(QuestionAnswer answer);

    AccessDecisions &decisions_;
    AskQuestion ask_;
    QString folder_;
    std::vector<AccessCompletion> waiting_; ///< not empty while the question is on screen
    QObject context_;                       ///< answers stop with it
};

} // namespace pindle
