// Draws the program's icon at a size, for desktops that take pixels; a tool of the build, so that
// none from outside is needed. The same icon gives the same bytes everywhere.
//
//   tarvane-render-icon SVG SIZE PNG
#include <QImage>
#include <QPainter>
#include <QString>
#include <QSvgRenderer>
#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 4) {
        std::fputs("Usage: tarvane-render-icon SVG SIZE PNG\n", stderr);
        return 2;
    }
    QSvgRenderer icon(QString::fromLocal8Bit(argv[1]));
    const int size = QString::fromLocal8Bit(argv[2]).toInt();
    if (!icon.isValid() || size <= 0) {
        std::fprintf(stderr, "%s can't be drawn %s pixels wide.\n", argv[1], argv[2]);
        return 1;
    }
    QImage image(size, size, QImage::Format_ARGB32);
    // The picture's own resolution would be that of whatever display there is.
    constexpr int dotsPerMeter = 3780;
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    icon.render(&painter);
    painter.end();
    if (!image.save(QString::fromLocal8Bit(argv[3]), "PNG")) {
        std::fprintf(stderr, "%s can't be written.\n", argv[3]);
        return 1;
    }
    return 0;
}
