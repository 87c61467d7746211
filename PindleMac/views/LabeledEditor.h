#pragma once

#include <QPlainTextEdit>
#include <QWidget>

namespace pindle {

/// A caption above a multi-line text editor.
class LabeledEditor : public QWidget {
    Q_OBJECT
public:
    explicit LabeledEditor(const QString &title);

    QPlainTextEdit &editor() { return *editor_; }
    /// The editor's text, with every kind of line break as a line feed.
    QString text() const;
    /// Shows the text; an editor that shows it already, as the one being edited does, is left
    /// alone.
    void setText(const QString &text);

Q_SIGNALS:
    /// The user changed the text.
    void textEdited(const QString &text);

protected:
    void changeEvent(QEvent *event) override;

private:
    QPlainTextEdit *editor_;
};

} // namespace pindle
