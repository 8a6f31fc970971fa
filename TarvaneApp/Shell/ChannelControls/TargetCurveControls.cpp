#include "Shell/ChannelControls/TargetCurveControls.h"

#include <QLabel>
#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/ChannelControls/TargetCurveReferenceControl.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

using TarvaneKit::TargetCurve;

TargetCurveControls::TargetCurveControls(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                                         const QString& referenceLabel, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      channelID_(channelID),
      curves_(new MenuButton(QStringLiteral("Target curve"), this)),
      reference_(new QWidget(this)),
      level_(new TargetCurveReferenceControl(engine, channelID, reference_)) {
    const auto label = [](const QString& text, QWidget* on) {
        return makeTextLabel(text, Theme::Text::caption, Theme::axisText, on);
    };
    // The curves have long names, so their menu has its own line.
    curves_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    auto* column = layOutColumn(this, Theme::Space::label);
    column->addWidget(label(QStringLiteral("Target curve"), this));
    column->addWidget(curves_);
    column->addSpacing(Theme::Space::row - Theme::Space::label);
    column->addWidget(reference_);
    auto* referenceColumn = layOutColumn(reference_, Theme::Space::label);
    referenceColumn->addWidget(label(referenceLabel, reference_));
    referenceColumn->addWidget(level_);
    followChannels(
        engine.channelChanges(), this,
        [this](const TarvaneKit::UUID& id) { return id == channelID_; }, [this] { showCurves(); });
}

void TargetCurveControls::setChannelID(const TarvaneKit::UUID& channelID) {
    channelID_ = channelID;
    level_->setChannelID(channelID);
    showCurves();
}

void TargetCurveControls::showCurves() {
    const std::optional<TargetCurve> current = engine_.display(channelID_).targetCurve();
    const auto item = [&](const QString& text, std::optional<std::string> name) {
        return MenuButton::Item{
            .text = text,
            .isCurrent = name == (current ? std::optional(current->name) : std::nullopt),
            .action =
                [this, name] {
                    engine_.updateDisplay(channelID_, [&](ChannelDisplaySettings& display) {
                        display.targetCurveName = name;
                    });
                },
            .dot = std::nullopt};
    };
    std::vector<MenuButton::Item> items{item(QStringLiteral("None"), std::nullopt)};
    for (const TargetCurve& curve : TarvaneKit::BuiltInCurves::all()) {
        items.push_back(item(QString::fromStdString(curve.name), curve.name));
    }
    curves_->setItems(std::move(items));
    reference_->setVisible(current.has_value());
}

}  // namespace TarvaneApp
