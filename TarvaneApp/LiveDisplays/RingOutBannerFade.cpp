#include "LiveDisplays/RingOutBannerFade.h"

namespace TarvaneApp {

RingOutBannerFade::RingOutBannerFade(std::function<void()> repaint) {
    shown_.presence = 0.0;
    fade_.setDuration(milliseconds);
    QObject::connect(&fade_, &QVariantAnimation::valueChanged, &fade_,
                     [this, repaint = std::move(repaint)](const QVariant& presence) {
                         shown_.presence = presence.toDouble();
                         repaint();
                     });
    QObject::connect(&fade_, &QVariantAnimation::finished, &fade_, [this] {
        if (!isThere_) {
            shown_.alert.reset();
        }
    });
}

void RingOutBannerFade::follow(const RingOutBannerView& banner) {
    const bool isThere = banner.alert.has_value();
    if (isThere) {
        shown_.alert = banner.alert;
        shown_.isLive = banner.isLive;
    }
    if (isThere != isThere_) {
        isThere_ = isThere;
        fade_.stop();
        fade_.setStartValue(shown_.presence);
        fade_.setEndValue(isThere ? 1.0 : 0.0);
        fade_.start();
    }
}

}  // namespace TarvaneApp
