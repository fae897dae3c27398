// main() of the tests that need the toolkit: one offscreen application object, then the tests.
#include <gtest/gtest.h>

#include <QApplication>

#include <cstdlib>

int main(int argc, char** argv) {
    // Windows are made and driven without a screen, the same on every machine.
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    QApplication app(argc, argv);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
