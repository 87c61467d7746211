#include "PindleMac/ContentView.h"

#include "PindleMac/views/CloseButton.h"
#include "PindleMac/views/MessageCard.h"
#include "PindleMac/views/SkeletonBar.h"
#include "PindleMac/views/Theme.h"
#include "PindleMac/views/ThinScrollBar.h"
#include "tests/PindleMac/shell/ViewProbe.h"

#include <QFontMetrics>
#include <QTimer>

namespace pindle {
namespace {

using namespace shelltest;

/// What the view looks like, at the scale the program runs at.
class Picture {
public:
    explicit Picture(ContentView &view)
        : image_(view.grab().toImage().convertToFormat(QImage::Format_ARGB32)) {}

    /// The pixel at a place in logical pixels.
    QColor at(double x, double y) const {
        const qreal ratio = image_.devicePixelRatio();
        return image_.pixelColor(static_cast<int>(x * ratio), static_cast<int>(y * ratio));
    }

private:
    QImage image_;
};

void expectNear(const QColor &seen, const QColor &expected) {
    constexpr int tolerance = 3;
    EXPECT_NEAR(seen.red(), expected.red(), tolerance);
    EXPECT_NEAR(seen.green(), expected.green(), tolerance);
    EXPECT_NEAR(seen.blue(), expected.blue(), tolerance);
}

/// The background's colour at a place: linear from corner to corner.
QColor backgroundAt(const ContentView &view, double x, double y) {
    const double width = view.width() - 1;
    const double height = view.height() - 1;
    const double share = (x * width + y * height) / (width * width + height * height);
    QColor over = theme::backgroundEnd();
    over.setAlphaF(static_cast<float>(share));
    return theme::blended(over, theme::backgroundStart());
}

QRect placeOf(const ContentView &view, const QWidget &part) {
    return {part.mapTo(&view, QPoint()), part.size()};
}

TEST(ContentViewRendering, theBackgroundIsTheGradient) {
    ShownView shown;
    const Picture picture(shown.view);
    const double right = shown.view.width() - 9.0;
    const double bottom = shown.view.height() - 9.0;
    expectNear(picture.at(9, 60), backgroundAt(shown.view, 9, 60));
    expectNear(picture.at(right, bottom - 40), backgroundAt(shown.view, right, bottom - 40));
    expectNear(picture.at(210, bottom), backgroundAt(shown.view, 210, bottom));
}

TEST(ContentViewRendering, theCornersAreTransparentOutsideTheirRadius) {
    ShownView shown;
    const Picture picture(shown.view);
    const double right = shown.view.width() - 1.0;
    const double bottom = shown.view.height() - 1.0;
    for (const QPointF corner :
         {QPointF(0, 0), QPointF(right, 0), QPointF(0, bottom), QPointF(right, bottom)}) {
        const double inward = corner.x() > 0 ? -1 : 1;
        const double down = corner.y() > 0 ? -1 : 1;
        EXPECT_EQ(picture.at(corner.x() + 6 * inward, corner.y() + 6 * down).alpha(), 0);
        EXPECT_EQ(picture.at(corner.x() + 11 * inward, corner.y() + 11 * down).alpha(), 255);
        EXPECT_GT(picture.at(corner.x() + 30 * inward, corner.y()).alpha(), 250);
    }
}

TEST(ContentViewRendering, aHeightThatIsNoWholeNumberOfPixelsLeavesNothingInTheCorners) {
    ShownView shown;
    for (const int height : {240, 241, 242, 243}) {
        shown.view.resize(ContentView::panelWidth, height);
        const QImage image = shown.view.grab().toImage().convertToFormat(QImage::Format_ARGB32);
        for (int row = 1; row <= 3; ++row)
            EXPECT_EQ(image.pixelColor(1, image.height() - row).alpha(), 0) << height;
    }
}

TEST(ContentViewRendering, scrolledContentIsClippedToTheCorners) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    scrollBar(shown.view).setValue(150);
    const Picture picture(shown.view);
    EXPECT_EQ(picture.at(5, 5).alpha(), 0);
    EXPECT_EQ(picture.at(18.5, 0).alpha() == 255, false);
    EXPECT_EQ(picture.at(210, 5).alpha(), 255);
}

TEST(ContentViewRendering, withoutRoundedCornersEveryPixelIsOpaque) {
    ShownView shown;
    shown.view.setRoundedCorners(false);
    const Picture picture(shown.view);
    for (const QPointF place : {QPointF(0, 0), QPointF(3, 3), QPointF(419, 0), QPointF(415, 3)}) {
        EXPECT_EQ(picture.at(place.x(), place.y()).alpha(), 255);
        EXPECT_GT(picture.at(place.x(), place.y()).lightness(), 200) << "never black";
    }
}

TEST(ContentViewRendering, theCardIsAWhiteVeilOnTheBackground) {
    ShownView shown;
    const Picture picture(shown.view);
    const QPointF inCard(200, shown.view.height() - 18 - 6);
    expectNear(
        picture.at(inCard.x(), inCard.y()),
        theme::blended(theme::white(0.62), backgroundAt(shown.view, inCard.x(), inCard.y())));
}

TEST(ContentViewRendering, messagesHaveTheirTints) {
    ShownView shown;
    TestAccess::setError(shown.model, QStringLiteral("a"));
    TestAccess::setSuccess(shown.model, QStringLiteral("b"));
    TestAccess::setUserMessage(shown.model, QStringLiteral("c"));
    settle();
    const Picture picture(shown.view);
    const QList<QColor> tints{theme::redTint(), theme::greenTint(), theme::yellowTint()};
    const auto cards = shownViews<MessageCard>(shown.view);
    ASSERT_EQ(cards.size(), 3);
    for (qsizetype index = 0; index < 3; ++index) {
        const QRect place = placeOf(shown.view, *cards[index]);
        const QPointF inside(place.right() - 20, place.center().y());
        expectNear(picture.at(inside.x(), inside.y()),
                   theme::blended(tints[index], backgroundAt(shown.view, inside.x(), inside.y())));
    }
}

TEST(ContentViewRendering, theSkeletonHasFourBarsOfTheirWidths) {
    ShownView shown;
    TestAccess::setPhase(shown.model, ParserPhase::parsing);
    settle();
    QList<int> widths;
    for (const auto *bar : shownViews<SkeletonBar>(shown.view)) {
        widths.append(bar->width());
        EXPECT_EQ(bar->height(), 12);
    }
    EXPECT_EQ(widths, (QList<int>{180, 320, 290, 210}));
    EXPECT_EQ(shownViews<SkeletonBar>(shown.view).first()->parentWidget()->height(), 190);
}

TEST(ContentViewRendering, theCloseButtonIsInTheUpperRightCorner) {
    ShownView shown;
    const auto *close = shown.view.findChild<CloseButton *>();
    EXPECT_EQ(placeOf(shown.view, *close), QRect(420 - 18 - 28, 18, 28, 28));
}

TEST(ContentViewRendering, theHeightFollowsTheContentUpToThePanels) {
    ShownView shown;
    const int idle = shown.view.contentHeight();
    EXPECT_LT(idle, 320);
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    settle();
    EXPECT_GT(shown.view.contentHeight(), idle + 30);
    TestAccess::setError(shown.model, std::nullopt);
    settle();
    EXPECT_EQ(shown.view.contentHeight(), idle);
    shown.shell.becomeReady();
    settle();
    EXPECT_EQ(shown.view.contentHeight(), 560);
    EXPECT_GT(shown.view.fullHeight(), 560);
}

TEST(ContentViewRendering, onlyWhatDoesNotFitCanBeScrolled) {
    ShownView shown;
    auto *bar = shown.view.findChild<ThinScrollBar *>();
    EXPECT_FALSE(bar->isVisibleTo(&shown.view));
    shown.shell.becomeReady();
    settle();
    EXPECT_TRUE(bar->isVisibleTo(&shown.view));
    EXPECT_EQ(scrollBar(shown.view).maximum(), shown.view.fullHeight() - 560);
    bar->setValue(40);
    EXPECT_EQ(scrollBar(shown.view).value(), 40);
}

TEST(ContentViewRendering, nothingIsEverScrolledSideways) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const auto *area = shown.view.findChild<QScrollArea *>();
    EXPECT_EQ(area->horizontalScrollBar()->maximum(), 0);
}

