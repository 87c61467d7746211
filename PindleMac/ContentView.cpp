#include "PindleMac/ContentView.h"

#include "PindleMac/AppViewModel.h"
#include "PindleMac/platform/NotificationCenter.h"
#include "PindleMac/views/CalendarActionsCard.h"
#include "PindleMac/views/ErrorSection.h"
#include "PindleMac/views/EventFormCard.h"
#include "PindleMac/views/IdleCard.h"
#include "PindleMac/views/LoadingCard.h"
#include "PindleMac/views/MessageCard.h"
#include "PindleMac/views/OncePerTurn.h"
#include "PindleMac/views/PanelHeader.h"
#include "PindleMac/views/PanelOutline.h"
#include "PindleMac/views/Theme.h"
#include "PindleMac/views/ThinScrollBar.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <QVBoxLayout>

namespace pindle {

namespace {

constexpr int padding = 18;
constexpr int spacing = 18;

/// Brings the sizes of nested layouts up to date, innermost first.
void settleLayouts(QWidget &view) {
    for (QObject *child : view.children()) {
        if (child->isWidgetType())
            settleLayouts(*static_cast<QWidget *>(child));
    }
    if (view.layout())
        view.layout()->activate();
}

/// Sets the message and the card's visibility; whether there is a message that was not there.
bool showMessage(MessageCard &card, const QString &message) {
    const bool isNew = card.setText(message);
    card.setVisible(!message.isEmpty());
    return isNew && !message.isEmpty();
}

} // namespace

ContentView::ContentView(AppViewModel &viewModel)
    : viewModel_(viewModel)
    , rendering_(new OncePerTurn([this] { render(); }))
    , area_(new QScrollArea(this))
    , column_(new QWidget)
    , idle_(new IdleCard)
    , loading_(new LoadingCard)
    , form_(new EventFormCard([this](auto field, const QString &text) { edit(field, text); }))
    , actions_(new CalendarActionsCard(
          [this](const CalendarDestinationLink &link) { chooseDestination(link); }))
    , error_(new ErrorSection)
    , success_(new MessageCard(theme::greenTint(), theme::green()))
    , notice_(new MessageCard(theme::yellowTint(), theme::orange()))
    , scrollBar_(new ThinScrollBar(this))
    , outline_(new PanelOutline(this)) {
    rendering_->setParent(this);
    setPalette(theme::palette());
    buildColumn();
    connectOffers();
    connect(&viewModel_, &AppViewModel::objectWillChange, rendering_, &OncePerTurn::request);
    render();
    resize(panelWidth, contentHeight());
}

ContentView::~ContentView() = default;

void ContentView::buildColumn() {
    auto *header = new PanelHeader;
    connect(header, &PanelHeader::closeClicked, this, &ContentView::requestClose);

    auto *layout = new QVBoxLayout(column_);
    layout->setContentsMargins(padding, padding, padding, padding);
    layout->setSpacing(spacing);
    for (QWidget *section : std::initializer_list<QWidget *>{header, idle_, loading_, form_,
                                                             actions_, error_, success_, notice_})
        layout->addWidget(section);
    layout->addStretch();
    column_->resize(panelWidth, 0);
    column_->installEventFilter(this);

    area_->setFrameShape(QFrame::NoFrame);
    area_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area_->setFocusPolicy(Qt::NoFocus);
    area_->setWidget(column_);
    area_->viewport()->setAutoFillBackground(false);
    column_->setAutoFillBackground(false);
    scrollBar_->standInFor(*area_->verticalScrollBar());
}

void ContentView::connectOffers() {
    connect(error_, &ErrorSection::openCalendarSettings, &viewModel_,
            &AppViewModel::openCalendarSettings);
    connect(error_, &ErrorSection::promptAccessibility, &viewModel_,
            &AppViewModel::promptAccessibilityPermission);
    connect(error_, &ErrorSection::openAccessibilitySettings, &viewModel_,
            &AppViewModel::openAccessibilitySettings);
}

int ContentView::contentHeight() const {
    return std::min(fullHeight(), largestHeight);
}

int ContentView::fullHeight() const {
    return column_->height();
}

void ContentView::renderPendingChanges() {
    rendering_->runNow();
}

void ContentView::setRoundedCorners(bool rounded) {
    if (rounded == outline_->clipping())
        return;
    outline_->setClipping(rounded);
    backdrop_.forget();
    update();
}

void ContentView::requestClose() {
    viewModel_.notificationCenter().post(closePindlePopover, {});
}

void ContentView::render() {
    const bool wasReady = !form_->isHidden();
    renderPhase();
    const bool phaseShownChanged = wasReady == form_->isHidden();
    QWidget *newMessage = renderMessages();
    fitToContent();
    if (phaseShownChanged)
        area_->verticalScrollBar()->setValue(0);
    // A notice that comes with a new draft must not push the draft out of sight.
    if (newMessage && !(phaseShownChanged && newMessage == notice_))
        reveal(*newMessage);
}

void ContentView::renderPhase() {
    const ParserPhase phase = viewModel_.phase();
    const bool loading = phase == ParserPhase::capturing || phase == ParserPhase::parsing;
    const bool ready = phase == ParserPhase::ready;
    if (!ready) {
        leaveFocusOf(*form_);
        leaveFocusOf(*actions_);
    }
    idle_->setVisible(!loading && !ready);
    loading_->setVisible(loading);
    form_->setVisible(ready);
    actions_->setVisible(ready);

    loading_->setPhase(phase);
    form_->setDetails(viewModel_.eventDetails());
    actions_->setLinks(viewModel_.calendarLinks());
    actions_->setTilesEnabled(destinationsEnabled());
}

/// The most important message that was not there before, if any.
QWidget *ContentView::renderMessages() {
    const auto &error = viewModel_.errorMessage();
    const bool newError = error_->setMessage(error.value_or(QString())) && error;
    error_->setOffers(viewModel_.showCalendarSettingsAction(),
                      viewModel_.showAccessibilitySettingsAction());
    if (!error)
        leaveFocusOf(*error_);
    error_->setVisible(error.has_value());
    const bool newSuccess = showMessage(*success_, viewModel_.successMessage().value_or(QString()));
    const bool newNotice = showMessage(*notice_, viewModel_.userMessage());
    if (newError)
        return error_;
    if (newSuccess)
        return success_;
    return newNotice ? notice_ : nullptr;
}

/// Hiding the control that has the keyboard would hand it to some other control.
void ContentView::leaveFocusOf(QWidget &section) {
    const QWidget *focused = window()->focusWidget();
    if (focused && section.isAncestorOf(focused))
        window()->setFocus(Qt::OtherFocusReason);
}

bool ContentView::destinationsEnabled() const {
    return !viewModel_.isLoading() && !viewModel_.eventDetails().title.isEmpty() &&
           !viewModel_.eventDetails().startDate.isEmpty();
}

void ContentView::edit(QString CalendarEventDetails::*field, const QString &text) {
    CalendarEventDetails details = viewModel_.eventDetails();
    if (details.*field == text)
        return;
    details.*field = text;
    viewModel_.setEventDetails(details);
    if (viewModel_.phase() == ParserPhase::ready)
        viewModel_.refreshCalendarLinks();
}

void ContentView::chooseDestination(const CalendarDestinationLink &link) {
    // The tile may not show yet that the state has changed.
    if (!destinationsEnabled())
        return;
    if (link.kind == CalendarDestinationLink::Kind::nativeApple) {
        // The state changes with the task; a second click may be waiting in the queue before it.
        actions_->setTilesEnabled(false);
        viewModel_.saveEvent();
    } else {
        viewModel_.openCalendarLink(link);
    }
}

void ContentView::fitToContent() {
    const int before = contentHeight();
    settleLayouts(*column_);
    column_->resize(panelWidth, column_->heightForWidth(panelWidth));
    if (contentHeight() != before)
        Q_EMIT contentHeightChanged();
}

void ContentView::reveal(const QWidget &message) {
    QScrollBar &bar = *area_->verticalScrollBar();
    const int top = message.y() - padding;
    const int bottom = message.y() + message.height() + padding;
    const int wanted = std::min(std::max(bar.value(), bottom - area_->viewport()->height()), top);
    bar.setValue(highestScrollKeepingFocus(wanted));
}

/// `wanted`, or less where it would take the field being edited out of sight.
int ContentView::highestScrollKeepingFocus(int wanted) const {
    const QWidget *focused = window()->focusWidget();
    const int current = area_->verticalScrollBar()->value();
    if (!focused || wanted <= current || !focused->testAttribute(Qt::WA_InputMethodEnabled) ||
        !column_->isAncestorOf(focused))
        return wanted;
    const int top = focused->mapTo(column_, QPoint()).y() - padding;
    const bool inSight = top + padding >= current;
    return inSight ? std::max(current, std::min(wanted, top)) : wanted;
}

bool ContentView::eventFilter(QObject *watched, QEvent *event) {
    if (watched == column_ && event->type() == QEvent::LayoutRequest)
        fitToContent();
    return QWidget::eventFilter(watched, event);
}

void ContentView::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape)
        requestClose();
    else
        QWidget::keyPressEvent(event);
}

void ContentView::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    backdrop_.draw(painter, size(), [this](QPainter &into) { paintBackground(into); });
}

void ContentView::paintBackground(QPainter &painter) const {
    QLinearGradient gradient(rect().topLeft(), rect().bottomRight());
    gradient.setColorAt(0, theme::backgroundStart());
    gradient.setColorAt(1, theme::backgroundEnd());
    if (!outline_->clipping()) {
        painter.fillRect(rect(), gradient);
        return;
    }
    // At fractional scales the last row of pixels is only partly the view's; drawn smoothly, it
    // leaves nothing in the corners.
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(gradient);
    painter.drawRoundedRect(rect(), PanelOutline::radius, PanelOutline::radius);
}

void ContentView::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    area_->setGeometry(rect());
    constexpr auto corner = static_cast<int>(PanelOutline::radius);
    constexpr int barWidth = ThinScrollBar::thicknessWithMargin;
    scrollBar_->setGeometry(width() - barWidth, corner, barWidth, height() - 2 * corner);
    scrollBar_->raise();
    outline_->setGeometry(rect());
    outline_->raise();
}

} // namespace pindle
