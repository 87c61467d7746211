#include "tests/PindleMac/logic/TestAccess.h"

#include "PindleMac/Async.h"

namespace pindle {

namespace {

const QString meeting = QStringLiteral("meeting tomorrow at 3");

struct Selection : LogicFixture {
    QString capture() { return resultOf(services.captureSelectedText()); }
    std::exception_ptr captureError() { return errorOf(services.captureSelectedText()); }
    bool clipboardTouched() const {
        return !desktop
                    .logged({QStringLiteral("pasteboard"), QStringLiteral("keys"),
                             QStringLiteral("sleep")})
                    .isEmpty();
    }
    void copies(const QString &text) {
        desktop.eventPosting.onCopy = [this, text] { desktop.pasteboard.copyText(text); };
    }
};

} // namespace

TEST_F(Selection, selectedTextIsTrimmedAndTheClipboardIsNotTouched) {
    desktop.accessibility.select(QStringLiteral("  meeting tomorrow at 3\n"));
    EXPECT_EQ(capture(), meeting);
    EXPECT_FALSE(clipboardTouched());
    EXPECT_EQ(desktop.log, QStringList({QStringLiteral("ax systemwide"),
                                        QStringLiteral("ax read AXFocusedUIElement of 1"),
                                        QStringLiteral("ax read AXSelectedText of 7")}));
}

TEST_F(Selection, attributedTextIsTakenPlain) {
    desktop.accessibility.select({});
    desktop.accessibility.setAttribute(QStringLiteral("AXSelectedText"), AttributedString{meeting});
    EXPECT_EQ(capture(), meeting);
}

TEST_F(Selection, blankSelectedTextMovesOnToTheRange) {
    desktop.accessibility.selectRange(QStringLiteral("Hi: meeting tomorrow at 3"), {4, 21});
    desktop.accessibility.setAttribute(QStringLiteral("AXSelectedText"), QStringLiteral("   "));
    EXPECT_EQ(capture(), meeting);
    EXPECT_FALSE(clipboardTouched());
    EXPECT_EQ(desktop.log, QStringList({QStringLiteral("ax systemwide"),
                                        QStringLiteral("ax read AXFocusedUIElement of 1"),
                                        QStringLiteral("ax read AXSelectedText of 7"),
                                        QStringLiteral("ax read AXSelectedTextRange of 7"),
                                        QStringLiteral("ax read AXValue of 7")}));
}

TEST_F(Selection, aRangeBeyondTheEndIsCutThere) {
    desktop.accessibility.selectRange(QStringLiteral("0123456789abcdefghij"), {5, 100});
    EXPECT_EQ(capture(), QStringLiteral("56789abcdefghij"));
}

TEST_F(Selection, aNegativeLocationStartsAtZero) {
    desktop.accessibility.selectRange(QStringLiteral("0123456789"), {-3, 4});
    EXPECT_EQ(capture(), QStringLiteral("0123"));
}

TEST_F(Selection, aRangeOutsideTheTextGivesUpAndTheClipboardIsTried) {
    desktop.accessibility.selectRange(QStringLiteral("0123456789abcdefghij"), {30, 5});
    copies(meeting);
    EXPECT_EQ(capture(), meeting);
    EXPECT_TRUE(clipboardTouched());
}

TEST_F(Selection, aCaretWithoutSelectionGivesUp) {
    desktop.accessibility.selectRange(QStringLiteral("0123456789"), {3, 0});
    copies(meeting);
    EXPECT_EQ(capture(), meeting);
    EXPECT_FALSE(desktop.log.contains(QStringLiteral("ax read AXValue of 7")));
}

TEST_F(Selection, rangesCountUtf16Units) {
    desktop.accessibility.selectRange(QStringLiteral("😀😀 Lunch 🍕 now"), {5, 8});
    EXPECT_EQ(capture(), QStringLiteral("Lunch 🍕"));
    desktop.accessibility.selectRange(QStringLiteral("a😀b"), {1, 2});
    EXPECT_EQ(capture(), QStringLiteral("😀"));
}

TEST_F(Selection, aRangeOfBlanksGivesUp) {
    desktop.accessibility.selectRange(QStringLiteral("ab   cd"), {2, 3});
    EXPECT_TRUE(isAppError(captureError(), AppError::Case::missingSelection));
    EXPECT_TRUE(clipboardTouched());
}

TEST_F(Selection, valuesOfTheWrongKindAreAbsent) {
    copies(meeting);
    const QList<QPair<QString, AXObject>> wrong = {
        {QStringLiteral("AXFocusedUIElement"), QStringLiteral("text")},
        {QStringLiteral("AXSelectedTextRange"), QStringLiteral("text")},
        {QStringLiteral("AXSelectedTextRange"),
         AXValue{AXValueType::kAXValueTypeIllegal, CFRange{0, 2}}},
        {QStringLiteral("AXSelectedTextRange"), AXValue{AXValueType::kAXValueTypeCFRange, {}}},
        {QStringLiteral("AXValue"), OtherObject{}},
    };
    for (const auto &[attribute, value] : wrong) {
        desktop.accessibility.attributes.clear();
        desktop.accessibility.selectRange(QStringLiteral("0123"), {0, 2});
        desktop.accessibility.setAttribute(attribute, value);
        desktop.log.clear();
        EXPECT_EQ(capture(), meeting) << attribute.toStdString();
        EXPECT_TRUE(clipboardTouched());
    }
}

TEST_F(Selection, aValueBesideAnErrorCodeIsAbsent) {
    desktop.accessibility.select(QStringLiteral("never"));
    desktop.accessibility.attributes[QStringLiteral("AXSelectedText")].error =
        AXError::kAXErrorCannotComplete;
    copies(meeting);
    EXPECT_EQ(capture(), meeting);
}

TEST_F(Selection, successWithoutValueIsAbsent) {
    desktop.accessibility.attributes[QStringLiteral("AXFocusedUIElement")] = {
        AXError::kAXErrorSuccess, std::nullopt};
    copies(meeting);
    EXPECT_EQ(capture(), meeting);
}

TEST_F(Selection, theClipboardWayGoesInItsOrder) {
    desktop.pasteboard.text = QStringLiteral("old note");
    copies(QStringLiteral(" Lunch Friday "));
    EXPECT_EQ(capture(), QStringLiteral("Lunch Friday"));
    EXPECT_EQ(
        desktop.log,
        QStringList(
            {QStringLiteral("ax systemwide"), QStringLiteral("ax read AXFocusedUIElement of 1"),
             QStringLiteral("pasteboard stringForType"), QStringLiteral("pasteboard changeCount"),
             QStringLiteral("sleep 140"), QStringLiteral("keys source 1"),
             QStringLiteral("keys create 8 1"), QStringLiteral("keys create 8 0"),
             QStringLiteral("keys flags 1 0x100000"), QStringLiteral("keys flags 0 0x100000"),
             QStringLiteral("keys post 8 1 0x100000 tap=0"),
             QStringLiteral("keys post 8 0 0x100000 tap=0"), QStringLiteral("sleep 280"),
             QStringLiteral("pasteboard changeCount"), QStringLiteral("pasteboard stringForType"),
             QStringLiteral("pasteboard clearContents"),
             QStringLiteral("pasteboard setString old note")}));
}

TEST_F(Selection, theClipboardHoldsItsOldTextAgainAfterwards) {
    desktop.pasteboard.text = QStringLiteral("old note");
    copies(QStringLiteral("Lunch Friday"));
    EXPECT_EQ(capture(), QStringLiteral("Lunch Friday"));
    EXPECT_EQ(desktop.pasteboard.text, QStringLiteral("old note"));
}

TEST_F(Selection, anEmptyClipboardOrAnImageEndsUpEmpty) {
    copies(meeting);
    EXPECT_EQ(capture(), meeting);
    EXPECT_FALSE(desktop.pasteboard.text.has_value());
    desktop.pasteboard.copyImage();
    EXPECT_EQ(capture(), meeting);
    EXPECT_FALSE(desktop.pasteboard.text.has_value());
    EXPECT_FALSE(desktop.pasteboard.holdsImage);
    desktop.pasteboard.copyText(QString());
    EXPECT_EQ(capture(), meeting);
    EXPECT_FALSE(desktop.pasteboard.text.has_value());
    EXPECT_TRUE(desktop.logged({QStringLiteral("pasteboard setString")}).isEmpty());
}

TEST_F(Selection, nothingCopiedIsAMissingSelectionAndLeavesTheClipboard) {
    desktop.pasteboard.text = QStringLiteral("old note");
    EXPECT_TRUE(isAppError(captureError(), AppError::Case::missingSelection));
    EXPECT_EQ(desktop.pasteboard.text, QStringLiteral("old note"));
    EXPECT_EQ(desktop.pasteboard.count, 0);
}

TEST_F(Selection, anImageCopiedIsAMissingSelectionAndStays) {
    desktop.pasteboard.text = QStringLiteral("old note");
    desktop.eventPosting.onCopy = [this] { desktop.pasteboard.copyImage(); };
    EXPECT_TRUE(isAppError(captureError(), AppError::Case::missingSelection));
    EXPECT_TRUE(desktop.pasteboard.holdsImage);
}

TEST_F(Selection, blanksCopiedAreAMissingSelectionAndStay) {
    desktop.pasteboard.text = QStringLiteral("old note");
    copies(QStringLiteral(" \n "));
    EXPECT_TRUE(isAppError(captureError(), AppError::Case::missingSelection));
    EXPECT_EQ(desktop.pasteboard.text, QStringLiteral(" \n "));
}

TEST_F(Selection, withoutAnEventSourceTheClipboardCannotBeUsed) {
    desktop.eventPosting.sourceAvailable = false;
    EXPECT_TRUE(isAppError(captureError(), AppError::Case::clipboardAccess));
    EXPECT_TRUE(desktop.logged({QStringLiteral("keys post")}).isEmpty());
    EXPECT_EQ(desktop.logged({QStringLiteral("sleep")}), QStringList(QStringLiteral("sleep 140")));
}

TEST_F(Selection, anEventThatCannotBeMadeIsSkippedSilently) {
    desktop.eventPosting.downAvailable = false;
    copies(meeting);
    EXPECT_TRUE(isAppError(captureError(), AppError::Case::missingSelection));
    EXPECT_EQ(desktop.logged({QStringLiteral("keys post")}),
              QStringList(QStringLiteral("keys post 8 0 0x100000 tap=0")));
}

TEST_F(Selection, cancellationInTheFirstWaitPostsNoKeys) {
    desktop.pasteboard.text = QStringLiteral("old note");
    desktop.clock.cancelledSleep = 1;
    EXPECT_THROW(capture(), CancellationError);
    EXPECT_TRUE(desktop.logged({QStringLiteral("keys")}).isEmpty());
    EXPECT_EQ(desktop.pasteboard.text, QStringLiteral("old note"));
}

TEST_F(Selection, cancellationInTheSecondWaitLeavesTheCopiedText) {
    desktop.pasteboard.text = QStringLiteral("old note");
    desktop.clock.cancelledSleep = 2;
    copies(meeting);
    EXPECT_THROW(capture(), CancellationError);
    EXPECT_EQ(desktop.pasteboard.text, meeting);
    EXPECT_TRUE(desktop.logged({QStringLiteral("pasteboard clear")}).isEmpty());
}

TEST_F(Selection, theWaitsSuspendWithoutBlocking) {
    desktop.clock.sleepsPassAtOnce = false;
    copies(meeting);
    auto task = services.captureSelectedText();
    EXPECT_EQ(desktop.clock.sleeping(), 1U);
    desktop.clock.advance(std::chrono::milliseconds(139));
    EXPECT_TRUE(desktop.logged({QStringLiteral("keys")}).isEmpty());
    desktop.clock.advance(std::chrono::milliseconds(1));
    EXPECT_FALSE(desktop.logged({QStringLiteral("keys post")}).isEmpty());
    EXPECT_FALSE(task.isReady());
    desktop.clock.advance(std::chrono::milliseconds(280));
    ASSERT_TRUE(task.isReady());
    EXPECT_EQ(resultOf(std::move(task)), meeting);
}

TEST_F(Selection, twoCapturesAtOnceShareOneCopyAndNeverSeeTheOldClipboard) {
    using std::chrono::milliseconds;
    for (int gap = 10; gap <= 600; gap += 10) {
        desktop.clock.sleepsPassAtOnce = false;
        desktop.pasteboard.text = QStringLiteral("old secret");
        copies(meeting);
        auto first = services.captureSelectedText();
        for (int passed = 0; passed < gap; passed += 10)
            desktop.clock.advance(milliseconds(10));
        auto second = services.captureSelectedText();
        for (int step = 0; step < 100; ++step)
            desktop.clock.advance(milliseconds(10));
        ASSERT_TRUE(first.isReady() && second.isReady()) << gap;
        EXPECT_EQ(resultOf(std::move(first)), meeting) << gap;
        EXPECT_EQ(resultOf(std::move(second)), meeting) << gap;
        EXPECT_EQ(desktop.pasteboard.text, QStringLiteral("old secret")) << gap;
    }
}

TEST_F(Selection, twoCapturesAtOnceShareAFailureAndTheNextOneCopiesAnew) {
    desktop.clock.sleepsPassAtOnce = false;
    auto first = services.captureSelectedText();
    auto second = services.captureSelectedText();
    desktop.clock.advance(std::chrono::milliseconds(140));
    desktop.clock.advance(std::chrono::milliseconds(280));
    EXPECT_TRUE(isAppError(errorOf(std::move(first)), AppError::Case::missingSelection));
    EXPECT_TRUE(isAppError(errorOf(std::move(second)), AppError::Case::missingSelection));
    EXPECT_EQ(desktop.logged({QStringLiteral("keys post 8 1")}).size(), 1);
    desktop.clock.sleepsPassAtOnce = true;
    copies(meeting);
    EXPECT_EQ(capture(), meeting);
}

TEST_F(Selection, onlyTheListedWhiteSpaceIsTrimmed) {
    desktop.accessibility.select(QStringLiteral("\u00a0\u2003\u3000\t\v\f\r\n\u0085x y\u200b\n"));
    EXPECT_EQ(capture(), QStringLiteral("x y\u200b"));
}

} // namespace pindle
