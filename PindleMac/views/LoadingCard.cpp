#include "PindleMac/views/LoadingCard.h"

#include "PindleMac/views/SkeletonBar.h"
#include "PindleMac/views/Spinner.h"
#include "PindleMac/views/TextLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace pindle {

namespace {

constexpr int spacing = 14;
constexpr int rowSpacing = 12;
constexpr int textSpacing = 4;
constexpr double placeholderRadius = 14;
constexpr double placeholderOpacity = 0.55;
constexpr int placeholderHeight = 190;
constexpr int placeholderPadding = 18;
constexpr int barSpacing = 10;
constexpr int barWidths[] = {180, 320, 290, 210};

QWidget *placeholder() {
    auto *block = new Card(theme::white(placeholderOpacity), placeholderRadius);
    block->setFixedHeight(placeholderHeight);
    // Laid over the block rather than laid out in it: the bars do not shape the panel.
    int top = placeholderPadding;
    for (const int width : barWidths) {
        auto *bar = new SkeletonBar(width);
        bar->setParent(block);
        bar->move(placeholderPadding, top);
        top += SkeletonBar::thickness + barSpacing;
    }
    return block;
}

} // namespace

LoadingCard::LoadingCard()
    : SectionCard(spacing)
    , headline_(new TextLabel({}, theme::TextStyle::headline, theme::primaryText()))
    , explanation_(new TextLabel({}, theme::TextStyle::subheadline, theme::secondaryText())) {
    auto *texts = new QVBoxLayout;
    texts->setSpacing(textSpacing);
    texts->addWidget(headline_);
    texts->addWidget(explanation_);

    auto *row = new QHBoxLayout;
    row->setSpacing(rowSpacing);
    row->addWidget(new Spinner, 0, Qt::AlignTop);
    row->addLayout(texts, 1);
    column().addLayout(row);
    column().addWidget(placeholder());
}

void LoadingCard::setPhase(ParserPhase phase) {
    const bool capturing = phase == ParserPhase::capturing;
    headline_->setText(capturing ? QStringLiteral("Capturing your selection")
                                 : QStringLiteral("Turning text into an event"));
    explanation_->setText(
        capturing ? QStringLiteral("Reading the highlighted text from the active app.")
                  : QStringLiteral("AI is parsing the text and filling the event details."));
}

} // namespace pindle
