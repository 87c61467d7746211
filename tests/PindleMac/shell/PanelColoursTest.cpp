#include "PindleMac/views/ActionButton.h"
#include "PindleMac/views/Card.h"
#include "PindleMac/views/CloseButton.h"
#include "PindleMac/views/MessageCard.h"
#include "PindleMac/views/ShortcutPill.h"
#include "PindleMac/views/SkeletonBar.h"
#include "tests/PindleMac/shell/PartPicture.h"
#include "tests/PindleMac/shell/ViewProbe.h"

// The panel's colours, opacities and corners in plain figures: they are not taken from the code
// that they are to check.

namespace pindle {
namespace {

using namespace shelltest;

/// What is seen of one translucent colour over another.
QColor layered(const QColor &over, const QColor &below) {
    const double top = over.alphaF();
    const double rest = below.alphaF() * (1 - top);
    const double whole = top + rest;
    const auto mix = [&](double upper, double lower) {
        return (upper * top + lower * rest) / whole;
    };
    return colour(mix(over.redF(), below.redF()), mix(over.greenF(), below.greenF()),
                  mix(over.blueF(), below.blueF()), whole);
}

TEST(PanelColours, theBackgroundRunsBetweenItsTwoColours) {
    ShownView shown;
    shown.view.setRoundedCorners(false);
    const PartPicture picture(shown.view);
    const double right = shown.view.width() - 0.5;
    const double bottom = shown.view.height() - 0.5;
    expectColour(picture.at(0, 0), colour(0.985, 0.962, 0.925));
    expectColour(picture.at(right, bottom), colour(0.918, 0.958, 0.936));
    // The two other corners lie where the diagonal's share is that of their own side.
    const double diagonal = right * right + bottom * bottom;
    for (const auto &[x, y] : {std::pair(right, 0.0), std::pair(0.0, bottom)}) {
        const double share = (x * right + y * bottom) / diagonal;
        expectColour(picture.at(x, y),
                     colour(0.985 - 0.067 * share, 0.962 - 0.004 * share, 0.925 + 0.011 * share));
    }
}

TEST(PanelColours, thePanelClipsAtRadius28) {
    ShownView shown;
    expectRadius(shown.view, 28, 1);
}

TEST(PanelColours, aCardIsAWhiteVeilOf62PercentWithRadius18) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const auto cards = shownViews<SectionCard>(shown.view);
    ASSERT_EQ(cards.size(), 2);
    for (SectionCard *card : cards) {
        expectColour(PartPicture(*card).at(40, 6), colour(1, 1, 1, 0.62));
        expectRadius(*card, 18, 0.62);
    }
}

TEST(PanelColours, theCloseButtonIsACircleOfWhiteAt72Percent) {
    ShownView shown;
    auto *close = shown.view.findChild<CloseButton *>();
    expectColour(PartPicture(*close).at(4, 14), colour(1, 1, 1, 0.72));
    expectRadius(*close, 14, 0.72);
}

TEST(PanelColours, thePillIsACapsuleOfBlackAt8Percent) {
    ShownView shown;
    auto *pill = shown.view.findChild<ShortcutPill *>();
    expectColour(PartPicture(*pill).at(6, pill->height() / 2.0), colour(0, 0, 0, 0.08));
    expectRadius(*pill, pill->height() / 2.0, 0.08);
}

TEST(PanelColours, theSkeletonsBlockIsWhiteAt55PercentWithRadius14) {
    ShownView shown;
    TestAccess::setPhase(shown.model, ParserPhase::parsing);
    settle();
    QWidget *block = shownViews<SkeletonBar>(shown.view).first()->parentWidget();
    expectColour(PartPicture(*block).at(100, 9), colour(1, 1, 1, 0.55));
    expectRadius(*block, 14, 0.55);
}

TEST(PanelColours, aSkeletonBarIsBlackAt8PercentAndRoundAtItsEnds) {
    ShownView shown;
    TestAccess::setPhase(shown.model, ParserPhase::parsing);
    settle();
    const auto bars = shownViews<SkeletonBar>(shown.view);
    ASSERT_EQ(bars.size(), 4);
    for (SkeletonBar *bar : bars) {
        expectColour(PartPicture(*bar).at(90, 6), colour(0, 0, 0, 0.08));
        // A radius of 8 is more than there is room for.
        expectRadius(*bar, 6, 0.08);
    }
}

TEST(PanelColours, theEditorLiesOnWhiteAt75PercentWithRadius12) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    QWidget *ground = shown.view.findChild<QPlainTextEdit *>()->parentWidget();
    expectColour(PartPicture(*ground).at(6, 42), colour(1, 1, 1, 0.75));
    expectRadius(*ground, 12, 0.75);
}

TEST(PanelColours, aTileIsWhiteAt74PercentWithRadius14) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const auto tiles = shownViews<CompactCalendarButton>(shown.view);
    ASSERT_EQ(tiles.size(), 4);
    for (CompactCalendarButton *tile : tiles) {
        expectColour(PartPicture(*tile).at(5, 39), colour(1, 1, 1, 0.74));
        expectRadius(*tile, 14, 0.74);
    }
}

TEST(PanelColours, aBadgeIsItsSymbolsColourAt12Percent) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    for (CompactCalendarButton *tile : shownViews<CompactCalendarButton>(shown.view)) {
        QColor tint = tile->iconTint();
        tint.setAlphaF(0.12F);
        const double leftInBadge = tile->width() / 2.0 - 14;
        expectColour(PartPicture(*tile).at(leftInBadge, 28), layered(tint, colour(1, 1, 1, 0.74)));
    }
}

TEST(PanelColours, anOfferIsACapsuleOfWhiteAt75Percent) {
    ShownView shown;
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    TestAccess::setOffers(shown.model, true, false);
    settle();
    const auto offers = shownViews<ActionButton>(shown.view);
    ASSERT_EQ(offers.size(), 1);
    ActionButton *offer = offers.first();
    expectColour(PartPicture(*offer).at(6, offer->height() / 2.0), colour(1, 1, 1, 0.75));
    expectRadius(*offer, offer->height() / 2.0, 0.75);
}

TEST(PanelColours, aMessageCardHasRadius14AndItsTint) {
    ShownView shown;
    TestAccess::setError(shown.model, QStringLiteral("a"));
    TestAccess::setSuccess(shown.model, QStringLiteral("b"));
    TestAccess::setUserMessage(shown.model, QStringLiteral("c"));
    settle();
    struct Tint {
        double opacity;
        int hue;
    };
    // Red, green and yellow.
    const QList<Tint> tints{{0.14, 3}, {0.14, 135}, {0.18, 48}};
    const auto cards = shownViews<MessageCard>(shown.view);
    ASSERT_EQ(cards.size(), 3);
    for (qsizetype index = 0; index < 3; ++index) {
        const QColor seen = PartPicture(*cards[index]).at(200, 6);
        EXPECT_NEAR(seen.alphaF(), tints[index].opacity, 0.003);
        EXPECT_NEAR(seen.hsvHue(), tints[index].hue, 12);
        EXPECT_GT(seen.hsvSaturation(), 150);
        expectRadius(*cards[index], 14, tints[index].opacity);
    }
}

} // namespace
} // namespace pindle
