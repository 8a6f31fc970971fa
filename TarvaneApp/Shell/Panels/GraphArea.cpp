#include "Shell/Panels/GraphArea.h"

#include <algorithm>
#include <cmath>

#include "Shell/Panels/ModuleArrangementLink.h"
#include "Shell/Panels/PanelResizeHandle.h"
#include "Shell/Panels/RTAPanelView.h"
#include "Shell/Panels/SpectrogramPanelView.h"

namespace TarvaneApp {

namespace {

constexpr int lowestFirstPanel = 60;
constexpr int narrowestFirstPanel = 80;
constexpr QSize smallestArea(320, 160);
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

GraphArea::GraphArea(MeterEngine& engine, ModuleArrangementLink& arrangement,
                     const std::optional<TarvaneKit::UUID>& fixedChannelID, QWidget* parent)
    : QWidget(parent),
      arrangement_(arrangement),
      rta_(new RTAPanelView(engine, fixedChannelID, &arrangement, this)),
      spectrogram_(new SpectrogramPanelView(engine, fixedChannelID, &arrangement, this)),
      handle_(new PanelResizeHandle(
          {.begin =
               [this] {
                   const ModuleArrangement shown = arrangement_.arrangement();
                   fractionAtPress_ = swappedForOrder(shown.splitFraction, shown.graphOrder);
               },
           .moveBy =
               [this](double pixels) {
                   const ModuleArrangement shown = arrangement_.arrangement();
                   const int extent =
                       shown.graphOrientation == GraphOrientation::stacked ? height() : width();
                   if (extent > 0) {
                       const double first = fractionAtPress_ + pixels / extent;
                       arrangement_.setSplitFraction(std::clamp(
                           swappedForOrder(first, shown.graphOrder), smallestShare, largestShare));
                   }
               },
           .reset = [this] { arrangement_.setSplitFraction(evenSplit); }},
          this)) {
    handle_->setAccessibleName(QStringLiteral("Divider between the graphs"));
    connect(&arrangement, &ModuleArrangementLink::changed, this, [this] { arrange(); });
    arrange();
}

QSize GraphArea::minimumSizeHint() const {
    return smallestArea;
}

void GraphArea::resizeEvent(QResizeEvent*) {
    arrange();
}

void GraphArea::arrange() {
    const ModuleArrangement shown = arrangement_.arrangement();
    const bool isBoth = shown.showsBothGraphs();
    const bool showsRTA =
        shown.showsRTA && !(isBoth && shown.panelLayout == PanelLayout::spectrogramOnly);
    const bool showsSpectrogram =
        shown.showsSpectrogram && !(isBoth && shown.panelLayout == PanelLayout::rtaOnly);
    if (showsRTA && showsSpectrogram) {
        const bool rtaFirst = shown.graphOrder == GraphOrder::rtaFirst;
        const auto split = SplitGeometry::make(
            size(), shown.graphOrientation, swappedForOrder(shown.splitFraction, shown.graphOrder));
        (rtaFirst ? rta_ : spectrogram_)->setGeometry(split.first);
        (rtaFirst ? spectrogram_ : rta_)->setGeometry(split.second);
        handle_->setGeometry(split.handle);
        handle_->setOrientation(shown.graphOrientation == GraphOrientation::stacked ? Qt::Horizontal
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
