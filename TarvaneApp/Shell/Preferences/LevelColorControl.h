// A level and the colour that begins there: a slider and a colour well beside each other.
#pragma once

#include <QWidget>
#include <functional>

#include "Core/RGBAColor.h"
#include "Shell/Forms/NumberScale.h"

class QHBoxLayout;

namespace TarvaneApp {

class ColorWell;
class ValueSlider;

class LevelColorControl final : public QWidget {
    Q_OBJECT
  public:
    struct Names {
        QString level;
        QString color;
    };

    /// `names` are what a screen reader calls the two. `onLevel` and `onColor` run when the user
    /// changes them.
    LevelColorControl(const Names& names, std::function<void(double)> onLevel,
                      std::function<void(const TarvaneKit::RGBAColor&)> onColor,
                      QWidget* parent = nullptr);

    /// The scale may be another each time.
    void showValues(const NumberScale& scale, double level, const TarvaneKit::RGBAColor& color);

    /// What stands beside them.
    void addAhead(QWidget* widget);
    void addBehind(QWidget* widget);

  private:
    QHBoxLayout* row_;
    ValueSlider* slider_;
    ColorWell* well_;
};

}  // namespace TarvaneApp
