#include "Shell/Controls/Icon.h"

#include <QFile>
#include <QPainter>
#include <QPixmap>
#include <QPixmapCache>
#include <QSvgRenderer>
#include <cmath>

#include "Core/Contract.h"

// Outside any namespace, as Qt requires for a library's resources.
static void loadIconResource() {
    Q_INIT_RESOURCE(icons);
}

namespace TarvaneApp {

namespace {

QString resourcePath(const QString& name) {
    static const bool loaded = [] {
        loadIconResource();
        return true;
    }();
    static_cast<void>(loaded);
    QString path = QStringLiteral(":/icons/") + name + QStringLiteral(".svg");
    TARVANE_PRECONDITION(QFile::exists(path));
    return path;
}

// `size` in device pixels.
QPixmap drawing(const QString& name, QSize size, const QColor& color) {
    const QString key = QStringLiteral("tarvane-%1-%2x%3-%4")
                            .arg(name)
                            .arg(size.width())
                            .arg(size.height())
                            .arg(color.rgba(), 0, 16);
    QPixmap pixmap;
    if (QPixmapCache::find(key, &pixmap)) {
        return pixmap;
    }
    pixmap = QPixmap(size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    QSvgRenderer(resourcePath(name)).render(&painter);
    if (color.isValid()) {
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(pixmap.rect(), color);
    }
    painter.end();
    QPixmapCache::insert(key, pixmap);
    return pixmap;
}

QIcon icon(const QString& name, std::initializer_list<int> sizes, const QColor& color) {
    QIcon icon;
    for (const int size : sizes) {
        icon.addPixmap(drawing(name, QSize(size, size), color));
    }
    return icon;
}

}  // namespace

void Icon::paint(QPainter& painter, const QString& name, const QRectF& rect, const QColor& color) {
    const double scale = painter.device()->devicePixelRatioF();
    const QSize size(static_cast<int>(std::lround(rect.width() * scale)),
                     static_cast<int>(std::lround(rect.height() * scale)));
    if (size.isEmpty()) {
        return;
    }
    QPixmap pixmap = drawing(name, size, color);
    pixmap.setDevicePixelRatio(scale);
    // On whole device pixels, so that nothing is resampled.
    painter.drawPixmap(
        QPointF(std::round(rect.left() * scale) / scale, std::round(rect.top() * scale) / scale),
        pixmap);
}

QIcon Icon::tinted(const QString& name, int size, const QColor& color) {
    return icon(name, {size, size * 3 / 2, size * 2, size * 3}, color);
}

QIcon Icon::application() {
    return icon(QStringLiteral("tarvane"), {16, 22, 24, 32, 48, 64, 128, 256}, QColor());
}

}  // namespace TarvaneApp
