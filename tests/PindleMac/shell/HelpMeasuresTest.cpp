#include "tests/PindleMac/shell/HelpFixture.h"

namespace pindle {
namespace {

using namespace shelltest;

using HelpMeasures = HelpFixture;

} // namespace

TEST_F(HelpMeasures, theColumnHasItsPaddingAndItsSpacing) {
    show();
    const auto labels = shownViews<QLabel>(*window);
    const auto steps = shownViews<HelpStep>(*window);
    ASSERT_EQ(steps.size(), 4);
    EXPECT_EQ(placeIn(*window, *labels.first()).topLeft(), QPoint(24, 24));
    EXPECT_EQ(gapDown(*labels.first(), *steps[0]), 18);
    for (qsizetype index = 1; index < steps.size(); ++index)
        EXPECT_EQ(gapDown(*steps[index - 1], *steps[index]), 18);
    const auto heading = std::ranges::find_if(
        labels, [](const QLabel *each) { return each->text() == QStringLiteral("Permissions"); });
    EXPECT_EQ(gapDown(*steps[3], **heading), 18);
    EXPECT_EQ(gapDown(**heading, card(accessibility)), 12);
    EXPECT_EQ(gapDown(card(accessibility), card(calendar)), 12);
    EXPECT_EQ(gapDown(card(calendar), *labels.last()), 18);
    EXPECT_EQ(gapDown(*labels.last(), *window->findChild<DisclosureGroup *>()), 18);
    for (const QWidget *part :
         std::initializer_list<const QWidget *>{steps[0], &card(accessibility), &card(calendar)}) {
        EXPECT_EQ(placeIn(*window, *part).left(), 24);
        EXPECT_EQ(placeIn(*window, *part).width(), 440 - 2 * 24);
    }
}

TEST_F(HelpMeasures, theStepsNumbersStandInCirclesOfTheAccentColour) {
    show();
    const auto steps = shownViews<HelpStep>(*window);
    for (HelpStep *step : steps) {
        const auto labels = shownViews<QLabel>(*step);
        QLabel *number = labels[0]->text().size() == 1 ? labels[0] : labels[1];
        QLabel *text = labels[0] == number ? labels[1] : labels[0];
        EXPECT_EQ(number->size(), QSize(24, 24));
        EXPECT_EQ(gapAcross(*number, *text), 12);
        expectColour(PartPicture(*number).at(12, 2), windowtheme::accent(number->palette()));
        expectRadius(*number, 12, 1);
    }
}

TEST_F(HelpMeasures, theCardsHaveTheirPaddingTheirFillAndTheirCorners) {
    show();
    for (const QString &title : {accessibility, calendar}) {
        PermissionCard &each = card(title);
        const auto labels = shownViews<QLabel>(each);
        expectColour(PartPicture(each).at(each.width() / 2.0, 3), colour(0, 0, 0, 0.04));
        expectRadius(each, 14, 0.04);
        for (const QLabel *label : labels) {
            if (label->text() == title) {
                EXPECT_EQ(placeIn(each, *label).left(), 14);
            }
        }
        auto *badge = shownViews<Card>(each).value(0);
        ASSERT_TRUE(badge);
        expectColour(PartPicture(*badge).at(badge->width() / 2.0, 2), colour(0, 0, 0, 0.06));
        expectRadius(*badge, badge->height() / 2.0, 0.06);
        EXPECT_EQ(placeIn(each, *badge).right() + 1, each.width() - 14);
        EXPECT_EQ(placeIn(each, *badge).top(), 14);
        const QWidget *status = badge->findChild<QLabel *>();
        EXPECT_EQ(placeIn(*badge, *status).topLeft(), QPoint(10, 5));
        EXPECT_EQ(badge->size() - status->size(), QSize(20, 10));
        const auto buttons = shownViews<WindowButton>(each);
        EXPECT_EQ(gapAcross(*buttons[0], *buttons[1]), 10);
    }
}

TEST_F(HelpMeasures, theRowsHaveTheirPaddingTheirFillAndTheirCorners) {
    show();
    unfold();
    const auto rows = shownViews<DebugRow>(*window);
    for (qsizetype index = 0; index < rows.size(); ++index) {
        DebugRow &row = *rows[index];
        EXPECT_EQ(row.width(), 440 - 2 * 24);
        expectColour(PartPicture(row).at(row.width() / 2.0, 3), colour(0, 0, 0, 0.05));
        expectRadius(row, 10, 0.05);
        const QLabel &label = *shownViews<QLabel>(row).first();
        const SelectableText &value = *shownViews<SelectableText>(row).first();
        EXPECT_EQ(placeIn(row, label).topLeft(), QPoint(10, 10));
        EXPECT_EQ(gapDown(label, value), 4);
        EXPECT_EQ(placeIn(row, value).bottom() + 1, row.height() - 10);
        if (index > 0) {
            EXPECT_EQ(gapDown(*rows[index - 1], row), 10);
        }
    }
    EXPECT_EQ(gapDown(header(), *rows[0]), 8);
}

TEST_F(HelpMeasures, prominentButtonsAreFilledWithTheAccentColour) {
    AppearanceGuard guard;
    show();
    for (const auto &[name, palette] : desktopPalettes()) {
        QApplication::setPalette(palette);
        settle();
        expectColour(PartPicture(action(accessibility, prompt)).at(8, 14),
                     windowtheme::accent(palette));
        expectColour(PartPicture(action(accessibility, openSettings)).at(8, 14),
                     windowtheme::controlFill(palette));
    }
}

TEST_F(HelpMeasures, theWindowFollowsTheDesktopsPalette) {
    AppearanceGuard guard;
    show();
    unfold();
    for (const auto &[name, palette] : desktopPalettes()) {
        QApplication::setPalette(palette);
        settle();
        EXPECT_EQ(window->grab().toImage().pixelColor(3, 300), palette.color(QPalette::Window))
            << qPrintable(name);
        const auto *value = shownViews<SelectableText>(*window).first();
        EXPECT_EQ(value->palette().color(QPalette::Text),
                  windowtheme::ink(windowtheme::Ink::primary, palette))
            << qPrintable(name);
    }
}

} // namespace pindle
