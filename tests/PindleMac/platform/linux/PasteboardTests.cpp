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

using namespace pindle;
using namespace std::chrono_literals;

namespace {

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

QStringList xclipInput() {
    return {QStringLiteral("-quiet"), QStringLiteral("-i"), QStringLiteral("-selection"),
            QStringLiteral("clipboard")};
}

/// What another program finds on the clipboard.
QByteArray pasted(const QString &target = QStringLiteral("UTF8_STRING")) {
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

} // namespace

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

TEST_F(PasteboardTest, anEmptyClipboardHasNoText) {
    const Answer answer = read();
    EXPECT_EQ(answer.text, std::nullopt);
    EXPECT_LT(answer.milliseconds, 50);
}

TEST_F(PasteboardTest, textOfAnotherProgramIsRead) {
    const auto owner = xclip("caf\xc3\xa9 \xf0\x9f\x98\x80 tomorrow");
    EXPECT_EQ(read().text, QStringLiteral(u"caf\u00e9 \U0001F600 tomorrow"));
}

TEST_F(PasteboardTest, textOfASecondKindOfProgramIsRead) {
    const auto owner =
        copiedBy(QStringLiteral("xsel"),
                 {QStringLiteral("--nodetach"), QStringLiteral("-i"), QStringLiteral("-b")},
                 "noon \xe2\x82\xac");
    EXPECT_EQ(read().text, QStringLiteral(u"noon \u20ac"));
}

TEST_F(PasteboardTest, anEmptyTextIsATextNevertheless) {
    ForeignOwner owner([](ForeignOwner &self, const ForeignOwner::Request &request) {
        self.put(request, request.target, {});
        self.notify(request, true);
    });
    EXPECT_EQ(read().text, QString());
}

TEST_F(PasteboardTest, aLongTextArrivesInPieces) {
    QByteArray text;
    while (text.size() < 2 * 1024 * 1024)
        text += "line " + QByteArray::number(text.size()) + " \xc3\xbc\n";
    const auto owner = xclip(text);
    const Answer answer = read();
    ASSERT_TRUE(answer.text.has_value());
    EXPECT_TRUE(*answer.text == QString::fromUtf8(text));
    RecordProperty("milliseconds", std::to_string(answer.milliseconds));
    std::printf("2 MiB in pieces: %.1f ms\n", answer.milliseconds);
}

TEST_F(PasteboardTest, aTextBeyondTheLimitIsAbsent) {
    const auto owner = xclip(QByteArray(kSelectionSizeLimit + 1, 'x'));
    EXPECT_EQ(read().text, std::nullopt);
    const auto next = xclip("short again");
    EXPECT_EQ(read().text, QStringLiteral("short again"));
}

TEST_F(PasteboardTest, aTextOfExactlyTheLimitIsRead) {
    const auto owner = xclip(QByteArray(kSelectionSizeLimit, 'x'));
    const Answer answer = read();
    ASSERT_TRUE(answer.text.has_value());
    EXPECT_EQ(answer.text->size(), kSelectionSizeLimit);
}

TEST_F(PasteboardTest, aTooLongPropertyInOnePieceIsAbsentAndTheNextReadIsRight) {
    int requests = 0;
    ForeignOwner owner([&](ForeignOwner &self, const ForeignOwner::Request &request) {
        self.put(request, request.target,
                 ++requests == 1 ? QByteArray(kSelectionSizeLimit + 4, 'x') : QByteArray("short"));
        self.notify(request, true);
    });
    EXPECT_EQ(read().text, std::nullopt);
    EXPECT_EQ(read().text, QStringLiteral("short"));
}

TEST_F(PasteboardTest, aSilentOwnerCostsAQuarterSecondAndTheMainLoopKeepsTurning) {
    ForeignOwner owner([](ForeignOwner &, const ForeignOwner::Request &) {});
    QElapsedTimer clock;
    clock.start();
    qint64 last = 0;
    qint64 longestGap = 0;
    int ticks = 0;
    QTimer tick;
    tick.setTimerType(Qt::PreciseTimer);
    QObject::connect(&tick, &QTimer::timeout, &tick, [&] {
        longestGap = std::max(longestGap, clock.elapsed() - last);
        last = clock.elapsed();
        ++ticks;
    });
    tick.start(5);
    const Answer answer = read();
    EXPECT_EQ(answer.text, std::nullopt);
    EXPECT_GE(answer.milliseconds, 240);
    EXPECT_LE(answer.milliseconds, 450);
    EXPECT_GE(ticks, 20);
    EXPECT_LE(longestGap, 100);
    std::printf("silent owner: %.1f ms, %d ticks, longest gap %lld ms\n", answer.milliseconds,
                ticks, static_cast<long long>(longestGap));
}

TEST_F(PasteboardTest, refusalsDoNotLengthenTheWaitForASilentOwner) {
    ForeignOwner owner([](ForeignOwner &self, const ForeignOwner::Request &request) {
        if (request.target == self.connection().atom("UTF8_STRING"))
            QTimer::singleShot(150, &self.connection(),
                               [&self, request] { self.notify(request, false); });
    });
    const Answer answer = read();
    EXPECT_EQ(answer.text, std::nullopt);
    EXPECT_LE(answer.milliseconds, 450);
}

TEST_F(PasteboardTest, anOwnerFallingSilentAmidATransferIsGivenUpOn) {
    ForeignOwner owner([](ForeignOwner &self, const ForeignOwner::Request &request) {
        self.putIncr(request, 1000);
        self.notify(request, true);
    });
    const Answer answer = read();
    EXPECT_EQ(answer.text, std::nullopt);
    EXPECT_LE(answer.milliseconds, 450);
}

TEST_F(PasteboardTest, anEndlessTransferIsCutOff) {
    QTimer drip;
    ForeignOwner owner([&](ForeignOwner &self, const ForeignOwner::Request &request) {
        self.putIncr(request, 1000);
        self.notify(request, true);
        QObject::connect(&drip, &QTimer::timeout, &drip, [&self, request] {
            self.put(request, self.connection().atom("UTF8_STRING"), "x");
            xcb_flush(self.connection().xcb());
        });
        drip.start(100);
    });
    const Answer answer = read();
    drip.stop();
    EXPECT_EQ(answer.text, std::nullopt);
    EXPECT_GE(answer.milliseconds, 900);
    EXPECT_LE(answer.milliseconds, 1300);
}

TEST_F(PasteboardTest, aLateAnswerIsNotTakenForTheNextOne) {
    std::vector<ForeignOwner::Request> requests;
    ForeignOwner owner([&](ForeignOwner &self, const ForeignOwner::Request &request) {
        requests.push_back(request);
        if (requests.size() == 2) {
            self.put(requests[0], request.target, "old");
            self.notify(requests[0], true);
            QTimer::singleShot(30, &self.connection(), [&self, request] {
                self.put(request, request.target, "new");
                self.notify(request, true);
            });
        }
    });
    EXPECT_EQ(read().text, std::nullopt);
    EXPECT_EQ(read().text, QStringLiteral("new"));
}

TEST_F(PasteboardTest, aLateRefusalIsNotTakenForTheNextOne) {
    std::vector<ForeignOwner::Request> requests;
    ForeignOwner owner([&](ForeignOwner &self, const ForeignOwner::Request &request) {
        requests.push_back(request);
        if (requests.size() == 2) {
            self.notify(requests[0], false);
            self.put(request, request.target, "new");
            self.notify(request, true);
        }
    });
    EXPECT_EQ(read().text, std::nullopt);
    EXPECT_EQ(read().text, QStringLiteral("new"));
    EXPECT_EQ(requests.size(), 2U);
}

TEST_F(PasteboardTest, concurrentReadsGetTheirOwnAnswers) {
    int requests = 0;
    ForeignOwner owner([&](ForeignOwner &self, const ForeignOwner::Request &request) {
        self.put(request, request.target, "answer " + QByteArray::number(++requests));
        self.notify(request, true);
    });
    std::vector<QString> answers(3);
    for (std::size_t i = 0; i < answers.size(); ++i)
        pasteboard->stringForType(
            [&, i](std::optional<QString> text) { answers[i] = text.value_or(QString()); });
    EXPECT_TRUE(QTest::qWaitFor([&] { return !answers[2].isEmpty(); }, 3000));
    EXPECT_EQ(answers[0], QStringLiteral("answer 1"));
    EXPECT_EQ(answers[1], QStringLiteral("answer 2"));
    EXPECT_EQ(answers[2], QStringLiteral("answer 3"));
}

TEST_F(PasteboardTest, anOwnerThatKnowsOnlyLatin1IsRead) {
    ForeignOwner owner([](ForeignOwner &self, const ForeignOwner::Request &request) {
        const bool served = request.target == XCB_ATOM_STRING;
        if (served)
            self.put(request, XCB_ATOM_STRING, "caf\xe9");
        self.notify(request, served);
    });
    EXPECT_EQ(read().text, QStringLiteral(u"caf\u00e9"));
}

TEST_F(PasteboardTest, anAnswerOfAnUnknownKindIsNotTakenForText) {
    ForeignOwner owner([](ForeignOwner &self, const ForeignOwner::Request &request) {
        self.put(request, self.connection().atom("COMPOUND_TEXT"), "\x1b%G odd");
        self.notify(request, true);
    });
    EXPECT_EQ(read().text, std::nullopt);
}

TEST_F(PasteboardTest, brokenUtf8DoesNoHarm) {
    ForeignOwner owner([](ForeignOwner &self, const ForeignOwner::Request &request) {
        self.put(request, request.target, QByteArray("a\xff\xc3z\0", 5));
        self.notify(request, true);
    });
    EXPECT_EQ(read().text, QStringLiteral(u"a\ufffd\ufffdz"));
}

TEST_F(PasteboardTest, aClipboardHoldingOnlyAnImageHasNoText) {
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    ASSERT_TRUE(image.save(&buffer, "PNG"));
    const auto owner = copiedBy(
        QStringLiteral("xclip"),
        xclipInput() + QStringList{QStringLiteral("-t"), QStringLiteral("image/png")}, png);
    ASSERT_TRUE(pasted(QStringLiteral("TARGETS")).contains("image/png"));
    EXPECT_EQ(read().text, std::nullopt);
}

TEST_F(PasteboardTest, textCopiedInThisProgramsOwnWindowsIsRead) {
    QLineEdit field(QStringLiteral("from a field of ours"));
    field.show();
    field.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&field));
    const qint64 before = pasteboard->changeCount();
    QProcess keys;
    keys.start(QStringLiteral("timeout"),
               {QStringLiteral("5"), QStringLiteral("xdotool"), QStringLiteral("key"),
                QStringLiteral("ctrl+a"), QStringLiteral("ctrl+c")});
    ASSERT_TRUE(changesBeyond(before));
    EXPECT_TRUE(QTest::qWaitFor([&] { return keys.state() == QProcess::NotRunning; }, 3000));
    EXPECT_EQ(read().text, QStringLiteral("from a field of ours"));
}

