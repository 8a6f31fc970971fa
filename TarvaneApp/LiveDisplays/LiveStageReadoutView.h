// A channel's level or loudness on a screen that is read from afar: the large number in the colour
// of its limits, and its name. Filled from the engine and the channel's live data, once per
// publication. Main thread.
#pragma once

#include <QWidget>
#include <vector>

#include "Core/UUID.h"
#include "Displays/Readouts/ReadoutLayout.h"
#include "Displays/Readouts/StageReadoutView.h"
#include "LiveDisplays/LiveAccessibility.h"
#include "LiveDisplays/LiveBinding.h"

namespace TarvaneApp {

class MeterEngine;

class LiveStageReadoutView final : public QWidget, public SpokenDisplay {
    Q_OBJECT
  public:
    /// The engine outlives the view.
    LiveStageReadoutView(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                         QWidget* parent = nullptr);

    /// A channel that doesn't exist any more shows the main input.
    void setChannelID(const TarvaneKit::UUID& channelID);

    const StageReadoutView& view() const { return view_; }

    std::vector<SpokenPart> spokenParts() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void contextChanged();
    void refresh();
    StageReadoutView currentView() const;

    MeterEngine& engine_;
    TarvaneKit::UUID requestedChannelID_;
    TarvaneKit::UUID channelID_;
    LiveBinding binding_;
    StageReadoutView view_;
    ReadoutFrame frame_;
};

}  // namespace TarvaneApp
