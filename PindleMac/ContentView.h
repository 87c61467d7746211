#pragma once

#include "PindleMac/views/Backdrop.h"

#include <QWidget>

class QScrollArea;

namespace pindle {

class AppViewModel;
class CalendarActionsCard;
class ErrorSection;
class EventFormCard;
class IdleCard;
class LoadingCard;
class MessageCard;
class OncePerTurn;
class PanelOutline;
class ThinScrollBar;
struct CalendarDestinationLink;
struct CalendarEventDetails;

/// The whole content of the panel: a rendering of the view model's state, which every edit is
/// written back to at once. Main thread only.
class ContentView : public QWidget {
    Q_OBJECT
public:
    /// In logical pixels.
    static constexpr int panelWidth = 420;
    static constexpr int largestHeight = 560;

    /// The view model must outlive the view.
    explicit ContentView(AppViewModel &viewModel);
    ~ContentView() override;

    /// Height that the content needs, at most `largestHeight`.
    int contentHeight() const;
    /// Height of all the content, however much of it has to be scrolled to.
    int fullHeight() const;
    /// Renders at once what would be rendered on the event loop's next turn.
    void renderPendingChanges();
    /// Whether the corners are transparent; false fills the view to its edges.
    void setRoundedCorners(bool rounded);
    /// Posts `closePindlePopover`.
    void requestClose();

Q_SIGNALS:
    void contentHeightChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    void buildColumn();
    void connectOffers();
    void render();
    void renderPhase();
    QWidget *renderMessages();
    void leaveFocusOf(QWidget &section);
    void fitToContent();
    void reveal(const QWidget &message);
    int highestScrollKeepingFocus(int wanted) const;
    void edit(QString CalendarEventDetails::*field, const QString &text);
    void chooseDestination(const CalendarDestinationLink &link);
    bool destinationsEnabled() const;
    void paintBackground(QPainter &painter) const;

    AppViewModel &viewModel_;
    OncePerTurn *rendering_;
    QScrollArea *area_;
    QWidget *column_;
    IdleCard *idle_;
    LoadingCard *loading_;
    EventFormCard *form_;
    CalendarActionsCard *actions_;
    ErrorSection *error_;
    MessageCard *success_;
    MessageCard *notice_;
    ThinScrollBar *scrollBar_;
    PanelOutline *outline_;
    Backdrop backdrop_;
};

} // namespace pindle
