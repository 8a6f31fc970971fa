#include "Panels/GraphArea.h"

#include <algorithm>
#include <cmath>

#include "LiveFollow.h"
#include "MeterEngine.h"
#include "Panels/PanelResizeHandle.h"
#include "Panels/RTAPanelView.h"
#include "Panels/SpectrogramPanelView.h"

namespace TarvaneApp {

namespace {

constexpr int lowestFirstPanel = 60;
constexpr int narrowestFirstPanel = 80;
constexpr double evenSplit = 0.5;
constexpr double smallestShare = 0.15;
constexpr double largestShare = 0.85;

}  // namespace

SplitGeometry SplitGeometry::make(const QSize& area, GraphOrientation orientation,
                                  double firstFraction) {
    const bool isStacked = orientation == GraphOrientation::stacked;
    const int extent = isStacked ? area.height() : area.width();
    const int first = std::max(static_cast<int>(std::lround(firstFraction * extent)),
                               isStacked ? lowestFirstPanel : narrowestFirstPanel);
    const int second = std::max(extent - first - handleThickness, 0);
    const auto piece = [&](int from, int length) {
        return isStacked ? QRect(0, from, area.width(), length)
                         : QRect(from, 0, length, area.height());
    };
    return {piece(0, first), piece(first, handleThickness), piece(first + handleThickness, second)};
}

double swappedForOrder(double fraction, GraphOrder order) {
    return order == GraphOrder::rtaFirst ? fraction : 1.0 - fraction;
}

GraphArea::GraphArea(MeterEngine& engine, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      rta_(new RTAPanelView(engine, this)),
      spectrogram_(new SpectrogramPanelView(engine, this)),
      handle_(new PanelResizeHandle(
          {.begin =
               [this] {
                   fractionAtPress_ =
                       swappedForOrder(engine_.panelSplitFraction(), engine_.graphOrder());
               },
           .moveBy =
               [this](double pixels) {
                   const int extent =
                       engine_.graphOrientation() == GraphOrientation::stacked ? height() : width();
                   if (extent > 0) {
                       const double first = fractionAtPress_ + pixels / extent;
                       engine_.panelSplitFraction.set(
                           std::clamp(swappedForOrder(first, engine_.graphOrder()), smallestShare,
                                      largestShare));
                   }
               },
           .reset = [this] { engine_.panelSplitFraction.set(evenSplit); }},
          this)) {
    followAll(
        this, [this] { arrange(); }, engine.panelLayout, engine.panelSplitFraction,
        engine.graphOrientation, engine.graphOrder, engine.rtaPlacement,
        engine.spectrogramPlacement);
}

void GraphArea::resizeEvent(QResizeEvent*) {
    arrange();
}

void GraphArea::arrange() {
    const bool hasRTA = engine_.rtaPlacement() == ModulePlacement::mainWindow;
    const bool hasSpectrogram = engine_.spectrogramPlacement() == ModulePlacement::mainWindow;
    const bool isBoth = hasRTA && hasSpectrogram;
    const bool showsRTA =
        hasRTA && !(isBoth && engine_.panelLayout() == PanelLayout::spectrogramOnly);
    const bool showsSpectrogram =
        hasSpectrogram && !(isBoth && engine_.panelLayout() == PanelLayout::rtaOnly);
    if (showsRTA && showsSpectrogram) {
        const bool rtaFirst = engine_.graphOrder() == GraphOrder::rtaFirst;
        const auto split = SplitGeometry::make(
            size(), engine_.graphOrientation(),
            swappedForOrder(engine_.panelSplitFraction(), engine_.graphOrder()));
        (rtaFirst ? rta_ : spectrogram_)->setGeometry(split.first);
        (rtaFirst ? spectrogram_ : rta_)->setGeometry(split.second);
        handle_->setGeometry(split.handle);
        handle_->setOrientation(engine_.graphOrientation() == GraphOrientation::stacked
                                    ? Qt::Horizontal
                                    : Qt::Vertical);
    } else {
        rta_->setGeometry(rect());
        spectrogram_->setGeometry(rect());
    }
    rta_->setVisible(showsRTA);
    spectrogram_->setVisible(showsSpectrogram);
    handle_->setVisible(showsRTA && showsSpectrogram);
}

}  // namespace TarvaneApp
