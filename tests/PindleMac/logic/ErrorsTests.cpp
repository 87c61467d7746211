#include "tests/PindleMac/logic/TestAccess.h"

#include <array>

namespace pindle {

namespace {

using Case = AppError::Case;

struct Expectation {
    Case errorCase;
    const char *message;
    bool accessibility;
    bool calendar;
};

constexpr std::array<Expectation, 6> expectations = {{
    {Case::missingSelection,
     "No selected text was captured. Highlight text in any app, then press the shortcut again.",
     true, false},
    {Case::clipboardAccess,
     "Clipboard capture failed. Grant Accessibility permission so the app can copy your current "
     "selection.",
     true, false},
    {Case::accessibilityPermissionDenied,
     "Accessibility access is required to capture highlighted text. Open Accessibility settings "
     "and enable access for Pindle.",
     true, false},
    {Case::missingKey, "The app could not register with the backend.", false, false},
    {Case::calendarPermissionDenied,
     "Calendar access is required to save events. If macOS did not show a prompt, open Calendar "
     "permissions in System Settings and enable access for this app.",
     false, true},
    {Case::invalidDates, "The converted event is missing a valid start date.", false, false},
}};

} // namespace

TEST(Errors, everyCaseHasItsMessageAndItsOffer) {
    for (const auto &expected : expectations) {
        const auto error = std::make_exception_ptr(AppError(expected.errorCase));
        EXPECT_EQ(errorDescription(error), QString::fromLatin1(expected.message));
        EXPECT_EQ(isAccessibilityPermissionError(error), expected.accessibility)
            << expected.message;
        EXPECT_EQ(isCalendarPermissionError(error), expected.calendar) << expected.message;
    }
}

TEST(Errors, anApiErrorWithEmptyTextHasAnEmptyDescription) {
    EXPECT_EQ(AppError::apiError(QString()).errorDescription(), QString());
    EXPECT_EQ(AppError::apiError(QStringLiteral("as it is ")).errorDescription(),
              QStringLiteral("as it is "));
}

TEST(Errors, anErrorOfAnotherKindOffersNothing) {
    const auto platform = std::make_exception_ptr(PlatformError(QStringLiteral("Disk full.")));
    const auto foreign = std::make_exception_ptr(std::runtime_error("out of range"));
    for (const auto &error : {platform, foreign, std::make_exception_ptr(3)}) {
        EXPECT_FALSE(isAccessibilityPermissionError(error));
        EXPECT_FALSE(isCalendarPermissionError(error));
    }
    EXPECT_EQ(errorDescription(platform), QStringLiteral("Disk full."));
    EXPECT_EQ(errorDescription(foreign), QStringLiteral("out of range"));
}

TEST(Errors, anApiErrorThatSpeaksOfPermissionsOffersNothing) {
    const auto error = std::make_exception_ptr(
        AppError::apiError(QStringLiteral("Accessibility permission, calendar permission")));
    EXPECT_FALSE(isAccessibilityPermissionError(error));
    EXPECT_FALSE(isCalendarPermissionError(error));
}

TEST(Errors, theDeniedMessageNamesTheProduct) {
    EXPECT_TRUE(AppError(Case::accessibilityPermissionDenied)
                    .errorDescription()
                    .contains(QStringLiteral("Pindle")));
}

TEST(Errors, casesCompareByCaseAndText) {
    EXPECT_EQ(AppError(Case::missingKey), AppError(Case::missingKey));
    EXPECT_FALSE(AppError(Case::missingKey) == AppError(Case::invalidDates));
    EXPECT_FALSE(AppError::apiError(QStringLiteral("a")) ==
                 AppError::apiError(QStringLiteral("b")));
}

} // namespace pindle
