#include <QApplication>
#include <QFont>
#include <gtest/gtest.h>

int main(int argc, char **argv) {
    testing::InitGoogleTest(&argc, argv);
    QApplication application(argc, argv);
    // The sizes the expectations speak of, whatever the machine's own font is.
    QFont font = QApplication::font();
    font.setPixelSize(13);
    QApplication::setFont(font);
    return RUN_ALL_TESTS();
}
