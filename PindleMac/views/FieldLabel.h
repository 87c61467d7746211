#pragma once

#include "PindleMac/views/TextLabel.h"

namespace pindle {

/// The caption that names a field, for the eye and for assistive technologies.
inline TextLabel *fieldLabel(const QString &title, QWidget &field) {
    auto *label = new TextLabel(title, theme::TextStyle::captionSemibold, theme::secondaryText());
    label->setBuddy(&field);
    field.setAccessibleName(title);
    return label;
}

} // namespace pindle
