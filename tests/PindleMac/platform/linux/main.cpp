#include <QApplication>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>

namespace {

bool onlyLists(int argc, char **argv) {
    for (int i = 1; i < argc; ++i) {
        if (std::strcmp(argv[i], "--gtest_list_tests") == 0)
            return true;
    }
    return false;
}

} // namespace

int main(int argc, char **argv) {
    const bool lists = onlyLists(argc, argv);
    // These tests press keys, take the clipboard and write into the home folder.
    if (!lists && qgetenv("PINDLE_PRIVATE_DESKTOP") != "1") {
        std::fprintf(stderr, "linux_tests runs on a desktop made for it only; start it through "
                             "tests/PindleMac/platform/linux/in-private-desktop\n");
        return 1;
    }
    testing::InitGoogleTest(&argc, argv);
    if (lists)
        return RUN_ALL_TESTS();
    QApplication application(argc, argv);
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
