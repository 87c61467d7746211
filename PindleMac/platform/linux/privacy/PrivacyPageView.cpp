#include "PindleMac/platform/linux/privacy/PrivacyPageView.h"

#include <QAccessible>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

namespace pindle {

namespace {

constexpr int margin = 18;     ///< device-independent pixels
constexpr int spacing = 12;    ///< device-independent pixels
constexpr int textWidth = 380; ///< device-independent pixels
/// A change that has not shown by then did not happen.
constexpr std::chrono::milliseconds changeTakes{2500};

QLabel *plainLabel(const QString &text) {
    auto *label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setFixedWidth(textWidth);
    return label;
}

} // namespace

PrivacyPageView::PrivacyPageView(PrivacyPermission permission)
    : permission_(std::move(permission))
    , choice_(new QCheckBox(permission_.choice))
    , state_(plainLabel({}))
    , afterChange_(new QTimer(this)) {
    afterChange_->setSingleShot(true);
    connect(afterChange_, &QTimer::timeout, this, &PrivacyPageView::refresh);
    connect(choice_, &QAbstractButton::clicked, this, &PrivacyPageView::change);
    choice_->setAccessibleName(permission_.choice);
    layOut();
    refresh();
}

void PrivacyPageView::layOut() {
    QFont bold = state_->font();
    bold.setBold(true);
    state_->setFont(bold);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(spacing);
    column->addWidget(plainLabel(permission_.purpose));
    column->addWidget(choice_, 0, Qt::AlignLeft);
    column->addWidget(state_);
    column->addWidget(plainLabel(permission_.note));
    column->addStretch();
    if (permission_.openSettings) {
        auto *onward = new QPushButton(QStringLiteral("Open Desktop Settings"));
        onward->setAccessibleDescription(permission_.title);
        onward->setAutoDefault(true);
        connect(onward, &QAbstractButton::clicked, this, [this] { permission_.openSettings(); });
        column->addWidget(onward, 0, Qt::AlignLeft);
    }
}

/// What the user chose stays to be seen until the change shows, or has had its time.
void PrivacyPageView::change(bool granted) {
    permission_.change(granted);
    if (permission_.state().granted == granted)
        refresh();
    else
        afterChange_->start(changeTakes);
}

void PrivacyPageView::refresh() {
    if (afterChange_->isActive() && permission_.state().granted != choice_->isChecked())
        return;
    afterChange_->stop();
    const PrivacyPermission::State state = permission_.state();
    choice_->setChecked(state.granted);
    choice_->setAccessibleDescription(state.text);
    state_->setText(state.text);
}

} // namespace pindle
