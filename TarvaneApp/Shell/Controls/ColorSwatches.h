// A row of round colour swatches, with a ring around the current one. Arrow keys move within it.
#pragma once

#include <QButtonGroup>
#include <QWidget>
#include <functional>
#include <span>
#include <vector>

#include "Core/RGBAColor.h"

namespace TarvaneApp {

class ColorSwatches final : public QWidget {
    Q_OBJECT
  public:
    struct Swatch {
        const char* name;  ///< what a screen reader calls it
        TarvaneKit::RGBAColor color;
    };

    /// `onPick` runs when the user picks a colour that isn't the current one.
    ColorSwatches(std::span<const Swatch> swatches,
                  std::function<void(const TarvaneKit::RGBAColor&)> onPick,
                  QWidget* parent = nullptr);

    /// For a colour without a swatch none has a ring.
    void setSelected(const TarvaneKit::RGBAColor& color);

  private:
    std::vector<TarvaneKit::RGBAColor> colors_;
    QButtonGroup group_;
};

}  // namespace TarvaneApp
