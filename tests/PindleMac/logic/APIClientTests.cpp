#include "tests/PindleMac/logic/TestAccess.h"

#include <nlohmann/json.hpp>

namespace pindle {

namespace {

using fake::FakeURLSession;
using nlohmann::json;

struct Service : LogicFixture {
    void reply(int status, const QByteArray &body) {
        desktop.urlSession.reply = [=](const URLRequest &) {
            return FakeURLSession::http(status, body);
        };
    }
    QString conversionMessage() {
        desktop.userDefaults.values[AppPreferences::anonymizedKey] = QStringLiteral("k");
        const auto error = errorOf(services.convertSelection(QStringLiteral("text")));
        return error ? errorDescription(error) : QStringLiteral("(no error)");
    }
    json body(std::size_t index) const {
        return json::parse(desktop.urlSession.requests.at(index).httpBody.toStdString());
    }
};

} // namespace

TEST_F(Service, aRequestIsAJsonPostWithOneHeaderAndSixtySeconds) {
    desktop.urlSession.convertsTo({});
    resultOf(services.convertSelection(QStringLiteral(" Lunch ")));
    ASSERT_EQ(desktop.urlSession.requests.size(), 2U);
    const auto &install = desktop.urlSession.requests[0];
    const auto &conversion = desktop.urlSession.requests[1];
    const APIClient client(desktop.urlSession, desktop.clock);
    EXPECT_EQ(install.url.toString(), client.baseURL().toString() + QStringLiteral("/on-install"));
    EXPECT_EQ(conversion.url.toString(),
              client.baseURL().toString() + QStringLiteral("/text-conversion"));
    EXPECT_EQ(client.baseURL().scheme(), QStringLiteral("https"));
    EXPECT_EQ(client.baseURL().path(), QStringLiteral("/functions/v1"));
    for (const auto &request : {install, conversion}) {
        EXPECT_EQ(request.httpMethod, "POST");
        ASSERT_EQ(request.headers.size(), 1);
        EXPECT_EQ(request.headers[0].first, "Content-Type");
        EXPECT_EQ(request.headers[0].second, "application/json");
        EXPECT_EQ(request.timeoutInterval, std::chrono::seconds(60));
    }
    EXPECT_EQ(body(0), json::parse(R"({"browser":"macOS App","extension_version":"3.2.1"})"));
    EXPECT_EQ(body(1), json::parse(R"({"text":" Lunch ","referenceDate":"2025-03-10",
        "referenceTimezone":"Europe/Berlin","anonymized_key":"key-1"})"));
}

TEST_F(Service, aStoredKeyIsReusedWithoutACall) {
    desktop.userDefaults.values[AppPreferences::anonymizedKey] = QStringLiteral("old");
    EXPECT_EQ(resultOf(services.ensureRegistered()), QStringLiteral("old"));
    EXPECT_TRUE(desktop.urlSession.requests.empty());
}

TEST_F(Service, anEmptyStoredKeyRegistersAgain) {
    desktop.userDefaults.values[AppPreferences::anonymizedKey] = QString();
    EXPECT_EQ(resultOf(services.ensureRegistered()), QStringLiteral("key-1"));
    EXPECT_EQ(desktop.urlSession.requestsTo(QStringLiteral("on-install")), 1);
    EXPECT_EQ(desktop.userDefaults.values[AppPreferences::anonymizedKey].toString(),
              QStringLiteral("key-1"));
}

TEST_F(Service, anEmptyKeyFromTheServiceIsStoredAndAskedForAgain) {
    desktop.urlSession.installBody = R"({"anonymized_key":""})";
    EXPECT_EQ(resultOf(services.ensureRegistered()), QString());
    EXPECT_TRUE(desktop.userDefaults.values.contains(AppPreferences::anonymizedKey));
    resultOf(services.ensureRegistered());
    EXPECT_EQ(desktop.urlSession.requestsTo(QStringLiteral("on-install")), 2);
}

TEST_F(Service, aBundleWithoutVersionRegistersAsOneZeroZero) {
    for (const QVariant &version : {QVariant(), QVariant(7)}) {
        desktop.bundle.version = version;
        desktop.userDefaults.values.clear();
        resultOf(services.ensureRegistered());
        EXPECT_EQ(body(desktop.urlSession.requests.size() - 1).at("extension_version"), "1.0.0");
    }
}

TEST_F(Service, aFailedRegistrationStoresNothingAndEndsTheConversion) {
    desktop.urlSession.reply = [](const URLRequest &) {
        return FakeURLSession::failure(QStringLiteral("The network connection was lost."));
    };
    const auto error = errorOf(services.convertSelection(QStringLiteral("x")));
    EXPECT_EQ(errorDescription(error), QStringLiteral("The network connection was lost."));
    EXPECT_FALSE(desktop.userDefaults.values.contains(AppPreferences::anonymizedKey));
    EXPECT_EQ(desktop.urlSession.requestsTo(QStringLiteral("text-conversion")), 0);
    desktop.urlSession.reply = nullptr;
    EXPECT_EQ(resultOf(services.ensureRegistered()), QStringLiteral("key-1"));
}

TEST_F(Service, twoCallersWithoutKeyBothRegisterAndTheLastStoredWins) {
    int count = 0;
    desktop.urlSession.reply = [&](const URLRequest &) {
        return FakeURLSession::http(200, R"({"anonymized_key":"key-)" +
                                             QByteArray::number(++count) + R"("})");
    };
    desktop.urlSession.hold = true;
    QString first;
    QString second;
    const auto keep = [this](QString &key) -> QCoro::Task<void> {
        key = co_await services.ensureRegistered();
    };
    auto one = keep(first);
    auto two = keep(second);
    EXPECT_EQ(desktop.urlSession.held.count(), 2U);
    desktop.urlSession.held.take(1)();
    desktop.urlSession.held.take(0)();
    EXPECT_EQ(first, QStringLiteral("key-1"));
    EXPECT_EQ(second, QStringLiteral("key-2"));
    EXPECT_EQ(desktop.userDefaults.values[AppPreferences::anonymizedKey].toString(),
              QStringLiteral("key-1"));
}

