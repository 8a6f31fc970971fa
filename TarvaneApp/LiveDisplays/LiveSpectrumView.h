// The spectrum of a channel on the screen: it fills the graph's record from the engine and the
// live data of the channel and of those laid over it, once per publication, and follows the
// pointer, or the arrow keys. It requests the spectra that it shows from the engine
// only while it is on screen. Main thread.
#pragma once

#include <QWidget>
#include <vector>

#include "Core/UUID.h"
#include "Displays/Spectrum/RingOutBannerView.h"
#include "Displays/Spectrum/SpectrumRaster.h"
#include "Displays/Spectrum/SpectrumView.h"
#include "Engine/ChannelDemand.h"
#include "LiveDisplays/LiveAccessibility.h"
#include "LiveDisplays/LiveBinding.h"
#include "LiveDisplays/RingOutBannerFade.h"

namespace TarvaneApp {

class MeterEngine;

class LiveSpectrumView final : public QWidget, public SpokenDisplay {
    Q_OBJECT
  public:
    /// The engine outlives the view. A channel that doesn't exist any more shows the main input.
    LiveSpectrumView(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                     QWidget* parent = nullptr);

    void setChannelID(const TarvaneKit::UUID& channelID);
    /// The channels laid over it, in this order. One that doesn't exist is left out.
    void setOverlayIDs(std::vector<TarvaneKit::UUID> ids);

    const SpectrumView& view() const { return view_; }

    QSize minimumSizeHint() const override { return {160, 80}; }
    std::vector<SpokenPart> spokenParts() const override;
    QAccessible::Role spokenRole() const override { return QAccessible::Chart; }

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

  private:
    void contextChanged();
    void registerDemand();
    void refresh();
    bool isDrawn() const;
    void draw();
    void updateRenewed();
    void hoverAt(double x);
    void leaveHover();
    double levelOffsetDB(const TarvaneKit::UUID& channelID) const;

    MeterEngine& engine_;
    TarvaneKit::UUID requestedChannelID_;
    TarvaneKit::UUID channelID_;
    std::vector<TarvaneKit::UUID> requestedOverlayIDs_;
    std::vector<TarvaneKit::UUID> shownIDs_;  // the channel, then its overlays
    LiveBinding binding_;
    ChannelDemandRegistration demand_;

    SpectrumView view_;
    RingOutBannerView banner_;
    RingOutBannerFade bannerFade_;
    SpectrumRaster raster_;
    bool isStale_ = true;  // the picture, of what the view says
};

}  // namespace TarvaneApp
