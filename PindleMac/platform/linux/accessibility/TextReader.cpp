#include "PindleMac/platform/linux/accessibility/TextReader.h"

#include "PindleMac/platform/linux/accessibility/TextUnits.h"

#include <QStringList>
#include <algorithm>
#include <tuple>

namespace pindle {

using namespace atspi;

namespace {

/// Selections of one object that are read; block selections have one per line.
constexpr int32_t kSelectionLimit = 256;
/// Levels of objects inside objects that are followed.
constexpr int kDepthLimit = 32;

bool isBlock(uint32_t role) {
    switch (role) {
    case kRoleListItem:
    case kRoleParagraph:
    case kRoleHeading:
    case kRoleSection:
    case kRoleForm:
    case kRoleTableRow:
    case kRoleBlockQuote:
    case kRoleArticle:
        return true;
    default:
        return false;
    }
}

} // namespace

FocusReading TextReader::read(const Focus &focus) {
    FocusReading reading;
    reading.element = focus.element;
    reading.role = focus.role;
    if (focus.role == kRolePasswordText) {
        reading.kind = FocusReading::Kind::passwordField;
        return reading;
    }
    if (!focus.hasText)
        return reading;

    const Ref &element = focus.element;
    std::vector<BusMessage> calls;
    calls.push_back(textMethod(element, "GetNSelections"));
    calls.push_back(bus_.property(element.service, element.path, kText, "CaretOffset"));
    calls.push_back(bus_.property(element.service, kRoot, kApplication, "ToolkitName"));
    const auto answers = bus_.exchange(calls, deadline_);
    reading.kind = FocusReading::Kind::text;
    reading.toolkit = textProperty(answers[2]).value_or(QString());
    reading.start = reading.end = std::max(0, numberProperty(answers[1]).value_or(0));

    const auto spans = selections(element, number(answers[0]).value_or(0));
    QStringList parts;
    for (const Span &span : spans) {
        const QString raw = rawText(element, span);
        const bool hasObjects = raw.contains(textunits::kObject);
        parts.append(hasObjects ? expanded(element, span, 0) : raw);
        reading.hasObjects |= hasObjects;
    }
    reading.selectedText = textunits::withoutPadding(parts.join(u'\n'));
    if (!spans.empty())
        std::tie(reading.start, reading.end) = spans.front();
    return reading;
}

std::optional<CFRange> TextReader::range(const FocusReading &reading) {
    // Where the text is spread over objects, no one text has a range.
    if (reading.hasObjects || reading.start > kTextLimit)
        return std::nullopt;
    return textunits::rangeAfter(rawText(reading.element, {0, reading.start}),
                                 rawText(reading.element, {reading.start, reading.end}));
}

std::optional<QString> TextReader::value(const FocusReading &reading) {
    const Ref &element = reading.element;
    const auto count = numberProperty(bus_.call(
        bus_.property(element.service, element.path, kText, "CharacterCount"), deadline_));
    if (!count || reading.hasObjects)
        return std::nullopt;
    return textunits::withoutPadding(rawText(element, {0, *count}));
}

BusMessage TextReader::textMethod(const Ref &element, const char *member) {
    return bus_.method(element.service, element.path, kText, member);
}

/// Those that are not empty, in the object's order.
std::vector<TextReader::Span> TextReader::selections(const Ref &element, int32_t count) {
    std::vector<BusMessage> calls;
    for (int32_t i = 0; i < std::min(count, kSelectionLimit); ++i) {
        calls.push_back(textMethod(element, "GetSelection"));
        sd_bus_message_append(calls.back().get(), "i", i);
    }
    std::vector<Span> spans;
    for (const BusMessage &answer : bus_.exchange(calls, deadline_)) {
        const auto one = span(answer);
        if (one && one->first >= 0 && one->first < one->second)
            spans.push_back(*one);
    }
    return spans;
}

/// The text between two offsets in the toolkit's own counting.
QString TextReader::rawText(const Ref &element, Span span) {
    if (span.first >= span.second)
        return {};
    auto call = textMethod(element, "GetText");
    sd_bus_message_append(call.get(), "ii", span.first,
                          std::min(span.second - span.first, kTextLimit) + span.first);
    return text(bus_.call(std::move(call), deadline_)).value_or(QString());
}

/// The text with every embedded object replaced by its own: web pages are made of them.
QString TextReader::expanded(const Ref &element, Span span, int depth) {
    const QString raw = rawText(element, span);
    QString result;
    for (qsizetype i = 0; i < raw.size() && result.size() < kTextLimit; ++i) {
        if (raw[i] != textunits::kObject)
            result.append(raw[i]);
        else if (depth < kDepthLimit && ++objects_ <= kFocusNodeLimit)
            result.append(textOfObject(
                element, textunits::offsetOf(raw, i, span.first, span.second), depth + 1));
    }
    return result;
}

/// What is selected in an object inside another; all of it where it reports no selection itself.
QString TextReader::textOfObject(const Ref &element, qint64 offset, int depth) {
    const auto object = objectAt(element, offset);
    if (!object)
        return {};
    std::vector<BusMessage> calls;
    calls.push_back(bus_.method(object->service, object->path, kAccessible, "GetRole"));
    calls.push_back(textMethod(*object, "GetNSelections"));
    calls.push_back(bus_.property(object->service, object->path, kText, "CharacterCount"));
    const auto answers = bus_.exchange(calls, deadline_);
    const auto role = unsignedNumber(answers[0]);
    const auto length = numberProperty(answers[2]);
    if (!length || role == kRolePasswordText)
        return {};
    auto spans = selections(*object, number(answers[1]).value_or(0));
    if (spans.empty())
        spans.push_back({0, *length});
    QString result;
    for (const Span &span : spans)
        result += expanded(*object, span, depth);
    if (isBlock(role.value_or(0)) && !result.endsWith(u'\n'))
        result += u'\n';
    return result;
}

std::optional<Ref> TextReader::objectAt(const Ref &element, qint64 offset) {
    auto findIndex = bus_.method(element.service, element.path, kHypertext, "GetLinkIndex");
    sd_bus_message_append(findIndex.get(), "i", static_cast<int32_t>(offset));
    const auto index = number(bus_.call(std::move(findIndex), deadline_));
    if (!index || *index < 0)
        return std::nullopt;
    auto getLink = bus_.method(element.service, element.path, kHypertext, "GetLink");
    sd_bus_message_append(getLink.get(), "i", *index);
    const auto link = reference(bus_.call(std::move(getLink), deadline_));
    if (!link)
        return std::nullopt;
    auto getObject = bus_.method(link->service, link->path, kHyperlink, "GetObject");
    sd_bus_message_append(getObject.get(), "i", 0);
    return reference(bus_.call(std::move(getObject), deadline_));
}

} // namespace pindle
