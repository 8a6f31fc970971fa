// The sliders of a spectrogram: the levels where its colours begin and end, how fast it moves and
// how tall its slices are.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <vector>

#include "Core/UUID.h"

class QBoxLayout;
class QLabel;
class QSlider;

namespace TarvaneApp {

class MeterEngine;

class SpectrogramControls final : public QWidget {
    Q_OBJECT
  public:
    /// Of the fixed channel, or without one of the channel that the engine's
    /// `spectrogramChannelID` names.
    SpectrogramControls(MeterEngine& engine, const std::optional<TarvaneKit::UUID>& fixedChannelID,
                        Qt::Orientation orientation, QWidget* parent = nullptr);

  private:
    struct Control {
        QSlider* slider;
        QLabel* value;
        std::function<void(Control&)> show;
    };
    /// `spoken` with a space ahead of the unit.
    static void tell(Control& control, const QString& shown, const QString& spoken);
    void add(QBoxLayout& layout, const QString& name, int valueWidth,
             std::function<void(int)> write, std::function<void(Control&)> show);
    TarvaneKit::UUID channelID() const;

    MeterEngine& engine_;
    const std::optional<TarvaneKit::UUID> fixedChannelID_;
    std::vector<Control> controls_;
};

}  // namespace TarvaneApp
