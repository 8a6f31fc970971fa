// A colour that a click opens the colour dialog on.
#pragma once

#include <QAbstractButton>
#include <functional>

#include "Core/RGBAColor.h"

namespace TarvaneApp {

class ColorWell final : public QAbstractButton {
    Q_OBJECT
  public:
    /// `name` is what a screen reader and the dialog call the colour. `onPick` runs with every
    /// colour that the dialog tries, so that the displays show it, and with the old one if the
    /// dialog is cancelled.
    ColorWell(const QString& name, std::function<void(const TarvaneKit::RGBAColor&)> onPick,
              QWidget* parent = nullptr);

    void setColor(const TarvaneKit::RGBAColor& color);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void openDialog();

    TarvaneKit::RGBAColor color_{};
    std::function<void(const TarvaneKit::RGBAColor&)> onPick_;
};

}  // namespace TarvaneApp