TEST_F(PasteboardTest, writtenTextIsReadBack) {
    pasteboard->setString(QStringLiteral(u"own \U0001F600"));
    EXPECT_EQ(read().text, QStringLiteral(u"own \U0001F600"));
}

TEST_F(PasteboardTest, aLongWrittenTextIsReadBack) {
    const QString text = QStringLiteral(u"own \u20ac ").repeated(200000);
    pasteboard->setString(text);
    const Answer answer = read();
    ASSERT_TRUE(answer.text.has_value());
    EXPECT_TRUE(*answer.text == text);
    EXPECT_TRUE(read().text == text);
}

TEST_F(PasteboardTest, writtenTextIsServedToOtherPrograms) {
    pasteboard->setString(QStringLiteral(u"caf\u00e9"));
    EXPECT_EQ(pasted(), QByteArray("caf\xc3\xa9"));
    EXPECT_EQ(pasted(QStringLiteral("text/plain;charset=utf-8")), QByteArray("caf\xc3\xa9"));
    EXPECT_EQ(pasted(QStringLiteral("STRING")), QByteArray("caf\xe9"));
    const QByteArray targets = pasted(QStringLiteral("TARGETS"));
    for (const char *target : {"TARGETS", "TIMESTAMP", "MULTIPLE", "UTF8_STRING", "STRING"})
        EXPECT_TRUE(targets.contains(target)) << target;
}

