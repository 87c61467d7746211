#include "PindleMac/views/LabeledEditor.h"

#include "PindleMac/views/Card.h"
#include "PindleMac/views/FieldLabel.h"
#include "PindleMac/views/Theme.h"
#include "PindleMac/views/ThinScrollBar.h"

#include <QPainter>
#include <QSignalBlocker>
#include <QTextDocument>
#include <QVBoxLayout>

namespace pindle {

namespace {

constexpr int labelSpacing = 6;
constexpr int padding = 10;
constexpr int editorHeight = 84;
constexpr double radius = 12;
constexpr double fillOpacity = 0.75;
constexpr double borderOpacity = 0.08;
constexpr double ringWidth = 2;

/// The rounded ground of the editor, with a ring while the editor has the keyboard.
class EditorGround : public Card {
public:
    explicit EditorGround(QWidget &editor)
        : Card(theme::white(fillOpacity), radius)
        , editor_(editor) {}

protected:
    void paintEvent(QPaintEvent *event) override {
        Card::paintEvent(event);
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const bool focused = editor_.hasFocus();
        const double line = focused ? ringWidth : 1;
        painter.setPen(QPen(focused ? theme::accent() : theme::black(borderOpacity), line));
        const double inset = line / 2;
        painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                                radius - inset, radius - inset);
    }

private:
    QWidget &editor_;
};

class ClearTextEdit : public QPlainTextEdit {
public:
    ClearTextEdit() {
        setFrameShape(QFrame::NoFrame);
        setTabChangesFocus(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBar(new ThinScrollBar);
        document()->setDocumentMargin(0);
        setFont(theme::font(theme::TextStyle::subheadline));
        QPalette clear = theme::palette();
        clear.setColor(QPalette::Base, Qt::transparent);
        setPalette(clear);
        viewport()->setAutoFillBackground(false);
    }

protected:
    void focusInEvent(QFocusEvent *event) override {
        QPlainTextEdit::focusInEvent(event);
        parentWidget()->update();
    }

    void focusOutEvent(QFocusEvent *event) override {
        QPlainTextEdit::focusOutEvent(event);
        parentWidget()->update();
    }
};

QString withLineFeeds(QString text) {
    text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
    // The last two are the document's own frame marks.
    for (const char16_t lineBreak : {u'\r', u'\u2028', u'\u2029', u'\ufdd0', u'\ufdd1'})
        text.replace(QChar(lineBreak), QLatin1Char('\n'));
    return text;
}

} // namespace

LabeledEditor::LabeledEditor(const QString &title)
    : editor_(new ClearTextEdit) {
    auto *ground = new EditorGround(*editor_);
    ground->setFixedHeight(editorHeight);
    auto *groundLayout = new QVBoxLayout(ground);
    groundLayout->setContentsMargins(padding, padding, padding, padding);
    groundLayout->addWidget(editor_);

    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins({});
    layout->setSpacing(labelSpacing);
    layout->addWidget(fieldLabel(title, *editor_));
    layout->addWidget(ground);
    connect(editor_, &QPlainTextEdit::textChanged, this, [this] { Q_EMIT textEdited(text()); });
}

QString LabeledEditor::text() const {
    // Unlike the document's plain text, its raw text keeps no-break spaces.
    return withLineFeeds(editor_->document()->toRawText());
}

void LabeledEditor::changeEvent(QEvent *event) {
    // The label takes up a new application font by itself; an editor with a font of its own does
    // not.
    if (event->type() == QEvent::FontChange)
        editor_->setFont(theme::font(theme::TextStyle::subheadline));
    QWidget::changeEvent(event);
}

void LabeledEditor::setText(const QString &text) {
    const QString wanted = withLineFeeds(text);
    if (wanted == this->text())
        return;
    const int position = editor_->textCursor().position();
    const bool beingEdited = editor_->hasFocus();
    const QSignalBlocker notTheUser(editor_);
    editor_->setPlainText(wanted);
    if (beingEdited) {
        QTextCursor cursor = editor_->textCursor();
        cursor.setPosition(std::min(position, static_cast<int>(wanted.size())));
        editor_->setTextCursor(cursor);
    }
}

} // namespace pindle
