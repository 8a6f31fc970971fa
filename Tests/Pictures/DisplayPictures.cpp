// Writes pictures of the drawn displays at many sizes and scales, for people to look at: run it
// with the folder to write to. Each is drawn as in a window, on the panel's ground.

#include <QDir>
#include <QGuiApplication>
#include <QPainter>
#include <iostream>

#include "Displays/LevelHistory/LevelHistoryHover.h"
#include "Displays/LevelHistory/LevelHistoryRaster.h"
#include "Displays/Spectrogram/SpectrogramFrequencyAxisView.h"
#include "Displays/Spectrogram/SpectrogramRaster.h"
#include "Displays/Spectrogram/SpectrogramStatusBadge.h"
#include "Displays/Spectrum/SpectrumHover.h"
#include "Displays/Spectrum/SpectrumRaster.h"
#include "Support/LevelHistoryScenes.h"
#include "Support/SpectrogramScenes.h"
#include "Support/SpectrumScenes.h"

namespace {

using namespace TarvaneApp;
using namespace TarvaneTests;

const std::vector<QSize> sizes{{240, 120}, {480, 200}, {900, 300}, {1900, 600}, {3840, 2000}};

class Album {
  public:
    explicit Album(const QString& folder) : folder_(folder) {}

    void put(const QString& name, const QSize& size, double scale, const QImage& picture) {
        const QString file = QStringLiteral("%1-%2x%3@%4.png")
                                 .arg(name)
                                 .arg(size.width())
                                 .arg(size.height())
                                 .arg(scale);
        if (!picture.save(folder_.filePath(file))) {
            std::cerr << "can't write " << file.toStdString() << '\n';
        }
    }

  private:
    QDir folder_;
};

void shootSpectrum(Album& album, const QString& name, const SpectrumView& view, const QSize& size,
                   double scale) {
    SpectrumRaster raster(Theme::panelBackground);
    SpectrumView shown = view;
    shown.hover = SpectrumHoverState::at(size.width() * 0.4, size.width(), view.frequencyAxis());
    QImage picture = raster.image(shown, size, scale);
    QPainter painter(&picture);
    paintHover(painter, shown, size);
    painter.end();
    album.put(name, size, scale, picture);
}

void shootSpectra(Album& album) {
    for (const QSize& size : sizes) {
        shootSpectrum(album, QStringLiteral("spectrum"), fullSpectrum(), size, 1.0);
    }
    for (const double scale : {1.5, 2.0}) {
        shootSpectrum(album, QStringLiteral("spectrum"), fullSpectrum(), {900, 300}, scale);
    }
    using enum TarvaneKit::OctaveFraction;
    SpectrumView fine = ordinarySpectrum(fortyEighthOctave);
    fine.viewMode = SpectrumViewMode::banded;
    shootSpectrum(album, QStringLiteral("spectrum-fine"), fine, {900, 300}, 1.0);
    shootSpectrum(album, QStringLiteral("spectrum-fine"), fine, {1900, 600}, 1.0);
    SpectrumView line = ordinarySpectrum();
    line.viewMode = SpectrumViewMode::line;
    shootSpectrum(album, QStringLiteral("spectrum-line"), line, {900, 300}, 1.0);
    shootSpectrum(album, QStringLiteral("spectrum-line"), line, {900, 300}, 2.0);
    SpectrumView both = ordinarySpectrum();
    shootSpectrum(album, QStringLiteral("spectrum-both"), both, {900, 300}, 1.0);
}

void shootSpectrogram(Album& album, const QString& name, const SpectrogramView& view,
                      const QSize& size, double scale) {
    QImage picture((QSizeF(size) * scale).toSize(), QImage::Format_RGB32);
    picture.setDevicePixelRatio(scale);
    picture.fill(Theme::panelBackground);
    QPainter painter(&picture);
    const QSizeF plot(size.width(), size.height() - SpectrogramFrequencyAxisView::height);
    SpectrogramRaster raster;
    painter.drawImage(QPointF(), raster.image(view, plot, scale));
    SpectrogramStatusBadge{view.scrollState.rowOffset == 0}.paint(painter, plot);
    painter.translate(0.0, plot.height());
    paint(painter, SpectrogramFrequencyAxisView(), plot.width());
    painter.end();
    album.put(name, size, scale, picture);
}

void shootSpectrograms(Album& album) {
    const SpectrogramHistory history = spectrogramHistory(900);
    for (const QSize& size : sizes) {
        shootSpectrogram(album, QStringLiteral("spectrogram"), spectrogramOf(history), size, 1.0);
    }
    for (const double scale : {1.5, 2.0}) {
        shootSpectrogram(album, QStringLiteral("spectrogram"), spectrogramOf(history), {900, 300},
                         scale);
    }
    SpectrogramView scrolled = spectrogramOf(history, 12.0);
    scrolled.scrollState.rowOffset = 100;
    shootSpectrogram(album, QStringLiteral("spectrogram-history"), scrolled, {900, 300}, 1.0);
}

void shootHistory(Album& album, const QString& name, const LevelHistoryView& view,
                  const QSize& size, double scale) {
    LevelHistoryView shown = view;
    shown.hover.xPosition = size.width() * 0.6;
    LevelHistoryRaster raster(Theme::panelBackground);
    QImage picture = raster.image(shown, size, scale);
    QPainter painter(&picture);
    drawHover(painter, shown, raster.geometry(), size);
    painter.end();
    album.put(name, size, scale, picture);
}

void shootHistories(Album& album) {
    const auto show = concert(900.0);
    const auto other = concert(900.0, 85.0);
    LevelHistoryView view = historyOf(*show);
    view.secondaryMetricIndex = 1;
    view.overlays = {{.id = TarvaneKit::UUID::main(),
                      .recorder = other.get(),
                      .revision = 1,
                      .metricIndex = 0,
                      .color = {0.35, 0.65, 1.0, 1.0},
                      .displayOffsetDB = 0.0}};
    for (const QSize& size : sizes) {
        shootHistory(album, QStringLiteral("history"), view, size, 1.0);
    }
    for (const double scale : {1.5, 2.0}) {
        shootHistory(album, QStringLiteral("history"), view, {900, 300}, scale);
    }
    shootHistory(album, QStringLiteral("history-plain"), historyOf(*show), {900, 300}, 1.0);
    const auto none = newSession();
    shootHistory(album, QStringLiteral("history-empty"), historyOf(*none), {900, 300}, 1.0);
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::cerr << "usage: TarvaneDisplayPictures <folder>\n";
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    QDir().mkpath(folder);
    Album album(folder);
    shootSpectra(album);
    shootSpectrograms(album);
    shootHistories(album);
    return 0;
}
