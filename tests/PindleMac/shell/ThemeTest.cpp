#include "PindleMac/views/Theme.h"
#include "PindleMac/views/Symbols.h"
#include "PindleMac/views/TextBlock.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QFontMetricsF>
#include <QImage>
#include <QPainter>
#include <gtest/gtest.h>

namespace pindle {
namespace {

constexpr double readable = 4.5;
constexpr double distinguishable = 3.0;

const QList<QColor> &grounds() {
    static const QList<QColor> colours{theme::backgroundStart(), theme::backgroundEnd()};
    return colours;
}

/// Restores the application's palette and font.
class AppearanceGuard {
public:
    ~AppearanceGuard() {
        QApplication::setPalette(palette_);
        QApplication::setFont(font_);
    }

private:
    QPalette palette_ = QApplication::palette();
    QFont font_ = QApplication::font();
};

TEST(Theme, contrastRunsFromOneToTwentyOne) {
    EXPECT_NEAR(theme::contrastRatio(Qt::white, Qt::white), 1, 0.001);
    EXPECT_NEAR(theme::contrastRatio(Qt::black, Qt::white), 21, 0.001);
    EXPECT_NEAR(theme::contrastRatio(QColor(0x76, 0x76, 0x76), Qt::white), 4.54, 0.01);
}

TEST(Theme, primaryAndSecondaryTextIsReadableOnPanelAndCards) {
    for (const QColor &ground : grounds()) {
        const QColor card = theme::blended(theme::white(0.62), ground);
        const QColor pill = theme::blended(theme::black(0.08), card);
        for (const QColor &text : {theme::primaryText(), theme::secondaryText()}) {
            EXPECT_GE(theme::contrastRatio(text, ground), readable);
            EXPECT_GE(theme::contrastRatio(text, card), readable);
            EXPECT_GE(theme::contrastRatio(text, pill), readable);
        }
    }
}

TEST(Theme, messagesAreReadableOnTheirTints) {
    struct Message {
        QColor foreground;
        QColor tint;
    };
    const QList<Message> messages{{theme::red(), theme::redTint()},
                                  {theme::green(), theme::greenTint()},
                                  {theme::orange(), theme::yellowTint()}};
    for (const QColor &ground : grounds())
        for (const Message &message : messages)
            EXPECT_GE(
                theme::contrastRatio(message.foreground, theme::blended(message.tint, ground)),
                readable)
                << message.foreground.name().toStdString();
}

TEST(Theme, messageColoursAreTheirColours) {
    EXPECT_NEAR(theme::red().hslHue(), 0, 10);
    EXPECT_NEAR(theme::green().hslHue(), 130, 20);
    EXPECT_NEAR(theme::orange().hslHue(), 28, 10);
    EXPECT_NEAR(theme::redTint().alphaF(), 0.14, 0.005);
    EXPECT_NEAR(theme::greenTint().alphaF(), 0.14, 0.005);
    EXPECT_NEAR(theme::yellowTint().alphaF(), 0.18, 0.005);
}

TEST(Theme, symbolsStandOutFromTheirBadges) {
    for (const QColor &tint : {theme::symbolGreen(), theme::symbolBlue(), theme::symbolIndigo(),
                               theme::symbolOrange()}) {
        QColor badge = tint;
        badge.setAlphaF(0.12F);
        EXPECT_GE(theme::contrastRatio(tint, theme::blended(badge, Qt::white)), distinguishable)
            << tint.name().toStdString();
    }
}

TEST(Theme, thePanelStaysDarkOnLightOnADarkDesktop) {
    const AppearanceGuard guard;
    QPalette dark(QColor(0x30, 0x30, 0x30), QColor(0x20, 0x20, 0x20));
    dark.setColor(QPalette::Text, Qt::white);
    dark.setColor(QPalette::Base, Qt::black);
    QApplication::setPalette(dark);
    const QPalette palette = theme::palette();
    for (const auto role : {QPalette::Text, QPalette::WindowText, QPalette::ButtonText})
        EXPECT_GE(theme::contrastRatio(palette.color(role), palette.color(QPalette::Base)),
                  readable);
    EXPECT_GE(theme::contrastRatio(palette.color(QPalette::HighlightedText),
                                   palette.color(QPalette::Highlight)),
              readable);
}

TEST(Theme, aPaleAccentIsDarkenedUntilItStandsOut) {
    const AppearanceGuard guard;
    QPalette pale = QApplication::palette();
    pale.setColor(QPalette::Highlight, QColor(0xff, 0xf0, 0x90));
    QApplication::setPalette(pale);
    EXPECT_GE(theme::contrastRatio(theme::accent(), Qt::white), distinguishable);
}

TEST(Theme, aStrongAccentIsTheDesktopsOwn) {
    const AppearanceGuard guard;
    QPalette strong = QApplication::palette();
    strong.setColor(QPalette::Highlight, QColor(0x10, 0x30, 0x80));
    QApplication::setPalette(strong);
    EXPECT_EQ(theme::accent(), QColor(0x10, 0x30, 0x80));
}

TEST(Theme, stylesKeepTheirOrderAndCaptionsStayLegible) {
    using theme::TextStyle;
    const AppearanceGuard guard;
    for (const int body : {7, 9, 13, 16, 20, 40}) {
        QFont font = QApplication::font();
        font.setPixelSize(body);
        QApplication::setFont(font);
        const int caption = theme::font(TextStyle::caption).pixelSize();
        EXPECT_GE(caption, 11) << body;
        EXPECT_LE(caption, 17) << body;
        EXPECT_GE(theme::font(TextStyle::subheadline).pixelSize(), caption) << body;
        EXPECT_GT(theme::font(TextStyle::headline).pixelSize(),
                  theme::font(TextStyle::subheadline).pixelSize())
            << body;
        EXPECT_EQ(theme::font(TextStyle::title).pixelSize(), 22) << body;
    }
    EXPECT_GE(theme::font(TextStyle::title).weight(), QFont::Bold);
    EXPECT_GE(theme::font(TextStyle::headline).weight(), QFont::Bold);
    EXPECT_EQ(theme::font(TextStyle::captionSemibold).weight(), QFont::DemiBold);
    EXPECT_EQ(theme::font(TextStyle::caption).weight(), QFont::Normal);
}

TEST(TextBlock, aWordWiderThanItsLineIsBrokenRatherThanCutOff) {
    const QFont font = theme::font(theme::TextStyle::caption);
    const double lineHeight = textblock::height(QStringLiteral("x"), font, 100);
    EXPECT_GE(textblock::height(QString(200, QLatin1Char('x')), font, 100), 5 * lineHeight);
}

TEST(TextBlock, everyKindOfLineBreakStartsALine) {
    const QFont font = theme::font(theme::TextStyle::caption);
    const double one = textblock::height(QStringLiteral("a"), font, 100);
    for (const QString &text : {QStringLiteral("a\nb\nc"), QStringLiteral("a\r\nb\r\nc"),
                                QStringLiteral("a\rb\rc"), QStringLiteral("a\u2028b\u2029c")})
        EXPECT_NEAR(textblock::height(text, font, 100), 3 * one, 2);
}

TEST(TextBlock, anEmptyTextHasTheHeightOfALine) {
    const QFont font = theme::font(theme::TextStyle::caption);
    EXPECT_EQ(textblock::height({}, font, 100), textblock::height(QStringLiteral("x"), font, 100));
}

TEST(TextBlock, aMeasureIsThatOfItsTextItsFontAndItsWidth) {
    const QString text = QStringLiteral("several words that need a line or two");
    QFont large = theme::font(theme::TextStyle::caption);
    const QFont small = large;
    large.setPixelSize(small.pixelSize() * 3);
    const auto measures = [&] {
        return QList<double>{
            textblock::height(text, small, 100),  textblock::height(text, large, 100),
            textblock::height(text, small, 40),   textblock::naturalWidth(text, small),
            textblock::naturalWidth(text, large), textblock::naturalWidth(text.left(7), small)};
    };
    const QList<double> first = measures();
    EXPECT_EQ(measures(), first);
    EXPECT_GT(first[1], first[0]);
    EXPECT_GT(first[2], first[0]);
    EXPECT_GT(first[4], first[3]);
    EXPECT_LT(first[5], first[3]);
}

TEST(TextBlock, aTextOfAnyLengthIsMeasured) {
    const QFont font = theme::font(theme::TextStyle::caption);
    const double one = textblock::height(QStringLiteral("a"), font, 100);
    const QString lines = QStringLiteral("a\n").repeated(15000);
    EXPECT_GT(textblock::height(lines, font, 100), 14000 * one);
}

TEST(Symbols, everySymbolOfThePanelIsDrawnInTheColourAskedFor) {
    for (const QString &name :
         {QStringLiteral("apple.logo"), QStringLiteral("globe"), QStringLiteral("envelope.badge"),
          QStringLiteral("calendar"), QStringLiteral("calendar.badge.plus"),
          QStringLiteral("xmark"), QStringLiteral("gearshape"), QStringLiteral("hand.tap"),
          QStringLiteral("figure.wave")}) {
        ASSERT_TRUE(symbols::exists(name)) << name.toStdString();
        QImage image(32, 32, QImage::Format_ARGB32);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        symbols::draw(painter, name, {0, 0, 32, 32}, QColor(200, 30, 60));
        painter.end();
        int inked = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (qAlpha(image.pixel(x, y)) == 255) {
                    ++inked;
                    EXPECT_EQ(image.pixelColor(x, y), QColor(200, 30, 60));
                }
        EXPECT_GT(inked, 50) << name.toStdString();
    }
}

TEST(Symbols, anUnknownSymbolDrawsNothing) {
    EXPECT_FALSE(symbols::exists(QStringLiteral("no.such.symbol")));
    QImage image(16, 16, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    const QImage before = image;
    QPainter painter(&image);
    symbols::draw(painter, QStringLiteral("no.such.symbol"), {0, 0, 16, 16}, Qt::black);
    painter.end();
    EXPECT_EQ(image, before);
}

} // namespace
TEST(TextBlock, aLongTextIsLaidOutOnceForAWidth) {
    const QString text = QStringLiteral("A long page of an error. ").repeated(4000);
    const QFont font = theme::font(theme::TextStyle::subheadline);
    QElapsedTimer clock;
    clock.start();
    const double height = textblock::height(text, font, 340);
    const qint64 first = clock.nsecsElapsed();
    clock.start();
    EXPECT_EQ(textblock::height(text, font, 340), height);
    // Some hundred times less in fact; what counts is that the work is not done again.
    EXPECT_LT(clock.nsecsElapsed() * 5, first);
    EXPECT_LT(textblock::height(text, font, 680), height);
}

} // namespace pindle
