#include "PindleMac/views/PanelHeader.h"

#include "PindleMac/views/CloseButton.h"
#include "PindleMac/views/TextLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace pindle {

namespace {
constexpr int textSpacing = 4;
constexpr int buttonSpacing = 8;
} // namespace

PanelHeader::PanelHeader() {
    auto *texts = new QVBoxLayout;
    texts->setSpacing(textSpacing);
    texts->addWidget(
        new TextLabel(QStringLiteral("Pindle"), theme::TextStyle::title, theme::primaryText()));
    texts->addWidget(new TextLabel(QStringLiteral("Highlight text anywhere, press Command-Shift-E, "
                                                  "then confirm the event."),
                                   theme::TextStyle::caption, theme::secondaryText()));

    auto *closeButton = new CloseButton;
    connect(closeButton, &QAbstractButton::clicked, this, &PanelHeader::closeClicked);

    auto *row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(buttonSpacing);
    row->addLayout(texts, 1);
    row->addWidget(closeButton, 0, Qt::AlignTop);
}

} // namespace pindle
