// Runs tests that draw, without any screen. With --update-golden the goldens are written
// anew instead of compared with: look at the difference before you commit them.
#include <gtest/gtest.h>

#include <QGuiApplication>

#include "Support/GoldenImage.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    for (const QString& argument : QGuiApplication::arguments()) {
        if (argument == QStringLiteral("--update-golden")) {
            TarvaneTests::GoldenImage::updating = true;
        }
    }
    return RUN_ALL_TESTS();
}
