#include "tests/PindleMac/platform/linux/PasteboardFixture.h"

using namespace pasteboardtest;

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
