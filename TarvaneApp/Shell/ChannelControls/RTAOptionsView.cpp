#include "Shell/ChannelControls/RTAOptionsView.h"

#include <QCheckBox>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <array>

#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Records/ChannelColors.h"
#include "Settings/Observable.h"
#include "Shell/ChannelControls/TargetCurveControls.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/ColorSwatches.h"
#include "Shell/Controls/EnumChoice.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Controls/SegmentedPicker.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

using TarvaneKit::OctaveFraction;
using TarvaneKit::RGBAColor;
using TarvaneKit::RingOutSensitivity;

namespace {

constexpr int popoverWidth = 300;
constexpr int viewPickerWidth = 180;

constexpr std::array traceColors{
    ColorSwatches::Swatch{"Green", mainChannelColor},
    ColorSwatches::Swatch{"Blue", channelColors[0]},
    ColorSwatches::Swatch{"Pink", channelColors[1]},
    ColorSwatches::Swatch{"Yellow", channelColors[2]},
    ColorSwatches::Swatch{"Violet", channelColors[3]},
    ColorSwatches::Swatch{"Cyan", channelColors[4]},
    ColorSwatches::Swatch{"Orange", channelColors[5]},
    ColorSwatches::Swatch{"White", {0.95, 0.95, 0.95, 1.0}},
};

// Peak holds are drawn over traces in the colours above, so these are warm and bright.
constexpr std::array peakColors{
    ColorSwatches::Swatch{"Orange", {1.0, 0.6, 0.2, 1.0}},
    ColorSwatches::Swatch{"Red", {1.0, 0.3, 0.25, 1.0}},
    ColorSwatches::Swatch{"Yellow", channelColors[2]},
    ColorSwatches::Swatch{"White", {0.95, 0.95, 0.95, 1.0}},
    ColorSwatches::Swatch{"Cyan", channelColors[4]},
    ColorSwatches::Swatch{"Pink", channelColors[1]},
};

}  // namespace

