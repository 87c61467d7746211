#include "tests/PindleMac/logic/TestAccess.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <random>

namespace pindle {

namespace {

using nlohmann::json;

json parsed(const QByteArray &body) {
    return json::parse(body.toStdString());
}

const QByteArray fullDetails =
    R"({"title":"T","description":"D","location":"L","startDate":"2025-03-14","endDate":"",)"
    R"("startTime":"09:00","endTime":"","timeZone":"Europe/Berlin"})";

QString decodingError(const QByteArray &body) {
    try {
        decodeTextConversionResponse(body);
    } catch (const DecodingError &error) {
        return error.localizedDescription();
    }
    return {};
}

} // namespace

TEST(WireFormat, aReplyWithSuccessAloneDecodes) {
    const auto reply = decodeTextConversionResponse(R"({"success":true})");
    EXPECT_TRUE(reply.success);
    EXPECT_FALSE(reply.details || reply.userMessage || reply.error);
}

TEST(WireFormat, nullReadsAsAbsent) {
    const auto reply = decodeTextConversionResponse(
        R"({"success":true,"details":null,"error":null,"user_message":null})");
    EXPECT_EQ(reply, decodeTextConversionResponse(R"({"success":true})"));
}

TEST(WireFormat, aReplyWithoutSuccessFails) {
    EXPECT_TRUE(
        decodingError(R"({"details":)" + fullDetails + "}").contains(QStringLiteral("success")));
}

TEST(WireFormat, detailsWithATitleAloneFail) {
    EXPECT_TRUE(decodingError(R"({"success":true,"details":{"title":"T"}})")
                    .contains(QStringLiteral("description")));
}

TEST(WireFormat, aStringIsNotABoolean) {
    EXPECT_FALSE(decodingError(R"({"success":"true"})").isEmpty());
    EXPECT_FALSE(decodingError(R"({"success":1})").isEmpty());
    EXPECT_FALSE(decodingError(R"({"success":null})").isEmpty());
}

TEST(WireFormat, anOptionalValueOfAnotherTypeFails) {
    EXPECT_FALSE(decodingError(R"({"success":true,"user_message":3})").isEmpty());
    EXPECT_FALSE(decodingError(R"({"success":true,"error":[]})").isEmpty());
    EXPECT_FALSE(decodingError(R"({"success":true,"details":"x"})").isEmpty());
}

TEST(WireFormat, unknownKeysAreIgnored) {
    const auto reply =
        decodeTextConversionResponse(R"({"success":true,"more":{"deep":[1]},"details":)" +
                                     fullDetails.chopped(1) + R"(,"allDay":true}})");
    ASSERT_TRUE(reply.details.has_value());
    EXPECT_EQ(reply.details->title, QStringLiteral("T"));
}

TEST(WireFormat, anEmptyIdentityKeyDecodesAndANullOneFails) {
    EXPECT_EQ(decodeInstallResponse(R"({"anonymized_key":"","x":1})").anonymizedKey, QString());
    EXPECT_THROW(decodeInstallResponse(R"({"anonymized_key":null})"), DecodingError);
    EXPECT_THROW(decodeInstallResponse(R"({"anonymized_key":7})"), DecodingError);
    EXPECT_THROW(decodeInstallResponse(R"({})"), DecodingError);
}

TEST(WireFormat, keysAreExact) {
    EXPECT_THROW(decodeInstallResponse(R"({"anonymizedKey":"k"})"), DecodingError);
    EXPECT_THROW(decodeInstallResponse(R"({"Anonymized_Key":"k"})"), DecodingError);
}

TEST(WireFormat, aBodyThatIsNoObjectFails) {
    for (const QByteArray body : {"", "nonsense", "[]", "3", "{", "\xff\xfe", "null"})
        EXPECT_FALSE(decodingError(body).isEmpty()) << body.toStdString();
}

TEST(WireFormat, anInstallRequestWithoutEmailHasExactlyTwoKeys) {
    const auto body =
        encode(InstallRequest{QStringLiteral("macOS App"), QStringLiteral("1.2"), {}});
    EXPECT_EQ(parsed(body), json::parse(R"({"browser":"macOS App","extension_version":"1.2"})"));
    EXPECT_FALSE(body.contains('\n'));
    EXPECT_FALSE(body.contains(": "));
}

TEST(WireFormat, anEmailIsWrittenWhenPresent) {
    const auto body =
        encode(InstallRequest{QStringLiteral("b"), QStringLiteral("v"), QStringLiteral("e")});
    EXPECT_EQ(parsed(body).at("email"), "e");
}

TEST(WireFormat, aConversionRequestWritesEveryMemberEvenWhenEmpty) {
    const auto body = parsed(encode(TextConversionRequest{}));
    EXPECT_EQ(body, json::parse(R"({"text":"","referenceDate":"","referenceTimezone":"",
                                    "anonymized_key":""})"));
}

TEST(WireFormat, textTravelsUnchanged) {
    const QString text = QStringLiteral("  \"Lunch\"\n\t😀 \\ Zürich ");
    const auto body = encode(TextConversionRequest{text, {}, {}, {}});
    EXPECT_EQ(QString::fromStdString(parsed(body).at("text").get<std::string>()), text);
}

TEST(WireFormat, aDraftLackingEndTimeIsRejectedAsAWhole) {
    QByteArray body = fullDetails;
    body.replace(R"("endTime":"",)", "");
    EXPECT_THROW(decodeCalendarEventDetails(body), DecodingError);
}

TEST(WireFormat, aDraftWritesAndReadsItsEightKeys) {
    const auto details = decodeCalendarEventDetails(fullDetails);
    EXPECT_EQ(parsed(encode(details)), parsed(fullDetails));
    EXPECT_EQ(details, decodeCalendarEventDetails(encode(details)));
}

TEST(WireFormat, anyBytesDecodeOrThrowADecodingError) {
    std::mt19937 random(20261121); // always the same bytes
    const QByteArray whole =
        R"({"success":true,"user_message":"é","error":null,"details":)" + fullDetails + "}";
    int decoded = 0;
    int refused = 0;
    for (int round = 0; round < 20'000; ++round) {
        QByteArray body = whole;
        for (auto change = random() % 4; change > 0; --change) {
            const auto at = static_cast<qsizetype>(random() % static_cast<unsigned>(body.size()));
            if (random() % 3 == 0)
                body.truncate(std::max<qsizetype>(at, 1));
            else
                body[at] = static_cast<char>(random());
        }
        try {
            decodeTextConversionResponse(body);
            ++decoded;
        } catch (const DecodingError &) {
            ++refused;
        }
    }
    EXPECT_GT(decoded, 1000);
    EXPECT_GT(refused, 1000);
}

TEST(WireFormat, aDecodingErrorNeverRepeatsTheValue) {
    EXPECT_FALSE(decodingError(R"({"success":"my secret"})").contains(QStringLiteral("secret")));
}

} // namespace pindle
