#include "PindleMac/views/SelectableText.h"

#include "PindleMac/views/TextBlock.h"
#include "PindleMac/views/Theme.h"
#include "PindleMac/views/WindowTheme.h"

#include <QKeyEvent>
#include <QTextDocument>

namespace pindle {

namespace {

QFont valueFont() {
    return theme::font(theme::TextStyle::captionMonospaced);
}

} // namespace

SelectableText::SelectableText() {
    setAcceptRichText(false);
    setReadOnly(true);
    setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    setTabChangesFocus(true);
    setUndoRedoEnabled(false);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    document()->setDocumentMargin(0);
    viewport()->setAutoFillBackground(false);
    setFont(valueFont());
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    setSizePolicy(policy);
    followPalette();
}

void SelectableText::setValue(const QString &text) {
    if (text != toPlainText())
        setPlainText(text);
    updateGeometry();
}

QSize SelectableText::sizeHint() const {
    const double width = textblock::naturalWidth(toPlainText(), valueFont());
    return QSizeF(width, textblock::height(toPlainText(), valueFont(), width)).toSize();
}

QSize SelectableText::minimumSizeHint() const {
    return {0, sizeHint().height()};
}

int SelectableText::heightForWidth(int width) const {
    return static_cast<int>(textblock::height(toPlainText(), valueFont(), width));
}

void SelectableText::followPalette() {
    QPalette colours = palette();
    const QPalette around = parentWidget() ? parentWidget()->palette() : colours;
    colours.setColor(QPalette::Text, windowtheme::ink(windowtheme::Ink::primary, around));
    colours.setColor(QPalette::Base, Qt::transparent);
    if (colours != palette())
        setPalette(colours);
}

void SelectableText::changeEvent(QEvent *event) {
    QTextEdit::changeEvent(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::ParentChange)
        followPalette();
}

void SelectableText::keyPressEvent(QKeyEvent *event) {
    // The window's keys are not the text's.
    if (event->key() == Qt::Key_Escape)
        event->ignore();
    else
        QTextEdit::keyPressEvent(event);
}

void SelectableText::wheelEvent(QWheelEvent *event) {
    event->ignore();
}

} // namespace pindle