TEST_F(PasteboardTest, textBeyondLatin1IsNotServedAsLatin1) {
    pasteboard->setString(QStringLiteral(u"\u20ac 5"));
    EXPECT_FALSE(pasted(QStringLiteral("TARGETS")).split('\n').contains("STRING"));
    EXPECT_EQ(pasted(QStringLiteral("STRING")), QByteArray());
    EXPECT_EQ(pasted(), QByteArray("\xe2\x82\xac 5"));
}

TEST_F(PasteboardTest, aLongTextIsServedInPieces) {
    const QString text = QStringLiteral("line of the former clipboard\n").repeated(100000);
    pasteboard->setString(text);
    EXPECT_TRUE(pasted() == text.toUtf8());
    EXPECT_TRUE(pasted() == text.toUtf8());
}

TEST_F(PasteboardTest, severalTargetsAreServedInOneRequest) {
    pasteboard->setString(QStringLiteral("one"));
    auto client = XConnection::open();
    const xcb_atom_t property = client->atom("PAIRS");
    const xcb_atom_t pairs[] = {client->atom("UTF8_STRING"), client->atom("P1"),
                                client->atom("image/png"),   client->atom("P2"),
                                client->atom("TIMESTAMP"),   client->atom("P3")};
    xcb_change_property(client->xcb(), XCB_PROP_MODE_REPLACE, client->window(), property,
                        client->atom("ATOM_PAIR"), 32, 6, pairs);
    xcb_convert_selection(client->xcb(), client->window(), client->atom("CLIPBOARD"),
                          client->atom("MULTIPLE"), property, XCB_CURRENT_TIME);
    bool notified = false;
    client->addHandler([&](const xcb_generic_event_t &event) {
        notified |=
            (event.response_type & ~0x80) == XCB_SELECTION_NOTIFY &&
            reinterpret_cast<const xcb_selection_notify_event_t &>(event).property == property;
    });
    xcb_flush(client->xcb());
    ASSERT_TRUE(QTest::qWaitFor([&] { return notified; }, 3000));
    const auto value = [&](xcb_atom_t name) {
        const auto reply = xcbReply(xcb_get_property_reply(
            client->xcb(),
            xcb_get_property(client->xcb(), 0, client->window(), name, XCB_ATOM_ANY, 0, 64),
            nullptr));
        return QByteArray(static_cast<const char *>(xcb_get_property_value(reply.get())),
                          xcb_get_property_value_length(reply.get()));
    };
    EXPECT_EQ(value(client->atom("P1")), QByteArray("one"));
    EXPECT_EQ(value(client->atom("P3")).size(), 4);
    xcb_atom_t answered[6] = {};
    ASSERT_EQ(value(property).size(), qsizetype(sizeof answered));
    std::memcpy(answered, value(property).constData(), sizeof answered);
    EXPECT_EQ(answered[1], client->atom("P1"));
    EXPECT_EQ(answered[3], xcb_atom_t(XCB_ATOM_NONE));
}

