#include "MainToolbar.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>

#include "Controls/IconButton.h"
#include "Controls/Spinner.h"
#include "Controls/TextLabel.h"
#include "LiveFollow.h"
#include "MeterEngine.h"
#include "Theme.h"

namespace TarvaneApp {

namespace {

constexpr int symbolSize = 22;
constexpr int paddingAcross = 16;
constexpr int paddingUpDown = 10;
constexpr int spacing = 14;
constexpr int spinnerInset = 2;

void name(IconButton& button, const QString& name, const QString& toolTip) {
    button.setAccessibleName(name);
    button.setToolTip(toolTip);
}

}  // namespace

MainToolbar::MainToolbar(MeterEngine& engine, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      startButton_(new IconButton(symbolSize, this)),
      spinner_(new Spinner(startButton_)),
      pauseButton_(new IconButton(symbolSize, this)),
      pausedNote_(makeTextLabel({}, 11, Theme::peakHold, this)),
      deviceName_(makeTextLabel({}, 12, Theme::axisText, this)) {
    constexpr int ring = IconButton::margin;
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(paddingAcross - ring, paddingUpDown - ring, paddingAcross,
                            paddingUpDown - ring);
    row->setSpacing(spacing - ring);
    row->addWidget(startButton_);
    row->addWidget(pauseButton_);
    row->addWidget(pausedNote_);
    row->addWidget(deviceName_);
    row->addStretch(1);

    spinner_->setGeometry(ring + spinnerInset, ring + spinnerInset, symbolSize - 2 * spinnerInset,
                          symbolSize - 2 * spinnerInset);
    pausedNote_->setText(QStringLiteral("PAUSED"));
    deviceName_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    row->setStretchFactor(deviceName_, 100);

    connect(startButton_, &QAbstractButton::clicked, this, &MainToolbar::toggleRunning);
    connect(pauseButton_, &QAbstractButton::clicked, this, &MainToolbar::togglePause);
    followAll(
        this, [this] { showRunState(); }, engine.isRunning, engine.isStarting, engine.isPaused);
    followAll(
        this, [this] { showDeviceName(); }, engine.selectedDeviceUID, engine.availableDevices);
}

void MainToolbar::toggleRunning() {
    if (engine_.isRunning() || engine_.isStarting()) {
        engine_.stop();
    } else {
        engine_.start();
    }
}

void MainToolbar::togglePause() {
    if (engine_.isPaused()) {
        engine_.resume();
    } else {
        engine_.pause();
    }
}

void MainToolbar::showRunState() {
    const bool isRunning = engine_.isRunning();
    const bool isStarting = engine_.isStarting();
    const bool isPaused = engine_.isPaused();
    spinner_->setVisible(isStarting);
    if (isStarting) {
        startButton_->setSymbol(QString(), QColor());
        name(*startButton_, QStringLiteral("Starting"), QStringLiteral("Cancel start (Space)"));
    } else if (isRunning) {
        startButton_->setSymbol(QStringLiteral("stop.circle.fill"),
                                Theme::color(TarvaneKit::SignalColors::red));
        name(*startButton_, QStringLiteral("Stop"), QStringLiteral("Stop metering (Space)"));
    } else {
        startButton_->setSymbol(QStringLiteral("play.circle.fill"), Theme::accent);
        name(*startButton_, QStringLiteral("Start"), QStringLiteral("Start metering (Space)"));
    }
    pauseButton_->setVisible(isRunning);
    pausedNote_->setVisible(isRunning && isPaused);
    if (isPaused) {
        pauseButton_->setSymbol(QStringLiteral("play.circle"), Theme::primaryText);
        name(*pauseButton_, QStringLiteral("Resume"), QStringLiteral("Resume metering (P)"));
    } else {
        pauseButton_->setSymbol(QStringLiteral("pause.circle"), Theme::primaryText);
        name(*pauseButton_, QStringLiteral("Pause"),
             QStringLiteral("Pause metering without clearing (P)"));
    }
}

void MainToolbar::showDeviceName() {
    deviceName_->setText(
        QString::fromStdString(engine_.deviceDisplayName(engine_.selectedDeviceUID())));
}

}  // namespace TarvaneApp
