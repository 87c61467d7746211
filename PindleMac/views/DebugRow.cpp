#include "PindleMac/views/DebugRow.h"

#include "PindleMac/views/SelectableText.h"
#include "PindleMac/views/WindowLabel.h"

#include <QVBoxLayout>

namespace pindle {

namespace {
constexpr int padding = 10;
constexpr int spacing = 4;
constexpr double radius = 10;
constexpr double opacity = 0.05;
} // namespace

DebugRow::DebugRow(const QString &label)
    : Card(theme::black(opacity), radius)
    , value_(new SelectableText) {
    auto *title =
        new WindowLabel(label, theme::TextStyle::captionSemibold, windowtheme::Ink::secondary);
    title->setBuddy(value_);
    value_->setAccessibleName(label);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(padding, padding, padding, padding);
    column->setSpacing(spacing);
    column->addWidget(title);
    column->addWidget(value_);
}

void DebugRow::setValue(const QString &value) {
    value_->setValue(value);
}

} // namespace pindle
