#include "PindleMac/views/EventFormCard.h"

#include "PindleMac/views/LabeledEditor.h"
#include "PindleMac/views/LabeledField.h"
#include "PindleMac/views/TextLabel.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace pindle {

namespace {

constexpr int spacing = 12;

QHBoxLayout *rowOf(QWidget *first, QWidget *second) {
    auto *row = new QHBoxLayout;
    row->setSpacing(spacing);
    row->addWidget(first, 1);
    row->addWidget(second, 1);
    return row;
}

} // namespace

EventFormCard::EventFormCard(Edited edited)
    : SectionCard(spacing)
    , edited_(std::move(edited))
    , description_(new LabeledEditor(QStringLiteral("Description"))) {
    using Details = CalendarEventDetails;
    column().addWidget(new TextLabel(QStringLiteral("Event Details"), theme::TextStyle::headline,
                                     theme::primaryText()));
    column().addWidget(addField(QStringLiteral("Title"), &Details::title));
    auto *startDate = addField(QStringLiteral("Start Date"), &Details::startDate);
    auto *startTime = addField(QStringLiteral("Start Time"), &Details::startTime);
    column().addLayout(rowOf(startDate, startTime));
    auto *endDate = addField(QStringLiteral("End Date"), &Details::endDate);
    auto *endTime = addField(QStringLiteral("End Time"), &Details::endTime);
    column().addLayout(rowOf(endDate, endTime));
    column().addWidget(addField(QStringLiteral("Time Zone"), &Details::timeZone));
    column().addWidget(addField(QStringLiteral("Location"), &Details::location));
    column().addWidget(description_);
    connect(description_, &LabeledEditor::textEdited, this,
            [this](const QString &text) { edited_(&Details::description, text); });
}

LabeledField *EventFormCard::addField(const QString &title, Field field) {
    auto *view = new LabeledField(title);
    rows_.append({field, view});
    connect(view, &LabeledField::textEdited, this,
            [this, field](const QString &text) { edited_(field, text); });
    return view;
}

void EventFormCard::setDetails(const CalendarEventDetails &details) {
    for (const Row &row : rows_)
        row.view->setText(details.*row.field);
    description_->setText(details.description);
}

} // namespace pindle
