#pragma once

#include <QWidget>

namespace pindle {

class WindowServer;

/// An ordinary window of fixed size around one view. Closing it only hides it; it comes back with
/// everything in it as it was. Escape and the desktop's close key close it as well.
class TitledWindow : public QWidget {
    Q_OBJECT
public:
    struct Form {
        QString title;
        QSize contentSize; ///< in logical pixels; higher where the desktop's font needs it
        bool miniaturizable = false;
    };

    /// Takes the content over; the window server must outlive the window.
    TitledWindow(const Form &form, QWidget *content, WindowServer &windowServer);

    /// Brings the program and then the window to the front, with the keyboard; the first time in
    /// the middle of the pointer's screen, later where it was.
    void show();

protected:
    bool event(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void fit();
    void center();

    WindowServer &windowServer_;
    QWidget *content_;
    QSize contentSize_;
    bool centered_ = false;
};

} // namespace pindle
