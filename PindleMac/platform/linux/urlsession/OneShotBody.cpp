#include "PindleMac/platform/linux/urlsession/OneShotBody.h"

#include <algorithm>
#include <cstring>

namespace pindle {

OneShotBody::OneShotBody(QByteArray bytes)
    : bytes_(std::move(bytes)) {
    open(QIODevice::ReadOnly | QIODevice::Unbuffered);
}

bool OneShotBody::reset() {
    if (replied_)
        read_ = 0;
    return replied_;
}

qint64 OneShotBody::readData(char *data, qint64 most) {
    const qint64 count = std::min<qint64>(most, bytes_.size() - read_);
    if (count == 0)
        return most == 0 ? 0 : -1;
    std::memcpy(data, bytes_.constData() + read_, static_cast<size_t>(count));
    read_ += count;
    return count;
}

} // namespace pindle
