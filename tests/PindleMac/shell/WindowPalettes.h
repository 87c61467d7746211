#pragma once

#include <QApplication>
#include <QFont>
#include <QList>
#include <QPalette>
#include <QStyle>

namespace pindle::shelltest {

struct NamedPalette {
    QString name;
    QPalette palette;
};

inline QPalette desktopPalette(const QColor &window, const QColor &text, const QColor &highlight) {
    QPalette palette(window, window);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(role, text);
    const bool dark = text.lightness() > window.lightness();
    palette.setColor(QPalette::Base, dark ? window.darker(120) : Qt::white);
    palette.setColor(QPalette::Highlight, highlight);
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}

/// A light and a dark desktop.
inline QList<NamedPalette> desktopPalettes() {
    return {{QStringLiteral("light"),
             desktopPalette({0xef, 0xef, 0xef}, {0x12, 0x12, 0x12}, {0x30, 0x8c, 0xc6})},
            {QStringLiteral("dark"),
             desktopPalette({0x2a, 0x2e, 0x32}, {0xfc, 0xfc, 0xfc}, {0x3d, 0xae, 0xe9})}};
}

/// Desktops whose colours are hard to build on.
inline QList<NamedPalette> difficultPalettes() {
    return {{QStringLiteral("white"), desktopPalette(Qt::white, Qt::black, {0xff, 0xcc, 0x00})},
            {QStringLiteral("black"), desktopPalette(Qt::black, Qt::white, {0x00, 0x20, 0x40})},
            {QStringLiteral("faint"),
             desktopPalette({0xd8, 0xd8, 0xd8}, {0x8a, 0x8a, 0x8a}, {0xc0, 0xe0, 0xff})},
            {QStringLiteral("medium"),
             desktopPalette({0x6e, 0x6e, 0x6e}, {0xff, 0xff, 0xff}, {0x99, 0x99, 0x99})}};
}

/// Puts the application's palette and font back as they were.
class AppearanceGuard {
public:
    AppearanceGuard() = default;
    AppearanceGuard(const AppearanceGuard &) = delete;
    AppearanceGuard &operator=(const AppearanceGuard &) = delete;
    ~AppearanceGuard() {
        QApplication::setPalette(palette_);
        QApplication::setFont(font_);
    }

private:
    QPalette palette_ = QApplication::palette();
    QFont font_ = QApplication::font();
};

} // namespace pindle::shelltest
