#include "PindleMac/platform/linux/statusbar/PopUpMenu.h"
#include "ServicesSupport.h"

#include <QApplication>
#include <QMenu>
#include <QScreen>
#include <QTest>
#include <gtest/gtest.h>

namespace pindle {
namespace {

struct StatusMenu : testing::Test {
    QStringList chosen;

    QMenu *open(const QRect &item = {600, 770, 22, 22}) {
        const auto entry = [this](const char *title, const char *key) {
            const QString name = QString::fromUtf8(title);
            return MenuItem{name, QString::fromUtf8(key), [this, name] { chosen += name; }};
        };
        popUpMenu({entry("Help & more", ""), MenuItem::separator(), entry("Settings", ","),
                   entry("Quit", "q")},
                  item);
        auto *menu = qobject_cast<QMenu *>(QApplication::activePopupWidget());
        EXPECT_TRUE(menu);
        EXPECT_TRUE(menu && QTest::qWaitForWindowExposed(menu));
        return menu;
    }
    static bool closed() {
        return waitUntil([] { return !QApplication::activePopupWidget(); });
    }
};

TEST_F(StatusMenu, itShowsItsItemsAndTheirKeys) {
    const QMenu *menu = open();
    QStringList lines;
    for (const QAction *action : menu->actions())
        lines += action->isSeparator()
                     ? QStringLiteral("-")
                     : action->text() + QLatin1Char('|') + action->shortcut().toString();
    EXPECT_EQ(lines,
              (QStringList{QStringLiteral("Help && more|"), QStringLiteral("-"),
                           QStringLiteral("Settings|Ctrl+,"), QStringLiteral("Quit|Ctrl+Q")}));
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    EXPECT_TRUE(closed());
    EXPECT_TRUE(chosen.isEmpty());
}

TEST_F(StatusMenu, itOpensBelowAnItemAboveAndAboveAnItemBelow) {
    const QRect below(600, 770, 22, 22);
    EXPECT_EQ(open(below)->geometry().bottom() + 1, below.top());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    ASSERT_TRUE(closed());
    const QRect above(600, 4, 22, 22);
    EXPECT_EQ(open(above)->geometry().top(), above.bottom() + 1);
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    ASSERT_TRUE(closed());
}

TEST_F(StatusMenu, aChosenItemRunsAfterTheMenuHasClosed) {
    QMenu *menu = open();
    QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(menu->actions()[2]).center());
    EXPECT_FALSE(QApplication::activePopupWidget());
    EXPECT_TRUE(chosen.isEmpty());
    EXPECT_TRUE(waitUntil([this] { return chosen == QStringList{QStringLiteral("Settings")}; }));
}

TEST_F(StatusMenu, aKeyEquivalentChoosesAndClosesIt) {
    QTest::keyClick(open(), Qt::Key_Q, Qt::ControlModifier);
    EXPECT_TRUE(closed());
    EXPECT_TRUE(waitUntil([this] { return chosen == QStringList{QStringLiteral("Quit")}; }));
    QTest::keyClick(open(), Qt::Key_Comma, Qt::ControlModifier);
    EXPECT_TRUE(closed());
    EXPECT_TRUE(waitUntil([this] { return chosen.size() == 2; }));
    EXPECT_EQ(chosen[1], QStringLiteral("Settings"));
}

TEST_F(StatusMenu, aKeyWithoutItsModifierDoesNothing) {
    QTest::keyClick(open(), Qt::Key_Comma);
    EXPECT_TRUE(QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_Escape);
    EXPECT_TRUE(closed());
    EXPECT_FALSE(waitUntil([this] { return !chosen.isEmpty(); }, std::chrono::milliseconds(100)));
}

TEST_F(StatusMenu, aClosedMenuIsGone) {
    const QPointer<QMenu> menu(open());
    menu->close();
    EXPECT_TRUE(waitUntil([&] { return menu.isNull(); }));
}

} // namespace
} // namespace pindle
