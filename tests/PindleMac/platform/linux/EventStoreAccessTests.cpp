#include "EventStoreFixture.h"

#include <QDir>
#include <QFileInfo>

namespace pindle {
namespace {

struct CalendarAccess : CalendarFolder {
    QList<bool> granted;

    void request() {
        store->requestWriteOnlyAccessToEvents(
            [this](bool yes, const std::optional<PlatformError> &error) {
                EXPECT_FALSE(error);
                granted.append(yes);
            });
    }
    bool answers(qsizetype count) {
        return waitUntil([&] { return granted.size() == count; });
    }
};

TEST_F(CalendarAccess, theFirstRequestAsksAndTheAnswerIsKept) {
    EXPECT_EQ(store->authorizationStatus(), EKAuthorizationStatus::notDetermined);
    EXPECT_TRUE(user.asked.isEmpty());
    request();
    ASSERT_EQ(user.asked.size(), 1);
    EXPECT_EQ(user.asked.first().refuse, QStringLiteral("Don’t Allow"));
    EXPECT_EQ(user.asked.first().accept, QStringLiteral("Allow"));
    user.answer(QuestionAnswer::accepted);
    ASSERT_TRUE(answers(1));
    EXPECT_EQ(granted, QList<bool>{true});
    EXPECT_EQ(store->authorizationStatus(), EKAuthorizationStatus::writeOnly);
    EXPECT_EQ(modeOf(permissions), 0600U);

    AccessDecisions nextStart(permissions);
    IcsFolderEventStore again(nextStart, user.ask(), folder);
    EXPECT_EQ(again.authorizationStatus(), EKAuthorizationStatus::writeOnly);
    request();
    ASSERT_TRUE(answers(2));
    EXPECT_EQ(user.asked.size(), 1);
}

TEST_F(CalendarAccess, aRefusalIsKeptAndNotAskedAgain) {
    request();
    user.answer(QuestionAnswer::refused);
    ASSERT_TRUE(answers(1));
    request();
    ASSERT_TRUE(answers(2));
    EXPECT_EQ(granted, (QList<bool>{false, false}));
    EXPECT_EQ(user.asked.size(), 1);
    EXPECT_EQ(store->authorizationStatus(), EKAuthorizationStatus::denied);
}

TEST_F(CalendarAccess, aClosedQuestionIsNotGrantedAndAskedAgain) {
    request();
    user.answer(QuestionAnswer::none);
    ASSERT_TRUE(answers(1));
    EXPECT_EQ(granted, QList<bool>{false});
    EXPECT_EQ(store->authorizationStatus(), EKAuthorizationStatus::notDetermined);
    EXPECT_FALSE(QFileInfo::exists(permissions));
    request();
    EXPECT_EQ(user.asked.size(), 2);
}

TEST_F(CalendarAccess, requestsMadeMeanwhileShareTheQuestion) {
    request();
    request();
    request();
    EXPECT_EQ(user.asked.size(), 1);
    user.answer(QuestionAnswer::accepted);
    ASSERT_TRUE(answers(3));
    EXPECT_EQ(granted, (QList<bool>{true, true, true}));
}

TEST_F(CalendarAccess, noAnswerArrivesInTheCallersFrame) {
    allow();
    request();
    EXPECT_TRUE(granted.isEmpty());
    EXPECT_TRUE(answers(1));
}

TEST_F(CalendarAccess, anAnswerAfterTheStoreIsGoneIsDropped) {
    request();
    store.reset();
    user.answer(QuestionAnswer::accepted);
    EXPECT_FALSE(waitUntil([this] { return !granted.isEmpty(); }, 50ms));
}

TEST_F(CalendarAccess, aDamagedPermissionsFileIsKeptAsideAndAskedAgain) {
    QDir().mkpath(QFileInfo(permissions).path());
    putFile(permissions, "{\"calendar\": \"wri");
    EXPECT_EQ(store->authorizationStatus(), EKAuthorizationStatus::notDetermined);
    const QStringList left = names(QFileInfo(permissions).path());
    ASSERT_EQ(left.size(), 1);
    EXPECT_TRUE(left.first().startsWith(QStringLiteral("permissions.json.damaged-")));
    request();
    EXPECT_EQ(user.asked.size(), 1);
}

TEST_F(CalendarAccess, anUnknownDecisionCountsAsNone) {
    QDir().mkpath(QFileInfo(permissions).path());
    for (const char *text : {R"({"calendar": "everything"})", R"({"calendar": true})", "{}"}) {
        putFile(permissions, text);
        EXPECT_EQ(store->authorizationStatus(), EKAuthorizationStatus::notDetermined) << text;
    }
}

TEST_F(CalendarAccess, aForgottenDecisionIsAskedForAgain) {
    allow();
    decisions.forgetCalendar();
    EXPECT_EQ(store->authorizationStatus(), EKAuthorizationStatus::notDetermined);
    request();
    EXPECT_EQ(user.asked.size(), 1);
}

} // namespace
} // namespace pindle
