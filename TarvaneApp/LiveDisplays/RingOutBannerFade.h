// Lets the banner of a ring fade in when it comes and out when it goes. It keeps the last alert for
// as long as that takes. Main thread.
#pragma once

#include <QVariantAnimation>
#include <functional>

#include "Displays/Spectrum/RingOutBannerView.h"

namespace TarvaneApp {

class RingOutBannerFade {
  public:
    static constexpr int milliseconds = 200;

    /// `repaint` runs for every step of a fade.
    explicit RingOutBannerFade(std::function<void()> repaint);

    /// What the banner is from now on.
    void follow(const RingOutBannerView& banner);
    /// What is to be drawn.
    const RingOutBannerView& shown() const { return shown_; }

  private:
    RingOutBannerView shown_;
    bool isThere_ = false;  // where the fade goes
    QVariantAnimation fade_;
};

}  // namespace TarvaneApp
