#include "tests/PindleMac/platform/linux/PasteboardFixture.h"

using namespace pasteboardtest;

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
