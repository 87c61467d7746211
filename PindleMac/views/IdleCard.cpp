#include "PindleMac/views/IdleCard.h"

#include "PindleMac/views/ShortcutPill.h"
#include "PindleMac/views/TextLabel.h"

#include <QVBoxLayout>

namespace pindle {

namespace {
constexpr int spacing = 10;
}

IdleCard::IdleCard()
    : SectionCard(spacing) {
    column().addWidget(new TextLabel(QStringLiteral("Ready when you are"),
                                     theme::TextStyle::headline, theme::primaryText()));
    column().addWidget(
        new TextLabel(QStringLiteral("Use the global shortcut to capture your current "
                                     "selection and open a prefilled event here."),
                      theme::TextStyle::subheadline, theme::secondaryText()));
    column().addWidget(new ShortcutPill(QStringLiteral("Command + Shift + E")), 0, Qt::AlignLeft);
}

} // namespace pindle
