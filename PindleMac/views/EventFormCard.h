#pragma once

#include "PindleMac/Models.h"
#include "PindleMac/views/Card.h"

#include <array>
#include <functional>

namespace pindle {

class LabeledEditor;
class LabeledField;

/// The draft as free text, field by field.
class EventFormCard : public SectionCard {
    Q_OBJECT
public:
    using Field = QString CalendarEventDetails::*;
    /// Called with every change the user makes.
    using Edited = std::function<void(Field field, const QString &text)>;

    explicit EventFormCard(Edited edited);

    void setDetails(const CalendarEventDetails &details);

private:
    struct Row {
        Field field;
        LabeledField *view;
    };

    LabeledField *addField(const QString &title, Field field);

    Edited edited_;
    QList<Row> rows_;
    LabeledEditor *description_;
};

} // namespace pindle