TEST_F(PasteboardTest, aTakenClipboardIsNoLongerServed) {
    pasteboard->setString(QStringLiteral("ours"));
    const auto owner = xclip("theirs");
    EXPECT_EQ(read().text, QStringLiteral("theirs"));
    EXPECT_EQ(pasted(), QByteArray("theirs"));
}

TEST_F(PasteboardTest, clearingEmptiesTheClipboardOfAnotherProgram) {
    const auto owner = xclip("theirs");
    pasteboard->clearContents();
    EXPECT_EQ(read().text, std::nullopt);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QString());
}

TEST_F(PasteboardTest, theFormerTextCanBePutBackAtOnceAgainAndAgain) {
    for (int i = 0; i < 20; ++i) {
        const auto owner = xclip("copied");
        pasteboard->clearContents();
        pasteboard->setString(QStringLiteral("former %1").arg(i));
        EXPECT_EQ(pasted(), "former " + QByteArray::number(i));
        pasteboard->clearContents();
        pasteboard->setString(QStringLiteral("latter %1").arg(i));
        EXPECT_EQ(pasted(), "latter " + QByteArray::number(i));
    }
}

TEST_F(PasteboardTest, theCounterMovesOncePerChange) {
    const qint64 start = pasteboard->changeCount();
    EXPECT_EQ(pasteboard->changeCount(), start);
    auto owner = xclip("one");
    EXPECT_EQ(pasteboard->changeCount(), start + 1);
    EXPECT_EQ(read().text, QStringLiteral("one"));
    EXPECT_EQ(pasteboard->changeCount(), start + 1) << "reading is no change";
    owner->end();
    ASSERT_TRUE(changesBeyond(start + 1)) << "the owner's end is a change";
    QTest::qWait(50);
    EXPECT_EQ(pasteboard->changeCount(), start + 2);
    pasteboard->setString(QStringLiteral("two"));
    EXPECT_EQ(pasteboard->changeCount(), start + 3);
    pasteboard->clearContents();
    EXPECT_EQ(pasteboard->changeCount(), start + 4);
    owner = xclip("three");
    EXPECT_EQ(pasteboard->changeCount(), start + 5);
}