RTAOptionsView::RTAOptionsView(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                               QWidget* parent)
    : QWidget(parent), engine_(engine), requestedChannelID_(channelID) {
    setFixedWidth(popoverWidth - 2 * Theme::Space::panel);
    auto* column = layOutColumn(this, Theme::Space::section);
    const auto addRow = [&](QWidget* left, QWidget* control) {
        auto* row = new QHBoxLayout;
        row->setSpacing(Theme::Space::section);
        row->addWidget(left);
        row->addStretch(1);
        row->addWidget(control);
        column->addLayout(row);
    };
    const auto label = [this](const QString& name) {
        return makeTextLabel(name, Theme::Text::caption, Theme::axisText, this);
    };
    const auto toggle = [this](const QString& name, std::function<void(bool)> change) {
        auto* box = new QCheckBox(name, this);
        box->setFont(Typeface::installed().systemFont(Theme::Text::caption));
        connect(box, &QCheckBox::toggled, this, std::move(change));
        return box;
    };
    const auto menu = [this](const QString& name) { return new MenuButton(name, this); };

    color_ = new ColorSwatches(
        traceColors,
        [this](const RGBAColor& color) { engine_.setChannelColor(color, this->channelID()); },
        this);
    color_->setToolTip(
        QStringLiteral("Trace color for this channel — any color in Preferences > Audio"));
    color_->setAccessibleName(QStringLiteral("Color"));
    addRow(label(QStringLiteral("Color")), color_);

    viewMode_ = new SegmentedPicker(
        {QStringLiteral("Bands"), QStringLiteral("Line"), QStringLiteral("Both")}, viewPickerWidth,
        [this](int index) {
            write([index](ChannelDisplaySettings& display) {
                display.viewMode = EnumChoice<SpectrumViewMode>::at(index);
            });
        },
        this);
    viewMode_->setAccessibleName(QStringLiteral("View"));
    addRow(label(QStringLiteral("View")), viewMode_);

    bands_ = menu(QStringLiteral("Bands"));
    addRow(label(QStringLiteral("Bands")), bands_);

    peakHold_ = toggle(QStringLiteral("Peak hold"), [this](bool on) {
        write([on](ChannelDisplaySettings& display) { display.showsPeakHold = on; });
    });
    peakColor_ = new ColorSwatches(
        peakColors,
        [this](const RGBAColor& color) {
            write([&](ChannelDisplaySettings& display) { display.peakHoldColor = color; });
        },
        this);
    peakColor_->setToolTip(QStringLiteral("Peak hold color — any color in Preferences > Audio"));
    peakColor_->setAccessibleName(QStringLiteral("Peak hold color"));
    addRow(peakHold_, peakColor_);

    octaveNormalized_ = toggle(QStringLiteral("Octave-normalized display"), [this](bool on) {
        write([on](ChannelDisplaySettings& display) { display.octaveNormalized = on; });
    });
    column->addWidget(octaveNormalized_);

    targetCurve_ = new TargetCurveControls(engine, channelID, QStringLiteral("Curve level"), this);
    column->addWidget(targetCurve_);

    ringOut_ = toggle(QStringLiteral("Ring-Out"),
                      [this](bool on) { engine_.setRingOutEnabled(on, this->channelID()); });
    ringOut_->setToolTip(QStringLiteral("Feedback detection for this channel"));
    column->addWidget(ringOut_);
    sensitivity_ = menu(QStringLiteral("Ring-Out sensitivity"));
    addRow(label(QStringLiteral("Ring-Out sensitivity")), sensitivity_);

    auto* footnote = makeTextLabel(
        QStringLiteral("Also in this channel's Display section in Preferences > Audio."),
        Theme::Text::footnote, Theme::axisText, this);
    footnote->setWordWrap(true);
    column->addWidget(footnote);

    followChannels(engine.channelChanges(), this, [this] { showChannel(); });
}

TarvaneKit::UUID RTAOptionsView::channelID() const {
    return engine_.resolvedChannelID(requestedChannelID_);
}

void RTAOptionsView::write(const std::function<void(ChannelDisplaySettings&)>& edit) {
    engine_.updateDisplay(channelID(), edit);
}

void RTAOptionsView::showChannel() {
    const ChannelDisplaySettings display = engine_.display(channelID());
    const ChannelInfo channel =
        engine_.channelInfo(channelID()).value_or(engine_.mainChannelInfo());
    const auto show = [](QCheckBox* box, bool on) {
        const QSignalBlocker quiet(box);
        box->setChecked(on);
    };
    color_->setSelected(channel.color);
    viewMode_->setSelectedIndex(EnumChoice<SpectrumViewMode>::index(display.viewMode));
    bands_->setItems(EnumChoice<OctaveFraction>::items(
        display.octaveFraction,
        [this](OctaveFraction fraction) {
            write([fraction](ChannelDisplaySettings& settings) {
                settings.octaveFraction = fraction;
            });
        },
        [](OctaveFraction fraction) { return utf8Text(TarvaneKit::label(fraction)); }));
    show(peakHold_, display.showsPeakHold);
    peakColor_->setSelected(display.peakHoldColor);
    peakColor_->setEnabled(display.showsPeakHold);
    show(octaveNormalized_, display.octaveNormalized);
    targetCurve_->setChannelID(channelID());
    show(ringOut_, channel.ringOutEnabled);
    sensitivity_->setItems(EnumChoice<RingOutSensitivity>::items(
        display.ringOutSensitivity,
        [this](RingOutSensitivity sensitivity) {
            write([sensitivity](ChannelDisplaySettings& settings) {
                settings.ringOutSensitivity = sensitivity;
            });
        },
        [](RingOutSensitivity sensitivity) { return utf8Text(TarvaneKit::label(sensitivity)); }));
}

}  // namespace TarvaneApp