TEST_F(Service, status204PassesAndItsEmptyBodyFailsToDecode) {
    reply(204, "");
    EXPECT_TRUE(conversionMessage().startsWith(
        QStringLiteral("The reply of the conversion service could not be read")));
}

TEST_F(Service, aBlankErrorBodyGivesTheStatus) {
    for (const QByteArray &blank : {QByteArray(), QByteArray(" \r\n\t "), QByteArray("\xff\xfe")}) {
        reply(500, blank);
        EXPECT_EQ(conversionMessage(), QStringLiteral("Server request failed with status 500."));
    }
    reply(503, "");
    EXPECT_EQ(conversionMessage(), QStringLiteral("Server request failed with status 503."));
}

TEST_F(Service, anErrorBodyIsShownTrimmedAndVerbatim) {
    reply(400, "\n {\"error\": \"No <b>credit</b> %1\"} \n");
    EXPECT_EQ(conversionMessage(), QStringLiteral("{\"error\": \"No <b>credit</b> %1\"}"));
}

TEST_F(Service, aRedirectThatArrivesIsAFailure) {
    reply(302, "");
    EXPECT_EQ(conversionMessage(), QStringLiteral("Server request failed with status 302."));
    reply(199, "");
    EXPECT_EQ(conversionMessage(), QStringLiteral("Server request failed with status 199."));
    reply(300, "");
    EXPECT_EQ(conversionMessage(), QStringLiteral("Server request failed with status 300."));
}

TEST_F(Service, anyStatusFrom200To299IsAccepted) {
    for (int status : {200, 201, 299}) {
        reply(status, R"({"success":true})");
        EXPECT_EQ(conversionMessage(), QStringLiteral("(no error)"));
    }
}

TEST_F(Service, aReplyThatIsNotHttpIsUnexpected) {
    desktop.urlSession.reply = [](const URLRequest &) { return URLResult{}; };
    EXPECT_EQ(conversionMessage(), QStringLiteral("Unexpected response from the server."));
}

TEST_F(Service, aRefusalCarriesItsErrorEvenWhenEmpty) {
    reply(200, R"({"success":false,"error":"No date found."})");
    EXPECT_EQ(conversionMessage(), QStringLiteral("No date found."));
    reply(200, R"({"success":false,"error":""})");
    EXPECT_EQ(conversionMessage(), QString());
    reply(200, R"({"success":false})");
    EXPECT_EQ(conversionMessage(), QStringLiteral("Text conversion failed."));
    reply(200, R"({"success":false,"error":null})");
    EXPECT_EQ(conversionMessage(), QStringLiteral("Text conversion failed."));
}

TEST_F(Service, successWithoutDetailsIsReturned) {
    reply(200, R"({"success":true,"user_message":"hm"})");
    desktop.userDefaults.values[AppPreferences::anonymizedKey] = QStringLiteral("k");
    const auto result = resultOf(services.convertSelection(QStringLiteral("x")));
    EXPECT_FALSE(result.details.has_value());
    EXPECT_EQ(result.userMessage, QStringLiteral("hm"));
}

TEST_F(Service, aTransportErrorIsPassedUpUnchanged) {
    desktop.urlSession.reply = [](const URLRequest &) {
        return FakeURLSession::failure(QStringLiteral("The request timed out."));
    };
    EXPECT_EQ(conversionMessage(), QStringLiteral("The request timed out."));
}

TEST_F(Service, theReferenceDateIsTheLocalOne) {
    using namespace std::chrono;
    desktop.clock.instant = sys_days{2025y / 12 / 31} + hours{14} + minutes{30};
    desktop.clock.zone = {QStringLiteral("Asia/Tokyo")}; // 23:30 there
    desktop.urlSession.convertsTo({});
    resultOf(services.convertSelection(QStringLiteral("x")));
    EXPECT_EQ(body(1).at("referenceDate"), "2025-12-31");
    desktop.clock.zone = {QStringLiteral("America/Los_Angeles")};
    desktop.clock.instant =
        sys_days{2026y / 1 / 1} + hours{7} + minutes{30}; // 23:30 the day before
    resultOf(services.convertSelection(QStringLiteral("x")));
    EXPECT_EQ(body(2).at("referenceDate"), "2025-12-31");
    EXPECT_EQ(body(2).at("referenceTimezone"), "America/Los_Angeles");
}

} // namespace pindle
