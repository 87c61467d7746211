#include "PindleMac/views/ActionButton.h"
#include "PindleMac/views/Card.h"
#include "PindleMac/views/CloseButton.h"
#include "PindleMac/views/ErrorSection.h"
#include "PindleMac/views/LabeledEditor.h"
#include "PindleMac/views/LabeledField.h"
#include "PindleMac/views/LoadingCard.h"
#include "PindleMac/views/MessageCard.h"
#include "PindleMac/views/PanelHeader.h"
#include "PindleMac/views/ShortcutPill.h"
#include "PindleMac/views/SkeletonBar.h"
#include "PindleMac/views/Spinner.h"
#include "PindleMac/views/TextLabel.h"
#include "tests/PindleMac/shell/PartPicture.h"
#include "tests/PindleMac/shell/ViewProbe.h"

// The panel's distances and sizes in plain figures: they are not taken from the code that they are
// to check.

namespace pindle {
namespace {

using namespace shelltest;

/// The views that a view shows directly in itself, from top to bottom.
QList<QWidget *> partsOf(const QWidget &whole) {
    QList<QWidget *> parts = shownViews<QWidget>(whole);
    parts.removeIf([&whole](const QWidget *part) { return part->parentWidget() != &whole; });
    return parts;
}

/// A semibold caption by itself, as wide as its text.
class Caption {
public:
    explicit Caption(const QString &text)
        : label_(text, theme::TextStyle::captionSemibold, Qt::black) {
        label_.resize(label_.sizeHint());
    }

