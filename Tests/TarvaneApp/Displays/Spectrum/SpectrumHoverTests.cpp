#include "Displays/Spectrum/SpectrumHover.h"

#include <gtest/gtest.h>

#include "Displays/Spectrum/SpectrumView.h"
#include "Support/PinnedTypeface.h"
#include "Support/SpectrumScenes.h"

namespace TarvaneApp {
namespace SpectrumHoverTests {

using TarvaneTests::spectrumInDBFS;

const Typeface& pinned = TarvaneTests::pinnedTypeface();

TEST(SpectrumHover, theReadoutStaysInsideAtEveryWidth) {
    SpectrumView view = spectrumInDBFS();
    view.lineSpectrumDB.assign(2048, -101.9);
    for (const double width : {180.0, 240.0, 900.0, 3840.0}) {
        for (int i = 0; i <= 20; ++i) {
            view.hover = SpectrumHoverState::at(width * i / 20.0, width, view.frequencyAxis());
            EXPECT_TRUE(
                QRectF(0.0, 0.0, width, 300.0).contains(hoverPlate(view, {width, 300.0}, pinned)))
                << width << ' ' << i;
        }
    }
    view.hover = {};
    EXPECT_TRUE(hoverPlate(view, {900.0, 300.0}, pinned).isEmpty());
}

}  // namespace SpectrumHoverTests
}  // namespace TarvaneApp
