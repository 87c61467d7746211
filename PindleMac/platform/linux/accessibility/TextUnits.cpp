#include "PindleMac/platform/linux/accessibility/TextUnits.h"

#include <algorithm>

namespace pindle::textunits {

namespace {

qint64 codePoints(QStringView text) {
    return text.size() -
           std::count_if(text.begin(), text.end(), [](QChar c) { return c.isLowSurrogate(); });
}

} // namespace

QString withoutPadding(const QString &text) {
    constexpr QChar padding{u'\uFEFF'};
    if (!text.contains(padding))
        return text;
    QString clean;
    clean.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != padding || i == 0 || !text[i - 1].isLowSurrogate())
            clean.append(text[i]);
    }
    return clean;
}

CFRange rangeAfter(const QString &before, const QString &selected) {
    return {withoutPadding(before).size(), withoutPadding(selected).size()};
}

qint64 offsetOf(const QString &text, qsizetype index, qint64 start, qint64 end) {
    const bool countsUnits = text.size() == end - start;
    return start + (countsUnits ? index : codePoints(QStringView(text).first(index)));
}

} // namespace pindle::textunits
