#pragma once

#include <QByteArray>
#include <QIODevice>

namespace pindle {

/// A request's body that is sent once. When a connection breaks before the reply, Qt sends the
/// request again by itself, unless it cannot rewind the body, which this one does not allow. A
/// redirect it takes for complete only once it has rewound the body, so that is allowed from the
/// reply on.
class OneShotBody final : public QIODevice {
public:
    explicit OneShotBody(QByteArray bytes);

    void replyHasCome() { replied_ = true; }

    bool reset() override;
    bool isSequential() const override { return true; }
    bool atEnd() const override { return read_ == bytes_.size(); }
    qint64 bytesAvailable() const override { return bytes_.size() - read_; }

protected:
    qint64 readData(char *data, qint64 most) override;
    qint64 writeData(const char *, qint64) override { return -1; }

private:
    QByteArray bytes_;
    qint64 read_ = 0;
    bool replied_ = false;
};

} // namespace pindle
