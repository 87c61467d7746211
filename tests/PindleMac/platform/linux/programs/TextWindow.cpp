#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <memory>

namespace {

QWidget *editor(const QString &text, int start, int end) {
    auto *edit = new QPlainTextEdit(text);
    QTextCursor cursor = edit->textCursor();
    cursor.setPosition(start);
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    edit->setTextCursor(cursor);
    return edit;
}

QWidget *line(const QString &text, int start, int end, bool isPassword) {
    auto *edit = new QLineEdit(text);
    edit->setEchoMode(isPassword ? QLineEdit::Password : QLineEdit::Normal);
    // Gaining the focus by anything but the mouse selects all.
    edit->setFocusPolicy(Qt::ClickFocus);
    edit->setSelection(start, end - start);
    return edit;
}

QWidget *widgetOf(const QString &kind, const QString &text, int start, int end) {
    if (kind == QStringLiteral("editor"))
        return editor(text, start, end);
    if (kind == QStringLiteral("button"))
        return new QPushButton(text);
    return line(text, start, end, kind == QStringLiteral("password"));
}

} // namespace

/// text_window KIND TEXT START END: a window holding an editor, a line, a password field or a
/// button that has the focus, with the text from START to END (UTF-16 units) selected. Above it, 40
/// pixels high, is another line.
int main(int argc, char **argv) {
    QApplication application(argc, argv);
    const QStringList arguments = QApplication::arguments();
    if (arguments.size() != 5)
        return 2;
    QMainWindow window;
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    auto *focused =
        widgetOf(arguments[1], arguments[2], arguments[3].toInt(), arguments[4].toInt());
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    auto *other = new QLineEdit(QStringLiteral("another field"));
    other->setFixedHeight(40);
    layout->addWidget(other);
    focused->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    layout->addWidget(focused);
    window.setCentralWidget(content);
    window.resize(400, 200);
    focused->setFocus(Qt::MouseFocusReason);
    window.show();
    return QApplication::exec();
}
