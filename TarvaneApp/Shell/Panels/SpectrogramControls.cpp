#include "Shell/Panels/SpectrogramControls.h"

#include <QBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QSlider>
#include <cmath>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Controls/SpokenSlider.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

namespace {

constexpr int sliderWidth = 100;
constexpr int levelValueWidth = 64;
constexpr int factorValueWidth = 48;

// Sliders count whole numbers: of dB, and of twentieths for the other two.
constexpr double stepsPerUnit = 20.0;
constexpr double shortestSpan = 0.5;
constexpr double longestSpan = 6.0;
constexpr double lowestSlice = 0.5;
constexpr double tallestSlice = 4.0;

int steps(double value) {
    return static_cast<int>(std::lround(value * stepsPerUnit));
}

}  // namespace

SpectrogramControls::SpectrogramControls(MeterEngine& engine,
                                         const std::optional<TarvaneKit::UUID>& fixedChannelID,
                                         Qt::Orientation orientation, QWidget* parent)
    : QWidget(parent), engine_(engine), fixedChannelID_(fixedChannelID) {
    auto* layout = new QBoxLayout(
        orientation == Qt::Horizontal ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom, this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::Space::section);
    const auto showLevel = [this](Control& control, double levelDB) {
        const SpectrogramRange bounds = engine_.spectrogramSliderBounds(channelID());
        control.slider->setRange(static_cast<int>(bounds.floorDB),
                                 static_cast<int>(bounds.ceilingDB));
        control.slider->setValue(static_cast<int>(std::lround(levelDB)));
        const QString text =
            QString::number(std::lround(levelDB)) + (engine_.rtaScale(channelID()) == RTAScale::dbfs
                                                         ? QStringLiteral(" dBFS")
                                                         : QStringLiteral(" dB"));
        tell(control, text, text);
    };
    add(
        *layout, QStringLiteral("Floor"), levelValueWidth,
        [this](int value) { engine_.setSpectrogramFloorDB(value, channelID()); },
        [this, showLevel](Control& control) {
            showLevel(control, engine_.spectrogramRange(channelID()).floorDB);
        });
    add(
        *layout, QStringLiteral("Ceiling"), levelValueWidth,
        [this](int value) { engine_.setSpectrogramCeilingDB(value, channelID()); },
        [this, showLevel](Control& control) {
            showLevel(control, engine_.spectrogramRange(channelID()).ceilingDB);
        });
    // To the right is faster, which is a shorter time span.
    add(
        *layout, QStringLiteral("Speed"), factorValueWidth,
        [this](int value) {
            engine_.spectrogramTimeSpanSeconds.set(shortestSpan + longestSpan -
                                                   value / stepsPerUnit);
        },
        [this](Control& control) {
            const double span = engine_.spectrogramTimeSpanSeconds();
            control.slider->setRange(steps(shortestSpan), steps(longestSpan));
            setSpokenScale(*control.slider,
                           {.atZero = shortestSpan + longestSpan, .perStep = -1.0 / stepsPerUnit});
            control.slider->setValue(steps(shortestSpan + longestSpan - span));
            const QString seconds = QString::number(span, 'f', 1);
            tell(control, seconds + u's', seconds + QStringLiteral(" s"));
        });
    add(
        *layout, QStringLiteral("Slice Height"), factorValueWidth,
        [this](int value) { engine_.spectrogramSliceHeightMultiplier.set(value / stepsPerUnit); },
        [this](Control& control) {
            const double factor = engine_.spectrogramSliceHeightMultiplier();
            control.slider->setRange(steps(lowestSlice), steps(tallestSlice));
            setSpokenScale(*control.slider, {.perStep = 1.0 / stepsPerUnit});
            control.slider->setValue(steps(factor));
            const QString times = QString::number(factor, 'f', 1);
            tell(control, times + u'x', times + QStringLiteral(" x"));
        });
    const auto showValues = [this] {
        for (Control& control : controls_) {
            const QSignalBlocker shown(control.slider);
            control.show(control);
        }
    };
    follow(engine.spectrogramChannelID, this, showValues);
    followChannels(engine.channelChanges(), this, showValues);
}

// A screen reader reads the number off the slider, and its unit here.
void SpectrogramControls::tell(Control& control, const QString& shown, const QString& spoken) {
    control.value->setText(shown);
    control.slider->setAccessibleDescription(spoken);
}

void SpectrogramControls::add(QBoxLayout& layout, const QString& name, int valueWidth,
                              std::function<void(int)> write, std::function<void(Control&)> show) {
    auto* row = new QHBoxLayout;
    row->setSpacing(Theme::Space::related);
    row->addWidget(makeTextLabel(name, Theme::Text::caption, Theme::axisText, this));
    // Under each other the sliders are aligned in a column.
    const bool isColumn = layout.direction() == QBoxLayout::TopToBottom;
    if (isColumn) {
        row->addStretch(1);
    }
    auto* slider = new QSlider(Qt::Horizontal, this);
    slider->setFixedWidth(sliderWidth);
    slider->setAccessibleName(name);
    connect(slider, &QSlider::valueChanged, this, std::move(write));
    row->addWidget(slider);
    auto* value = makeTextLabel({}, Theme::Text::caption, Theme::axisText, this);
    value->setFixedWidth(isColumn ? levelValueWidth : valueWidth);
    value->setAlignment(isColumn ? Qt::AlignRight | Qt::AlignVCenter
                                 : Qt::AlignLeft | Qt::AlignVCenter);
    row->addWidget(value);
    layout.addLayout(row);
    controls_.push_back({slider, value, std::move(show)});
}

TarvaneKit::UUID SpectrogramControls::channelID() const {
    return engine_.resolvedChannelID(fixedChannelID_.value_or(engine_.spectrogramChannelID()));
}

}  // namespace TarvaneApp
