#pragma once

#include "PindleMac/views/Backdrop.h"

#include <QLineEdit>
#include <QWidget>

namespace pindle {

/// A single-line text field in a rounded border, in the panel's colours.
class RoundedTextField : public QLineEdit {
    Q_OBJECT
public:
    RoundedTextField();

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void paintBorder(QPainter &painter) const;

    Backdrop unfocused_;
};

/// A caption above a single-line text field.
class LabeledField : public QWidget {
    Q_OBJECT
public:
    explicit LabeledField(const QString &title);

    QLineEdit &field() { return *field_; }
    /// Shows the text; a field that shows it already, as the one being edited does, is left alone.
    /// Line breaks stay in the text and are seen as spaces.
    void setText(const QString &text);

Q_SIGNALS:
    /// The user changed the text.
    void textEdited(const QString &text);

protected:
    void changeEvent(QEvent *event) override;

private:
    RoundedTextField *field_;
};

} // namespace pindle
