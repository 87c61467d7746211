#include "PindleMac/platform/linux/accessibility/SelectionChoice.h"
#include "PindleMac/platform/linux/accessibility/TextUnits.h"

#include <gtest/gtest.h>

using namespace pindle;

namespace {

const QString kEmoji = QStringLiteral(u"\U0001F600");
const QString kPadded = QStringLiteral(u"\U0001F600\uFEFF");

FocusReading readingOf(const char *toolkit, uint32_t role, const QString &selected) {
    FocusReading reading;
    reading.kind = FocusReading::Kind::text;
    reading.toolkit = QString::fromLatin1(toolkit);
    reading.role = role;
    reading.selectedText = selected;
    return reading;
}

} // namespace

TEST(TextUnits, onlyThePaddingAfterAnAstralCharacterGoes) {
    struct Row {
        QString text;
        QString clean;
    };
    const Row rows[] = {
        {QString(), QString()},
        {QStringLiteral("plain"), QStringLiteral("plain")},
        {kEmoji, kEmoji},
        {kPadded, kEmoji},
        {kPadded + kPadded + QStringLiteral("x"), kEmoji + kEmoji + QStringLiteral("x")},
        {QStringLiteral(u"\uFEFFa"), QStringLiteral(u"\uFEFFa")},
        {QStringLiteral(u"a\uFEFFb"), QStringLiteral(u"a\uFEFFb")},
        {QStringLiteral(u"\u20ac\uFEFF"), QStringLiteral(u"\u20ac\uFEFF")},
        {kPadded + QStringLiteral(u"\uFEFF"), kEmoji + QStringLiteral(u"\uFEFF")},
    };
    for (const Row &row : rows)
        EXPECT_EQ(textunits::withoutPadding(row.text), row.clean) << row.text.toStdString();
}

TEST(TextUnits, aRangeCountsUtf16UnitsWhateverTheToolkitCounts) {
    struct Row {
        QString before;
        QString selected;
        CFRange range;
    };
    const Row rows[] = {
        {QString(), QString(), {0, 0}},
        {QStringLiteral("at "), QStringLiteral("noon"), {3, 4}},
        {kEmoji, QStringLiteral("noon"), {2, 4}},
        {kPadded + QStringLiteral(" "), QStringLiteral("noon"), {3, 4}},
        {QStringLiteral("x"), kPadded + QStringLiteral("y"), {1, 3}},
        {QStringLiteral(u"\u00fc\u20ac"), kEmoji, {2, 2}},
    };
    for (const Row &row : rows)
        EXPECT_EQ(textunits::rangeAfter(row.before, row.selected), row.range)
            << row.before.toStdString();
}

TEST(TextUnits, offsetsAreToldInTheUnitOfTheToolkit) {
    struct Row {
        QString text;
        qsizetype index;
        qint64 start;
        qint64 end;
        qint64 offset;
    };
    const QString text = kEmoji + QStringLiteral(u" \uFFFC");    // 4 units, 3 code points
    const QString padded = kPadded + QStringLiteral(u" \uFFFC"); // 5 units, 4 code points
    const Row rows[] = {
        {QStringLiteral(u"a\uFFFC"), 1, 0, 2, 1},
        {QStringLiteral(u"a\uFFFC"), 1, 10, 12, 11},
        {text, 3, 0, 4, 3}, // counts units
        {text, 3, 0, 3, 2}, // counts code points
        {text, 3, 100, 103, 102},
        {padded, 4, 0, 4, 3}, // counts units, padded to as many code points
    };
    for (const Row &row : rows)
        EXPECT_EQ(textunits::offsetOf(row.text, row.index, row.start, row.end), row.offset)
            << row.text.toStdString() << row.start << ' ' << row.end;
}

TEST(SelectionChoice, mostToolkitsAreTakenAtTheirWord) {
    const auto reading = readingOf("Qt", 61, QStringLiteral("lunch"));
    EXPECT_FALSE(selectionchoice::wantsPrimary(reading));
    EXPECT_EQ(selectionchoice::selectedText(reading, std::nullopt), QStringLiteral("lunch"));
    EXPECT_TRUE(selectionchoice::offersRange(reading));
}

TEST(SelectionChoice, theToolkitThatMiscountsIsReadThroughPrimaryOrNotAtAll) {
    const auto reading = readingOf("Chromium", 61, QStringLiteral("unch "));
    EXPECT_TRUE(selectionchoice::wantsPrimary(reading));
    EXPECT_EQ(selectionchoice::selectedText(reading, QStringLiteral("lunch")),
              QStringLiteral("lunch"));
    EXPECT_EQ(selectionchoice::selectedText(reading, std::nullopt), QString());
    EXPECT_FALSE(selectionchoice::offersRange(reading));
}

TEST(SelectionChoice, whereNothingIsSelectedAnOldPrimaryIsNotTaken) {
    const auto reading = readingOf("Chromium", 61, QString());
    EXPECT_FALSE(selectionchoice::wantsPrimary(reading));
    EXPECT_EQ(selectionchoice::selectedText(reading, QStringLiteral("old")), QString());
}

TEST(SelectionChoice, aParagraphsPartIsCompletedFromPrimary) {
    const auto reading = readingOf("VCL", atspi::kRoleParagraph, QStringLiteral("second line"));
    EXPECT_TRUE(selectionchoice::wantsPrimary(reading));
    EXPECT_EQ(selectionchoice::selectedText(reading, QStringLiteral("first line\nsecond line")),
              QStringLiteral("first line\nsecond line"));
    EXPECT_EQ(selectionchoice::selectedText(reading, QStringLiteral("something else")),
              QStringLiteral("second line"));
    EXPECT_EQ(selectionchoice::selectedText(reading, std::nullopt), QStringLiteral("second line"));
}

TEST(SelectionChoice, aPasswordFieldAndAHungApplicationOfferNothing) {
    for (const auto kind : {FocusReading::Kind::passwordField, FocusReading::Kind::unanswered,
                            FocusReading::Kind::noText}) {
        FocusReading reading = readingOf("Qt", atspi::kRoleParagraph, QStringLiteral("x"));
        reading.kind = kind;
        EXPECT_FALSE(selectionchoice::wantsPrimary(reading));
        EXPECT_FALSE(selectionchoice::offersRange(reading));
    }
}