    QSize size() const { return label_.size(); }
    int heightFor(int width) const { return label_.heightForWidth(width); }
    QRectF ink() { return PartPicture(label_).ink(); }

private:
    TextLabel label_;
};

constexpr double hair = 0.3;

TEST(PanelMeasures, sectionsAre18ApartAnd18FromThePanelsEdge) {
    ShownView shown;
    shown.shell.becomeReady();
    TestAccess::setError(shown.model, QStringLiteral("a"));
    TestAccess::setSuccess(shown.model, QStringLiteral("b"));
    TestAccess::setUserMessage(shown.model, QStringLiteral("c"));
    settle();
    const QWidget &column = *shown.view.findChild<QScrollArea *>()->widget();
    const auto sections = partsOf(column);
    ASSERT_EQ(sections.size(), 6) << "header, form, destinations and three messages";
    EXPECT_EQ(sections.first()->y(), 18);
    EXPECT_EQ(column.height() - sections.last()->geometry().bottom() - 1, 18);
    for (qsizetype index = 0; index < sections.size(); ++index) {
        EXPECT_EQ(sections[index]->x(), 18);
        EXPECT_EQ(sections[index]->width(), 420 - 36);
    }
    for (qsizetype index = 1; index < sections.size(); ++index)
        EXPECT_EQ(gapDown(*sections[index - 1], *sections[index]), 18);
}

TEST(PanelMeasures, cardsPad16) {
    ShownView shown;
    for (const auto phase : {ParserPhase::idle, ParserPhase::parsing, ParserPhase::ready}) {
        TestAccess::setPhase(shown.model, phase);
        settle();
        for (const SectionCard *card : shownViews<SectionCard>(shown.view)) {
            QRect content;
            for (const QWidget *part : partsOf(*card))
                content |= part->geometry();
            EXPECT_EQ(content, card->rect().adjusted(16, 16, -16, -16)) << static_cast<int>(phase);
        }
    }
}

TEST(PanelMeasures, theHeadersLinesAre4Apart) {
    ShownView shown;
    const auto lines = shownViews<TextLabel>(*shown.view.findChild<PanelHeader *>());
    ASSERT_EQ(lines.size(), 2);
    EXPECT_EQ(lines[0]->height(), lines[0]->sizeHint().height());
    EXPECT_EQ(gapDown(*lines[0], *lines[1]), 4);
    EXPECT_EQ(lines[1]->x(), lines[0]->x());
}

TEST(PanelMeasures, theCloseButtonIs28WideWithACrossOfSize11InItsMiddle) {
    ShownView shown;
    auto *close = shown.view.findChild<CloseButton *>();
    EXPECT_EQ(close->size(), QSize(28, 28));
    const QRectF cross = PartPicture(*close).ink();
    EXPECT_NEAR(cross.center().x(), 14, hair);
    EXPECT_NEAR(cross.center().y(), 14, hair);
    // A cross does not fill the height of its letters.
    EXPECT_NEAR(cross.width(), 7.5, 1.5);
    EXPECT_NEAR(cross.height(), cross.width(), hair);
}

TEST(PanelMeasures, theIdleCardSpaces10) {
    ShownView shown;
    const auto parts = partsOf(*shownViews<SectionCard>(shown.view).first());
    ASSERT_EQ(parts.size(), 3);
    EXPECT_EQ(gapDown(*parts[0], *parts[1]), 10);
    EXPECT_EQ(gapDown(*parts[1], *parts[2]), 10);
}

TEST(PanelMeasures, thePillPads12By8) {
    ShownView shown;
    auto *pill = shown.view.findChild<ShortcutPill *>();
    Caption text(pill->text());
    EXPECT_EQ(pill->size(), text.size() + QSize(24, 16));
    const QRectF ink = PartPicture(*pill).ink();
    EXPECT_NEAR(ink.left(), text.ink().left() + 12, hair);
    EXPECT_NEAR(ink.top(), text.ink().top() + 8, hair);
}

TEST(PanelMeasures, theLoadingCardIsSpaced14And12And4) {
    ShownView shown;
    TestAccess::setPhase(shown.model, ParserPhase::parsing);
    settle();
    const auto *card = shown.view.findChild<LoadingCard *>();
    const auto *spinner = card->findChild<Spinner *>();
    const auto texts = shownViews<TextLabel>(*card);
    ASSERT_EQ(texts.size(), 2);
    const auto *block = card->findChild<SkeletonBar *>()->parentWidget();
    EXPECT_EQ(spinner->y(), 16);
    EXPECT_EQ(texts[0]->y(), 16);
    EXPECT_EQ(gapAcross(*spinner, *texts[0]), 12);
    EXPECT_EQ(gapAcross(*spinner, *texts[1]), 12);
    EXPECT_EQ(gapDown(*texts[0], *texts[1]), 4);
    EXPECT_EQ(std::min(gapDown(*spinner, *block), gapDown(*texts[1], *block)), 14);
}

TEST(PanelMeasures, theSkeletonLiesAt18WithBars10Apart) {
    ShownView shown;
    TestAccess::setPhase(shown.model, ParserPhase::parsing);
    settle();
    const auto bars = shownViews<SkeletonBar>(shown.view);
    ASSERT_EQ(bars.size(), 4);
    EXPECT_EQ(bars[0]->geometry(), QRect(18, 18, 180, 12));
    EXPECT_EQ(bars[1]->geometry(), QRect(18, 40, 320, 12));
    EXPECT_EQ(bars[2]->geometry(), QRect(18, 62, 290, 12));
    EXPECT_EQ(bars[3]->geometry(), QRect(18, 84, 210, 12));
    EXPECT_EQ(bars[0]->parentWidget()->size(), QSize(420 - 36 - 32, 190));
}

/// The rectangle, in the form, of a field with its label.
QRect rowOf(const QWidget &form, const QString &title) {
    const auto *control = named<QWidget>(form, title);
    const QWidget *row = control->parentWidget();
    while (!qobject_cast<const LabeledField *>(row) && !qobject_cast<const LabeledEditor *>(row))
        row = row->parentWidget();
    return placeIn(form, *row);
}

TEST(PanelMeasures, formRowsAre12Apart) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const QWidget &form = *shownViews<SectionCard>(shown.view).first();
    const auto row = [&form](const char16_t *title) {
        return rowOf(form, QString::fromUtf16(title));
    };
    int bottom = shownViews<TextLabel>(form).first()->geometry().bottom() + 1;
    for (const QRect &next : {row(u"Title"), row(u"Start Date"), row(u"End Date"),
                              row(u"Time Zone"), row(u"Location"), row(u"Description")}) {
        EXPECT_EQ(next.top() - bottom, 12);
        bottom = next.bottom() + 1;
    }
    for (const auto &[date, time] : {std::pair(row(u"Start Date"), row(u"Start Time")),
                                     std::pair(row(u"End Date"), row(u"End Time"))}) {
        EXPECT_EQ(time.top(), date.top());
        EXPECT_EQ(time.left() - date.right() - 1, 12);
        EXPECT_EQ(time.width(), date.width());
    }
}

TEST(PanelMeasures, labelsAre6AboveTheirFields) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const auto fields = shownViews<LabeledField>(shown.view);
    ASSERT_EQ(fields.size(), 7);
    for (const LabeledField *view : fields)
        EXPECT_EQ(gapDown(*view->findChild<TextLabel *>(), *view->findChild<QLineEdit *>()), 6);
    const auto *editor = shown.view.findChild<LabeledEditor *>();
    EXPECT_EQ(gapDown(*editor->findChild<TextLabel *>(), *editor->findChild<Card *>()), 6);
}

TEST(PanelMeasures, theEditorIs84HighAndPads10) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const auto *editor = shown.view.findChild<QPlainTextEdit *>();
    const QWidget *ground = editor->parentWidget();
    EXPECT_EQ(ground->height(), 84);
    EXPECT_EQ(editor->geometry(), ground->rect().adjusted(10, 10, -10, -10));
    const QPoint text = editor->cursorRect().topLeft();
    EXPECT_EQ(editor->viewport()->mapTo(ground, text), QPoint(10, 10)) << "no margin of its own";
}

TEST(PanelMeasures, destinationsAre8ApartAnd12BelowTheirHeading) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    const QWidget &card = *shownViews<SectionCard>(shown.view).last();
    const auto tiles = shownViews<CompactCalendarButton>(card);
    ASSERT_EQ(tiles.size(), 4);
    EXPECT_EQ(gapDown(*shownViews<TextLabel>(card).first(), *tiles.first()), 12);
    for (qsizetype index = 1; index < tiles.size(); ++index)
        EXPECT_EQ(gapAcross(*tiles[index - 1], *tiles[index]), 8);
}

