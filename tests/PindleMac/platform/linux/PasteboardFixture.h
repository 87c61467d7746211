#pragma once

#include "PindleMac/platform/linux/pasteboard/X11Pasteboard.h"
#include "PindleMac/platform/linux/x11/XConnection.h"

#include <QBuffer>
#include <QClipboard>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QGuiApplication>
#include <QImage>
#include <QLineEdit>
#include <QProcess>
#include <QTest>
#include <QTimer>
#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>
#include <numeric>
#include <vector>
#include <xcb/xfixes.h>

/// A clipboard with real and made-up owners.
namespace pasteboardtest {

using namespace pindle;
using namespace std::chrono_literals;

struct Answer {
    bool arrived = false;
    std::optional<QString> text;
    double milliseconds = 0;
};

template<class Read> Answer answerOf(Read read) {
    Answer answer;
    QElapsedTimer clock;
    clock.start();
    // Unlike qWaitFor, which looks every 10 ms, a loop ends with the answer.
    QEventLoop loop;
    read([&](std::optional<QString> text) {
        answer.milliseconds = static_cast<double>(clock.nsecsElapsed()) / 1e6;
        answer.text = std::move(text);
        answer.arrived = true;
        loop.quit();
    });
    EXPECT_FALSE(answer.arrived) << "completed inside the call";
    QTimer::singleShot(3000, &loop, &QEventLoop::quit);
    loop.exec();
    EXPECT_TRUE(answer.arrived);
    return answer;
}

/// A program that owns the clipboard until it goes out of scope.
class Program {
public:
    Program(const QString &name, const QStringList &arguments, const QByteArray &input = {}) {
        process_.setStandardOutputFile(QProcess::nullDevice());
        process_.setStandardErrorFile(QProcess::nullDevice());
        process_.start(name, arguments);
        EXPECT_TRUE(process_.waitForStarted());
        process_.write(input);
        process_.closeWriteChannel();
    }
    ~Program() { end(); }
    void end() {
        process_.kill();
        process_.waitForFinished();
    }

private:
    QProcess process_;
};

inline QStringList xclipInput() {
    return {QStringLiteral("-quiet"), QStringLiteral("-i"), QStringLiteral("-selection"),
            QStringLiteral("clipboard")};
}

/// What another program finds on the clipboard.
inline QByteArray pasted(const QString &target = QStringLiteral("UTF8_STRING")) {
    QProcess xclip;
    xclip.start(QStringLiteral("xclip"),
                {QStringLiteral("-o"), QStringLiteral("-selection"), QStringLiteral("clipboard"),
                 QStringLiteral("-t"), target});
    EXPECT_TRUE(QTest::qWaitFor([&] { return xclip.state() == QProcess::NotRunning; }, 5000));
    return xclip.readAllStandardOutput();
}

/// Another client that answers requests for the clipboard as a test tells it to.
class ForeignOwner {
public:
    using Request = xcb_selection_request_event_t;
    explicit ForeignOwner(std::function<void(ForeignOwner &, const Request &)> answer)
        : connection_(XConnection::open()) {
        connection_->addHandler([this, answer](const xcb_generic_event_t &event) {
            if ((event.response_type & ~0x80) == XCB_SELECTION_REQUEST)
                answer(*this, reinterpret_cast<const Request &>(event));
        });
        own();
    }
    XConnection &connection() { return *connection_; }
    void own() {
        xcb_set_selection_owner(connection_->xcb(), connection_->window(),
                                connection_->atom("CLIPBOARD"), XCB_CURRENT_TIME);
        sync();
    }
    void sync() {
        xcbReply(xcb_get_input_focus_reply(connection_->xcb(),
                                           xcb_get_input_focus(connection_->xcb()), nullptr));
    }
    void put(const Request &request, xcb_atom_t type, const QByteArray &bytes) {
        xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, request.requestor,
                            request.property, type, 8, static_cast<uint32_t>(bytes.size()),
                            bytes.constData());
    }
    void putIncr(const Request &request, uint32_t size) {
        xcb_change_property(connection_->xcb(), XCB_PROP_MODE_REPLACE, request.requestor,
                            request.property, connection_->atom("INCR"), 32, 1, &size);
    }
    void notify(const Request &request, bool served) {
        xcb_selection_notify_event_t event{};
        event.response_type = XCB_SELECTION_NOTIFY;
        event.time = request.time;
        event.requestor = request.requestor;
        event.selection = request.selection;
        event.target = request.target;
        event.property = served ? request.property : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
        char bytes[32] = {};
        std::memcpy(bytes, &event, sizeof event);
        xcb_send_event(connection_->xcb(), 0, request.requestor, 0, bytes);
        xcb_flush(connection_->xcb());
    }

private:
    std::unique_ptr<XConnection> connection_;
};

class PasteboardTest : public testing::Test {
protected:
    void SetUp() override {
        connection = XConnection::open();
        ASSERT_TRUE(connection);
        pasteboard = std::make_unique<X11Pasteboard>(*connection);
        pasteboard->clearContents();
    }
    Answer read() {
        return answerOf([this](auto done) { pasteboard->stringForType(std::move(done)); });
    }
    bool changesBeyond(qint64 count) {
        return QTest::qWaitFor([&] { return pasteboard->changeCount() > count; }, 3000);
    }
    std::unique_ptr<Program> copiedBy(const QString &name, const QStringList &arguments,
                                      const QByteArray &input) {
        const qint64 before = pasteboard->changeCount();
        auto program = std::make_unique<Program>(name, arguments, input);
        EXPECT_TRUE(changesBeyond(before));
        return program;
    }
    std::unique_ptr<Program> xclip(const QByteArray &input) {
        return copiedBy(QStringLiteral("xclip"), xclipInput(), input);
    }

    std::unique_ptr<XConnection> connection;
    std::unique_ptr<X11Pasteboard> pasteboard;
};

} // namespace pasteboardtest
