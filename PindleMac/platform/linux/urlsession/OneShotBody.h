#pragma once

#include <QByteArray>
#include <QIODevice>

namespace pindle {

/// A request's body that can be read once. When a connection breaks before the reply, Qt sends a
/// request again by itself, if it can rewind the body; from this one it cannot, so nothing is ever
/// sent twice.
class OneShotBody final : public QIODevice {
public:
    explicit OneShotBody(QByteArray bytes);

    bool isSequential() const override { return true; }
    bool atEnd() const override { return read_ == bytes_.size(); }
    qint64 bytesAvailable() const override { return bytes_.size() - read_; }

protected:
    qint64 readData(char *data, qint64 most) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray bytes_;
    qint64 read_ = 0;
};

} // namespace pindle
