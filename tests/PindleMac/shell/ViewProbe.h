#pragma once

#include "PindleMac/ContentView.h"
#include "PindleMac/views/CompactCalendarButton.h"
#include "tests/PindleMac/shell/ShellFixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QScrollArea>
#include <QScrollBar>
#include <QTest>
#include <algorithm>

namespace pindle::shelltest {

/// Lets everything that is due on this turn of the event loop happen, layouts included.
inline void settle() {
    QTest::qWait(1);
}

/// Views of one type that can be seen (in a shown or hidden window), from top to bottom, then from
/// left to right.
template<class View> QList<View *> shownViews(const QWidget &in) {
    QList<View *> views;
    for (View *view : in.findChildren<View *>())
        if (view->isVisibleTo(&in))
            views.append(view);
    const auto place = [&in](const View *view) { return view->mapTo(&in, QPoint()); };
    std::ranges::stable_sort(views, [&place](const View *one, const View *other) {
        return std::pair(place(one).y(), place(one).x()) <
               std::pair(place(other).y(), place(other).x());
    });
    return views;
}

inline QStringList shownTexts(const QWidget &in) {
    QStringList texts;
    for (const QLabel *label : shownViews<QLabel>(in))
        texts.append(label->text());
    return texts;
}

/// The shown view of this type and accessible name; null when there is none.
template<class View> View *named(const QWidget &in, const QString &name) {
    for (View *view : shownViews<View>(in))
        if (view->accessibleName() == name)
            return view;
    return nullptr;
}

inline QLineEdit &field(const QWidget &in, const QString &title) {
    auto *view = named<QLineEdit>(in, title);
    if (!view)
        qFatal("no field %s", qPrintable(title));
    return *view;
}

inline QAbstractButton &button(const QWidget &in, const QString &name) {
    auto *view = named<QAbstractButton>(in, name);
    if (!view)
        qFatal("no button %s", qPrintable(name));
    return *view;
}

inline QScrollBar &scrollBar(const QWidget &in) {
    return *in.findChild<QScrollArea *>()->verticalScrollBar();
}

/// Whether all of the view lies in the part of the scroll area that is in sight.
inline bool inSight(const QWidget &in, const QWidget &view) {
    const QWidget *viewport = in.findChild<QScrollArea *>()->viewport();
    return viewport->rect().contains(QRect(view.mapTo(viewport, QPoint()), view.size()));
}

/// The panel's content in a window of its own, over a fake desktop.
struct ShownView {
    Shell shell;
    AppViewModel &model = *shell.model;
    ContentView view{model};

    ShownView() {
        view.setAttribute(Qt::WA_TranslucentBackground);
        QObject::connect(&view, &ContentView::contentHeightChanged, &view,
                         [this] { view.resize(ContentView::panelWidth, view.contentHeight()); });
        view.show();
        view.activateWindow();
        settle();
    }
};

} // namespace pindle::shelltest