TEST_F(PasteboardTest, theCounterIsRightThoughTheMainLoopHasNotTurned) {
    const qint64 start = pasteboard->changeCount();
    ForeignOwner one([](ForeignOwner &, const ForeignOwner::Request &) {});
    EXPECT_EQ(pasteboard->changeCount(), start + 1);
    ForeignOwner two([](ForeignOwner &, const ForeignOwner::Request &) {});
    one.own();
    EXPECT_EQ(pasteboard->changeCount(), start + 3);
}

TEST_F(PasteboardTest, aDestroyedWindowOfTheOwnerIsAChange) {
    const qint64 start = pasteboard->changeCount();
    ForeignOwner owner([](ForeignOwner &, const ForeignOwner::Request &) {});
    xcb_destroy_window(owner.connection().xcb(), owner.connection().window());
    owner.sync();
    EXPECT_EQ(pasteboard->changeCount(), start + 2);
}

TEST_F(PasteboardTest, anotherSelectionsChangesAreNotCounted) {
    const qint64 start = pasteboard->changeCount();
    xcb_set_selection_owner(connection->xcb(), connection->window(), XCB_ATOM_PRIMARY,
                            XCB_CURRENT_TIME);
    EXPECT_NE(connection->atom("PINDLE_ANY"), xcb_atom_t(XCB_ATOM_NONE)); // a round trip
    EXPECT_EQ(pasteboard->changeCount(), start);
}

TEST_F(PasteboardTest, aReadEndsQuietlyWithItsPasteboard) {
    ForeignOwner owner([](ForeignOwner &, const ForeignOwner::Request &) {});
    bool completed = false;
    pasteboard->stringForType([&](auto) { completed = true; });
    pasteboard.reset();
    QTest::qWait(300);
    EXPECT_FALSE(completed);
}

TEST_F(PasteboardTest, aTypicalReadTakesAMillisecondOrTwo) {
    const auto owner = xclip("Lunch Friday");
    std::vector<double> times;
    for (int i = 0; i < 50; ++i) {
        const Answer answer = read();
        ASSERT_EQ(answer.text, QStringLiteral("Lunch Friday"));
        times.push_back(answer.milliseconds);
    }
    std::sort(times.begin(), times.end());
    std::printf("clipboard read: p50 %.2f ms, p95 %.2f ms\n", times[25], times[47]);
    EXPECT_LT(times[25], 20);
}