TEST(ContentViewRendering, aLongMessageIsShownWhole) {
    ShownView shown;
    TestAccess::setError(shown.model, QString(300, QLatin1Char('x')));
    settle();
    const auto *card = shownViews<MessageCard>(shown.view).first();
    const auto *label = card->findChild<QLabel *>();
    EXPECT_EQ(label->height(), label->heightForWidth(label->width()));
    EXPECT_GT(label->height(),
              4 * QFontMetrics(theme::font(theme::TextStyle::subheadline)).height());
    EXPECT_LE(placeOf(shown.view, *label).right(), 420 - 18 - 12);
    EXPECT_EQ(card->height(), label->height() + 24);
}

/// Widgets hear of a new application font only while the application runs.
void setRunningApplicationsFont(const QFont &font) {
    QTimer::singleShot(0, qApp, [&font] {
        QApplication::setFont(font);
        QTimer::singleShot(20, qApp, &QApplication::quit);
    });
    QApplication::exec();
}

TEST(ContentViewRendering, aChangedApplicationFontIsTakenUp) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const QFont before = QApplication::font();
    const int heightBefore = shown.view.fullHeight();
    const int fieldBefore = field(shown.view, QStringLiteral("Title")).height();
    QFont larger = before;
    larger.setPixelSize(20);
    setRunningApplicationsFont(larger);
    EXPECT_GT(shown.view.fullHeight(), heightBefore + 20);
    EXPECT_GT(field(shown.view, QStringLiteral("Title")).height(), fieldBefore);
    setRunningApplicationsFont(before);
    EXPECT_EQ(shown.view.fullHeight(), heightBefore);
}

TEST(ContentViewRendering, everythingFitsTheWidthInTheLargestFont) {
    const QFont before = QApplication::font();
    QFont largest = before;
    largest.setPixelSize(40);
    QApplication::setFont(largest);
    {
        ShownView shown;
        shown.shell.becomeReady();
        TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
        TestAccess::setOffers(shown.model, true, true);
        settle();
        for (const QWidget *part : shownViews<QWidget>(shown.view))
            if (part->focusPolicy() != Qt::NoFocus || qobject_cast<const QLabel *>(part)) {
                EXPECT_LE(placeOf(shown.view, *part).right(), 420 - 10)
                    << part->metaObject()->className();
            }
    }
    QApplication::setFont(before);
}

} // namespace
} // namespace pindle
