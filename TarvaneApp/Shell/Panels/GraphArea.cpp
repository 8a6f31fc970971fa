#include "Shell/Panels/GraphArea.h"

#include <algorithm>
#include <cmath>

#include "Displays/Spectrogram/SpectrogramFrequencyAxisView.h"
#include "Displays/Theme.h"
#include "Shell/Controls/ElidedLabel.h"
#include "Shell/Panels/ModuleArrangementLink.h"
#include "Shell/Panels/PanelResizeHandle.h"
#include "Shell/Panels/RTAPanelView.h"
#include "Shell/Panels/SpectrogramPanelView.h"

namespace TarvaneApp {

namespace {

constexpr int lowestFirstPanel = 60;
constexpr int narrowestFirstPanel = 80;
constexpr QSize smallestArea(320, 160);
// Two headers, and two plots of a height that still says something: what a screen of 768 lines
// leaves them.
constexpr int lowestStack = 264;
// Two headers with their controls.
constexpr int narrowestPair = 640;
constexpr int noteHeight = 20;
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
          this)),
      missingNote_(new ElidedLabel(Theme::Text::footnote, Theme::axisText, this)) {
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
    const bool isStacked = shown.graphOrientation == GraphOrientation::stacked;
    const bool rtaFirst = shown.graphOrder == GraphOrder::rtaFirst;
    const bool isTooSmall = isBoth && shown.panelLayout == PanelLayout::both &&
                            (isStacked ? height() < lowestStack : width() < narrowestPair);
    const PanelLayout panels = !isTooSmall ? shown.panelLayout
                               : rtaFirst  ? PanelLayout::rtaOnly
                                           : PanelLayout::spectrogramOnly;
    const bool showsRTA = shown.showsRTA && !(isBoth && panels == PanelLayout::spectrogramOnly);
    const bool showsSpectrogram =
        shown.showsSpectrogram && !(isBoth && panels == PanelLayout::rtaOnly);
    // Beside each other both plots end at one height.
    rta_->setBottomMargin(showsRTA && showsSpectrogram && !isStacked
                              ? static_cast<int>(SpectrogramFrequencyAxisView::height)
                              : Theme::Space::row);
    if (showsRTA && showsSpectrogram) {
        const auto split = SplitGeometry::make(
            size(), shown.graphOrientation, swappedForOrder(shown.splitFraction, shown.graphOrder));
        rta_->setGeometry(rtaFirst ? split.first : split.second);
        spectrogram_->setGeometry(rtaFirst ? split.second : split.first);
        handle_->setGeometry(split.handle);
        handle_->setOrientation(isStacked ? Qt::Horizontal : Qt::Vertical);
    } else {
        const QRect alone = rect().adjusted(0, 0, 0, isTooSmall ? -noteHeight : 0);
        rta_->setGeometry(alone);
        spectrogram_->setGeometry(alone);
    }
    if (isTooSmall) {
        missingNote_->setText(
            (rtaFirst ? QStringLiteral("Real-Time Analyzer · the spectrogram needs a %1 window")
                      : QStringLiteral("Spectrogram · the real-time analyzer needs a %1 window"))
                .arg(isStacked ? QStringLiteral("taller") : QStringLiteral("wider")));
        missingNote_->setGeometry(Theme::Space::panel, height() - noteHeight,
                                  width() - 2 * Theme::Space::panel, noteHeight);
    }
    missingNote_->setVisible(isTooSmall);
    rta_->setVisible(showsRTA);
    spectrogram_->setVisible(showsSpectrogram);
    handle_->setVisible(showsRTA && showsSpectrogram);
}

}  // namespace TarvaneApp