/// Where on a tile the badge is, and the ink below it.
struct TileParts {
    QRectF badge;
    QRectF title;

    explicit TileParts(QWidget &tile) {
        const PartPicture picture(tile);
        const double middle = tile.width() / 2.0;
        const QColor ground = picture.at(5, tile.height() / 2.0);
        const auto [top, bottom] = picture.firstStretchDown(middle, ground);
        const auto [left, right] = picture.firstStretchAcross((top + bottom) / 2, ground);
        badge = QRectF(QPointF(left, top), QPointF(right, bottom));
        title = picture.inkWithin(QRectF(0, bottom, tile.width(), tile.height() - bottom));
    }
};

TEST(PanelMeasures, aTileHasA32BadgeThen8ThenItsTitle) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    for (auto *tile : shownViews<CompactCalendarButton>(shown.view)) {
        const TileParts parts(*tile);
        Caption title(tile->shortTitle());
        EXPECT_NEAR(parts.badge.width(), 32, hair);
        EXPECT_NEAR(parts.badge.height(), 32, hair);
        EXPECT_NEAR(parts.badge.center().x(), tile->width() / 2.0, hair);
        EXPECT_NEAR(parts.title.top() - parts.badge.bottom(), 8 + title.ink().top(), hair);
        EXPECT_EQ(tile->height(), 78);
    }
}

TEST(PanelMeasures, aTilePads10AndIsAtLeast78High) {
    CalendarDestinationLink link;
    link.id = QStringLiteral("other");
    link.title = QStringLiteral("the calendar of everybody in the whole house");
    CompactCalendarButton tile(link);
    const Caption title(link.title);
    EXPECT_EQ(tile.sizeHint(), QSize(title.size().width() + 20, 78));
    for (int width = 70; width < 300; ++width)
        EXPECT_EQ(tile.heightForWidth(width),
                  std::max(78, 10 + 32 + 8 + title.heightFor(width - 20) + 10))
            << width;
    tile.resize(80, tile.heightForWidth(80));
    EXPECT_NEAR(TileParts(tile).badge.top(), 10, hair);
}

TEST(PanelMeasures, aBadgesCornersHaveRadius10) {
    ShownView shown;
    shown.shell.becomeReady();
    settle();
    for (auto *tile : shownViews<CompactCalendarButton>(shown.view)) {
        const PartPicture picture(*tile);
        const QRectF badge = TileParts(*tile).badge;
        const QColor ground = picture.at(5, 39);
        // A circle of radius 10 begins this far along the row that is 2 below its top.
        const double inset = 10 - std::sqrt(10.0 * 10 - 8 * 8);
        const auto [left, right] = picture.firstStretchAcross(badge.top() + 2, ground);
        EXPECT_NEAR(left - badge.left(), inset, hair);
        EXPECT_NEAR(badge.right() - right, inset, hair);
    }
}

TEST(PanelMeasures, anOfferPads12By9) {
    const QString twoLines = QStringLiteral("Open\nSettings");
    ActionButton offer(twoLines, QStringLiteral("gearshape"));
    offer.resize(offer.sizeHint());
    Caption text(twoLines);
    EXPECT_EQ(offer.height(), text.size().height() + 18);
    const PartPicture picture(offer);
    const double ownRight = text.size().width() - text.ink().right();
    EXPECT_NEAR(offer.width() - picture.ink().right(), 12 + ownRight, hair);
    EXPECT_NEAR(picture.ink().top(), 9 + text.ink().top(), hair);
    EXPECT_GE(picture.ink().left(), 12);
    EXPECT_LE(picture.ink().left(), 13.5) << "the symbol begins where the padding ends";
}

TEST(PanelMeasures, aMessageCardPads12) {
    ShownView shown;
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    settle();
    const auto *card = shownViews<MessageCard>(shown.view).first();
    const auto *text = card->findChild<TextLabel *>();
    EXPECT_EQ(text->geometry(), card->rect().adjusted(12, 12, -12, -12));
    EXPECT_EQ(text->height(), text->heightForWidth(text->width()));
}

TEST(PanelMeasures, theErrorAndItsOffersAre10Apart) {
    ShownView shown;
    TestAccess::setError(shown.model, QStringLiteral("It went wrong."));
    TestAccess::setOffers(shown.model, true, true);
    settle();
    const auto *card = shownViews<MessageCard>(shown.view).first();
    const auto offers = shownViews<ActionButton>(shown.view);
    ASSERT_EQ(offers.size(), 3);
    int gap = gapDown(*card, *offers[0]);
    for (qsizetype index = 1; index < offers.size(); ++index) {
        gap = std::min(gap, gapDown(*card, *offers[index]));
        EXPECT_EQ(gapAcross(*offers[index - 1], *offers[index]), 10);
    }
    EXPECT_EQ(gap, 10);
}

} // namespace
} // namespace pindle
