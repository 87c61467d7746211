#pragma once

#include "PindleMac/platform/linux/eventstore/IcsFolderEventStore.h"
#include "PindleMac/platform/linux/eventstore/ServerCalendar.h"

namespace pindle {

/// The user's own calendar: the default one of the desktop's calendar store where there is such a
/// store, else the folder of iCalendar files. Which it is, is found out at each access request; a
/// store that fails is told and never replaced by the folder.
class DesktopEventStore final : public EventStore {
public:
    /// `decisions`, `ask` and `folder` as for the folder; `make` finds the store's backend.
    DesktopEventStore(AccessDecisions &decisions, AskQuestion ask, CalendarWorker::MakeBackend make,
                      QString folder = IcsFolderEventStore::defaultFolder());

    /// Once access is granted it also connects to the store, before the completion runs.
    void requestWriteOnlyAccessToEvents(AccessCompletion completion) override;
    EKAuthorizationStatus authorizationStatus() override;
    std::unique_ptr<EKEvent> makeEvent() override;
    std::optional<EKCalendar> defaultCalendarForNewEvents() override;
    void save(EKEvent &event, EKSpan span) override;

private:
    IcsFolderEventStore folder_;
    ServerCalendar server_;
};

} // namespace pindle
