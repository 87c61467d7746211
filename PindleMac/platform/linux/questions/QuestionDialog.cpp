#include "PindleMac/platform/linux/questions/QuestionDialog.h"

#include "PindleMac/platform/linux/SystemQuestions.h"

#include <QApplication>
#include <QBoxLayout>
#include <QCursor>
#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

namespace pindle {

namespace {

constexpr int margin = 20;     ///< device-independent pixels
constexpr int spacing = 12;    ///< device-independent pixels
constexpr int textWidth = 340; ///< device-independent pixels
constexpr int iconSize = 48;   ///< device-independent pixels

QLabel *plainLabel(const QString &text, QWidget *parent) {
    auto *label = new QLabel(text, parent);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setFixedWidth(textWidth);
    return label;
}

/// The program's icon, as the desktop knows it; else the desktop's sign for a question, if any.
QIcon questionIcon() {
    for (const QIcon &icon :
         {QIcon::fromTheme(QGuiApplication::desktopFileName()), QGuiApplication::windowIcon(),
          QIcon::fromTheme(QStringLiteral("dialog-question"))}) {
        if (!icon.isNull())
            return icon;
    }
    return {};
}

/// Where the keyboard goes after the answer. The click that led to the question may have been the
/// first one in its window, which then does not have the keyboard yet.
QWidget *windowToReturnTo() {
    if (QWidget *active = QApplication::activeWindow())
        return active;
    for (QWidget *window : QApplication::topLevelWidgets()) {
        if (window->isVisible() && window->windowType() != Qt::ToolTip)
            return window;
    }
    return nullptr;
}

} // namespace

QuestionDialog::QuestionDialog(const Question &question, SystemQuestions &questions,
                               std::function<void(QuestionAnswer)> answered)
    : QDialog(nullptr, Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                           Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint)
    , questions_(questions)
    , answered_(std::move(answered)) {
    setWindowTitle(QStringLiteral("Pindle"));
    setObjectName(QStringLiteral("systemQuestion"));
    setAccessibleName(question.text);
    setAccessibleDescription(question.details);
    // A utility that lives without windows does not end with its last one.
    setAttribute(Qt::WA_QuitOnClose, false);
    layOut(question);
    connect(refuse_, &QPushButton::clicked, this, [this] { choose(QuestionAnswer::refused); });
    connect(accept_, &QPushButton::clicked, this, [this] { choose(QuestionAnswer::accepted); });
}

QuestionDialog::~QuestionDialog() {
    countAsShown(false);
}

void QuestionDialog::layOut(const Question &question) {
    auto *text = plainLabel(question.text, this);
    QFont bold = text->font();
    bold.setBold(true);
    text->setFont(bold);
    auto *details = plainLabel(question.details, this);

    refuse_ = new QPushButton(question.refuse, this);
    accept_ = new QPushButton(question.accept, this);
    refuse_->setObjectName(QStringLiteral("refuse"));
    accept_->setObjectName(QStringLiteral("accept"));
    for (QPushButton *button : {refuse_, accept_}) {
        button->setAccessibleName(button->text());
        button->setAccessibleDescription(question.text);
        button->setAutoDefault(true);
    }
    refuse_->setDefault(true);
    refuse_->setFocus();

    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(spacing);
    buttons->addStretch();
    buttons->addWidget(refuse_);
    buttons->addWidget(accept_);
    auto *column = new QVBoxLayout;
    column->setSpacing(spacing);
    column->addWidget(text);
    column->addWidget(details);
    column->addLayout(buttons);
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(margin, margin, margin, margin);
    row->setSpacing(spacing);
    row->setSizeConstraint(QLayout::SetFixedSize);
    if (const QIcon icon = questionIcon(); !icon.isNull()) {
        auto *picture = new QLabel(this);
        picture->setPixmap(icon.pixmap(iconSize));
        row->addWidget(picture, 0, Qt::AlignTop);
    }
    row->addLayout(column);
}

void QuestionDialog::present() {
    activeBefore_ = windowToReturnTo();
    const QScreen *screen = QGuiApplication::screenAt(QCursor::pos());
    if (!screen)
        screen = QGuiApplication::primaryScreen();
    adjustSize();
    if (screen) {
        QRect frame(QPoint(), sizeHint());
        frame.moveCenter(screen->availableGeometry().center());
        move(frame.topLeft());
    }
    countAsShown(true);
    show();
    raise();
    activateWindow();
}

void QuestionDialog::choose(QuestionAnswer answer) {
    answer_ = answer;
    done(answer == QuestionAnswer::accepted ? Accepted : Rejected);
}

void QuestionDialog::done(int result) {
    QDialog::done(result);
    const auto answered = std::exchange(answered_, nullptr);
    if (!answered)
        return;
    if (activeBefore_)
        activeBefore_->activateWindow();
    QTimer::singleShot(0, this, [answered, answer = answer_] { answered(answer); });
}

void QuestionDialog::countAsShown(bool shown) {
    if (shown != counted_)
        questions_.shown += shown ? 1 : -1;
    counted_ = shown;
}

} // namespace pindle
