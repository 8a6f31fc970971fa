// A spectrogram's colour ramp as a strip, by the same table that colours the spectrogram.
#pragma once

#include <QRectF>
#include <QString>
#include <QWidget>
#include <vector>

#include "Records/SpectrogramColorStop.h"

class QPainter;

namespace TarvaneApp {

class SpectrogramRampBar final : public QWidget {
    Q_OBJECT
  public:
    /// With marks where the stops are and the levels at both ends, or the colours alone.
    enum class Shows { colors, colorsAndLevels };

    explicit SpectrogramRampBar(Shows shows, QWidget* parent = nullptr);

    void setRamp(const std::vector<SpectrogramColorStop>& stops);
    void setEnds(const QString& floor, const QString& ceiling);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int barHeight() const;
    void paintMarks(QPainter& painter, const QRectF& bar) const;
    void paintEnds(QPainter& painter) const;

    const Shows shows_;
    std::vector<SpectrogramColorStop> stops_;
    QString floor_;
    QString ceiling_;
};

}  // namespace TarvaneApp
