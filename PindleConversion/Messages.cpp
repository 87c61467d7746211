#include "PindleConversion/Messages.h"

namespace pindle::conversion {

std::string noticeText(const Choice &choice) {
    const std::string day = formatDay(choice.start);
    switch (choice.notice) {
    case Notice::TodayAssumed:
        return "The text names no day; today was assumed.";
    case Notice::InPast:
        return "This date lies in the past; please check it.";
    case Notice::WeekdayConflict:
        return "The weekday in the text does not match " + day + "; please check the date.";
    case Notice::OrderAssumed:
        return "The date was read as " + day + "; please check it.";
    case Notice::HalfAssumed:
        return "The text does not say morning or afternoon; " + formatMinute(*choice.startMinute) +
               " was assumed.";
    case Notice::SeveralDates:
        return "The text names several dates; " + day + " was chosen.";
    case Notice::Repeats:
        return "The event seems to repeat; only the next date was taken.";
    case Notice::None:
    case Notice::NoDate:
    case Notice::OnlyPast:
        break;
    }
    return {};
}

std::string refusalText(Notice notice) {
    if (notice == Notice::OnlyPast)
        return "The selected text only speaks of the past.";
    return "No date or time was found in the selected text.";
}

} // namespace pindle::conversion
