#include "PindleMac/Program.h"

#include <QJsonDocument>
#include <QJsonObject>
#include <gtest/gtest.h>

namespace pindle {
namespace {

URLResult ask(const QString &endpoint, const QByteArray &body) {
    URLRequest request;
    request.url =
        QUrl(QStringLiteral("https://%1/functions/v1/%2").arg(embeddedServiceHost(), endpoint));
    request.httpBody = body;
    return answerInProcess(request);
}

QJsonObject object(const URLResult &result) {
    return QJsonDocument::fromJson(result.data).object();
}

TEST(AnswerInProcess, everyInstallGetsAKeyOfItsOwn) {
    const QByteArray body = R"({"browser":"macOS App","extension_version":"1.0.0"})";
    const QString first = object(ask(QStringLiteral("on-install"), body))
                              .value(QStringLiteral("anonymized_key"))
                              .toString();
    const QString second = object(ask(QStringLiteral("on-install"), body))
                               .value(QStringLiteral("anonymized_key"))
                               .toString();
    EXPECT_GE(first.size(), 16);
    EXPECT_NE(first, second);
}

TEST(AnswerInProcess, aTextBecomesADraft) {
    const URLResult result = ask(
        QStringLiteral("text-conversion"),
        R"({"text":"Dinner on May 20, 2027 at 7pm","referenceDate":"2027-05-01","referenceTimezone":"Europe/Berlin","anonymized_key":"k"})");
    EXPECT_EQ(result.response.statusCode, 200);
    const QJsonObject reply = object(result);
    EXPECT_TRUE(reply.value(QStringLiteral("success")).toBool());
    const QJsonObject details = reply.value(QStringLiteral("details")).toObject();
    EXPECT_EQ(details.value(QStringLiteral("startDate")).toString(), QStringLiteral("2027-05-20"));
    EXPECT_EQ(details.value(QStringLiteral("startTime")).toString(), QStringLiteral("19:00"));
}

TEST(AnswerInProcess, aBodyThatIsNotARequestGetsARefusalAndNoDraft) {
    const QJsonObject reply = object(ask(QStringLiteral("text-conversion"), "\xff\xfe{"));
    EXPECT_EQ(reply.value(QStringLiteral("success")), QJsonValue(false));
    EXPECT_FALSE(reply.value(QStringLiteral("error")).toString().isEmpty());
    EXPECT_FALSE(reply.contains(QStringLiteral("details")));
}

TEST(AnswerInProcess, anEndpointItDoesNotHaveIsNotFound) {
    EXPECT_EQ(ask(QStringLiteral("elsewhere"), "{}").response.statusCode, 404);
    EXPECT_EQ(ask(QString(), "{}").response.statusCode, 404);
}

} // namespace
} // namespace pindle
