// Pictures that guard the look of a drawing. A drawing that doesn't match leaves its actual
// picture and the difference beside each other in the build folder.
#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QImage>
#include <QString>
#include <algorithm>
#include <cstdlib>

#include "Support/TestPaths.h"

namespace TarvaneTests {

class GoldenImage {
  public:
    inline static bool updating = false;

    /// How many pixels are clearly another colour; all of them when the sizes differ.
    static int differingPixels(const QImage& a, const QImage& b) {
        if (a.size() != b.size()) {
            return std::max(a.width() * a.height(), b.width() * b.height());
        }
        int count = 0;
        for (int y = 0; y < a.height(); ++y) {
            for (int x = 0; x < a.width(); ++x) {
                count += distance(a.pixel(x, y), b.pixel(x, y)) > sameColourDistance ? 1 : 0;
            }
        }
        return count;
    }

    /// What antialiasing may do elsewhere: fewer pixels than the smallest letter has.
    static constexpr int tolerance = 8;

    static testing::AssertionResult matches(const QString& name, const QImage& actual) {
        const QString path =
            QDir(QString::fromUtf8(TestPaths::goldenFolder())).filePath(name + ".png");
        if (updating) {
            return actual.save(path) ? testing::AssertionSuccess()
                                     : testing::AssertionFailure() << "can't write " << str(path);
        }
        const QImage golden = QImage(path).convertToFormat(actual.format());
        const int differing =
            golden.isNull() ? actual.width() * actual.height() : differingPixels(golden, actual);
        if (differing <= tolerance) {
            return testing::AssertionSuccess();
        }
        const QDir failures(QString::fromUtf8(TestPaths::goldenFailuresFolder()));
        failures.mkpath(QStringLiteral("."));
        actual.save(failures.filePath(name + "-actual.png"));
        difference(golden, actual).save(failures.filePath(name + "-difference.png"));
        return testing::AssertionFailure() << differing << " pixels differ from " << str(path)
                                           << "; see " << str(failures.filePath(name)) << "-*.png";
    }

  private:
    static constexpr int sameColourDistance = 40;  // of 255, in the channel that differs most

    static int distance(QRgb a, QRgb b) {
        return std::max({std::abs(qRed(a) - qRed(b)), std::abs(qGreen(a) - qGreen(b)),
                         std::abs(qBlue(a) - qBlue(b))});
    }
    static QImage difference(const QImage& golden, const QImage& actual) {
        QImage image(actual.size(), QImage::Format_RGB32);
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const bool known = golden.rect().contains(x, y);
                const int grey =
                    known ? std::min(distance(golden.pixel(x, y), actual.pixel(x, y)) * 4, 255)
                          : 255;
                image.setPixel(x, y, qRgb(grey, grey, grey));
            }
        }
        return image;
    }
    static std::string str(const QString& text) { return text.toStdString(); }
};

}  // namespace TarvaneTests
