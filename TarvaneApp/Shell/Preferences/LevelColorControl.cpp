#include "Shell/Preferences/LevelColorControl.h"

#include <QHBoxLayout>
#include <QSlider>

#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Forms/ColorWell.h"
#include "Shell/Forms/ValueSlider.h"

namespace TarvaneApp {

namespace {

// Until it is shown.
NumberScale anyScale() {
    return {.lowest = 0.0, .highest = 1.0, .step = 1.0, .text = [](double) { return QString(); }};
}

}  // namespace

LevelColorControl::LevelColorControl(const Names& names, std::function<void(double)> onLevel,
                                     std::function<void(const TarvaneKit::RGBAColor&)> onColor,
                                     QWidget* parent)
    : QWidget(parent),
      row_(layOutRow(this, Theme::Space::section)),
      slider_(new ValueSlider(anyScale(), std::move(onLevel), this)),
      well_(new ColorWell(names.color, std::move(onColor), this)) {
    slider_->slider().setAccessibleName(names.level);
    row_->addWidget(slider_, 1);
    row_->addWidget(well_);
}

void LevelColorControl::showValues(const NumberScale& scale, double level,
                                   const TarvaneKit::RGBAColor& color) {
    slider_->setScale(scale);
    slider_->setValue(level);
    well_->setColor(color);
}

void LevelColorControl::addAhead(QWidget* widget) {
    row_->insertWidget(0, widget);
}

void LevelColorControl::addBehind(QWidget* widget) {
    row_->addWidget(widget);
}

}  // namespace TarvaneApp
