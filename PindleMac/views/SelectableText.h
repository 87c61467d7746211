#pragma once

#include <QTextEdit>

namespace pindle {

/// A plain text in the fixed-width font that can be selected and copied, shown whole over as many
/// lines as it needs.
class SelectableText : public QTextEdit {
    Q_OBJECT
public:
    SelectableText();

    void setValue(const QString &text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;

protected:
    void changeEvent(QEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;

private:
    void followPalette();
};

} // namespace pindle
