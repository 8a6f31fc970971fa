#include "Shell/Controls/ColorSwatches.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>
#include <QSignalBlocker>
#include <algorithm>

#include "Displays/FocusRing.h"
#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/PickedTabStop.h"

namespace TarvaneApp {

namespace {

constexpr int swatchSize = 22;
constexpr double discInset = 5.0;
constexpr double ringInset = 2.0;
constexpr double ringWidth = 1.5;
constexpr double dimmed = 0.4;

class SwatchButton final : public QAbstractButton {
  public:
    SwatchButton(const ColorSwatches::Swatch& swatch, QWidget* parent)
        : QAbstractButton(parent), color_(Theme::color(swatch.color)) {
        setAccessibleName(QString::fromLatin1(swatch.name));
        setAttribute(Qt::WA_Hover);
        setCheckable(true);
        setFixedSize(swatchSize, swatchSize);
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setOpacity(isEnabled() ? 1.0 : dimmed);
        painter.setPen(Qt::NoPen);
        painter.setBrush(color_);
        painter.drawEllipse(QRectF(rect()).adjusted(discInset, discInset, -discInset, -discInset));
        if (isChecked() || (underMouse() && isEnabled())) {
            painter.setPen(
                QPen(isChecked() ? Theme::primaryText : Theme::gridLineStrong, ringWidth));
            painter.setBrush(Qt::NoBrush);
            painter.drawEllipse(
                QRectF(rect()).adjusted(ringInset, ringInset, -ringInset, -ringInset));
        }
        if (hasFocus()) {
            paintFocusRing(painter, rect(), swatchSize / 2.0);
        }
    }

  private:
    const QColor color_;
};

}  // namespace

ColorSwatches::ColorSwatches(std::span<const Swatch> swatches,
                             std::function<void(const TarvaneKit::RGBAColor&)> onPick,
                             QWidget* parent)
    : QWidget(parent) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* row = layOutRow(this, 0);
    for (const Swatch& swatch : swatches) {
        auto* button = new SwatchButton(swatch, this);
        group_.addButton(button, static_cast<int>(colors_.size()));
        colors_.push_back(swatch.color);
        row->addWidget(button);
    }
    stopTabAtPicked(group_);
    // Not `clicked`: an assistive program toggles without a click.
    connect(&group_, &QButtonGroup::idToggled, this,
            [this, onPick = std::move(onPick)](int index, bool checked) {
                if (checked) {
                    stopTabAtPicked(group_);
                    onPick(colors_[static_cast<std::size_t>(index)]);
                }
            });
}

void ColorSwatches::setSelected(const TarvaneKit::RGBAColor& color) {
    const QSignalBlocker quiet(group_);
    const auto found = std::ranges::find(colors_, color);
    if (found != colors_.end()) {
        group_.button(static_cast<int>(found - colors_.begin()))->setChecked(true);
    } else if (QAbstractButton* checked = group_.checkedButton()) {
        group_.setExclusive(false);
        checked->setChecked(false);
        group_.setExclusive(true);
    }
    stopTabAtPicked(group_);
}

}  // namespace TarvaneApp
