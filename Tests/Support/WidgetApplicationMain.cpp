// Runs tests of windows, on two screens that nobody sees: a large one, and a laptop's less the
// panel of its desktop.
#include <gtest/gtest.h>

#include <QApplication>
#include <QTemporaryFile>

#include "Shell/TarvaneApplication.h"

int main(int argc, char** argv) {
    QTemporaryFile screens;
    if (!screens.open()) {
        return 1;
    }
    // The first by name is the primary one.
    screens.write(R"({"screens": [
        {"name": "laptop", "x": 1920, "y": 0, "width": 1366, "height": 738,
         "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1},
        {"name": "desk", "x": 0, "y": 0, "width": 1920, "height": 1200,
         "logicalDpi": 96, "logicalBaseDpi": 96, "dpr": 1}]})");
    screens.close();
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" + screens.fileName().toLocal8Bit());
    const QApplication application(argc, argv);
    TarvaneApp::TarvaneApplication::introduce();
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
