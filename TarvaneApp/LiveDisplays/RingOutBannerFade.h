// Fades the banner of a ring in and out. It keeps the last alert until the banner has faded out.
// Main thread.
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

    /// The banner to fade to.
    void follow(const RingOutBannerView& banner);
    /// What is to be drawn.
    const RingOutBannerView& shown() const { return shown_; }

  private:
    RingOutBannerView shown_;
    bool isThere_ = false;  // what it fades to
    QVariantAnimation fade_;
};

}  // namespace TarvaneApp
