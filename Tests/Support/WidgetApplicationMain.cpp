// Runs tests of windows, without any screen.
#include <gtest/gtest.h>

#include <QApplication>

#include "Shell/TarvaneApplication.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    TarvaneApp::TarvaneApplication::introduce();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
