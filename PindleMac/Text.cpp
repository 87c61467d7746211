#include "PindleMac/Text.h"

#include <QStringView>
#include <algorithm>

namespace pindle {

namespace {

bool isWhitespaceOrNewline(QChar c) {
    return c.category() == QChar::Separator_Space || (c >= QChar(0x09) && c <= QChar(0x0d)) ||
           c == QChar(0x85);
}

} // namespace

QString trimmingWhitespaceAndNewlines(const QString &text) {
    const auto begin = std::find_if_not(text.cbegin(), text.cend(), isWhitespaceOrNewline);
    const auto end =
        std::find_if_not(text.crbegin(), std::make_reverse_iterator(begin), isWhitespaceOrNewline)
            .base();
    return QString(begin, end - begin);
}

} // namespace pindle
