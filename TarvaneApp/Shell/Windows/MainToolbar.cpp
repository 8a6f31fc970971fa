#include "Shell/Windows/MainToolbar.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Controls/IconMenuButton.h"
#include "Shell/Controls/Spinner.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Forms/TabStops.h"
#include "Shell/Windows/AppCommands.h"
#include "Shell/Windows/ExtraChannelsMenu.h"
#include "Shell/Windows/MainWindowLayoutMenu.h"
#include "Shell/Windows/MeteredInputLabel.h"
#include "Shell/Windows/MeteringKeys.h"
#include "Shell/Windows/ProfileMenu.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

constexpr int paddingUpDown = 10;
constexpr int groupSpacing = 14;
constexpr int spinnerInset = 2;

constexpr QLatin1String resetPeakHold("Reset Peak Hold");

}  // namespace

MainToolbar::MainToolbar(MeterEngine& engine, ProfileStore& profiles, const AppCommands& commands,
                         QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      row_(new QHBoxLayout(this)),
      startButton_(new IconButton(Theme::Symbol::transport, this)),
      spinner_(new Spinner(startButton_)),
      pauseButton_(new IconButton(Theme::Symbol::transport, this)),
      pausedNote_(makeTextLabel({}, Theme::Text::caption, Theme::peakHold, this)),
      resetPeakHoldButton_(new QPushButton(resetPeakHold, this)),
      resetPeakHoldMenu_(new IconMenuButton(
          Theme::Symbol::options,
          [&engine](QMenu& menu) {
              menu.addAction(resetPeakHold, [&engine] { engine.resetPeakHold(); });
          },
          this)) {
    constexpr int ring = IconButton::margin(Theme::Symbol::transport);
    row_->setContentsMargins(Theme::Space::panel - ring, paddingUpDown - ring,
                             Theme::Space::panel - ring, paddingUpDown - ring);
    row_->setSpacing(groupSpacing - ring);
    row_->addWidget(startButton_);
    row_->addWidget(pauseButton_);
    row_->addWidget(pausedNote_);
    row_->addWidget(new MeteredInputLabel(engine, this));
    auto* profile = new ProfileMenu(engine, profiles, commands, this);
    row_->addWidget(profile);
    row_->addStretch(1);
    auto* channels = new ExtraChannelsMenu(engine, commands, this);
    row_->addWidget(channels);
    auto* layout = new MainWindowLayoutMenu(engine, this);
    row_->addWidget(layout);
    row_->addWidget(resetPeakHoldButton_);
    row_->addWidget(resetPeakHoldMenu_);
    chainTabStops({startButton_, pauseButton_, profile, channels, layout, resetPeakHoldButton_,
                   resetPeakHoldMenu_});

    spinner_->setGeometry(ring + spinnerInset, ring + spinnerInset,
                          Theme::Symbol::transport - 2 * spinnerInset,
                          Theme::Symbol::transport - 2 * spinnerInset);
    pausedNote_->setText(QStringLiteral("PAUSED"));
    pausedNote_->setAccessibleName(QStringLiteral("Paused"));  // not every letter a capital
    resetPeakHoldButton_->setFlat(true);
    resetPeakHoldButton_->setFocusPolicy(Qt::TabFocus);
    resetPeakHoldButton_->setFont(Typeface::installed().systemFont(Theme::Text::body));
    QPalette palette = resetPeakHoldButton_->palette();
    palette.setColor(QPalette::ButtonText, Theme::axisText);
    resetPeakHoldButton_->setPalette(palette);
    resetPeakHoldMenu_->setSymbol(QStringLiteral("ellipsis"), Theme::axisText);
    resetPeakHoldMenu_->setHelp(QStringLiteral("More"), resetPeakHold);

    connect(startButton_, &QAbstractButton::clicked, this, [this] { toggleRunning(engine_); });
    connect(pauseButton_, &QAbstractButton::clicked, this, [this] { togglePause(engine_); });
    connect(resetPeakHoldButton_, &QAbstractButton::clicked, this,
            [this] { engine_.resetPeakHold(); });
    followAll(
        this, [this] { showRunState(); }, engine.isRunning, engine.isStarting, engine.isPaused);
    followChannels(engine.channelChanges(), this, [this] { showPeakHoldReset(); });
    follow(engine.rtaChannelID, this, [this] { showPeakHoldReset(); });
}

bool MainToolbar::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        showPeakHoldReset();
    }
    return QWidget::event(event);
}

void MainToolbar::resizeEvent(QResizeEvent* event) {
    showPeakHoldReset();
    QWidget::resizeEvent(event);
}

// The button with its text where the row has room for it, else the menu.
void MainToolbar::showPeakHoldReset() {
    const UUID shown = engine_.resolvedChannelID(engine_.rtaChannelID());
    const bool isOffered = engine_.display(shown).showsPeakHold;
    const auto widthOf = [this](const QWidget& widget) {
        return widget.isHidden() ? 0 : widget.sizeHint().width() + row_->spacing();
    };
    const int others =
        row_->sizeHint().width() - widthOf(*resetPeakHoldButton_) - widthOf(*resetPeakHoldMenu_);
    const bool fits =
        others + row_->spacing() + resetPeakHoldButton_->sizeHint().width() <= width();
    resetPeakHoldButton_->setVisible(isOffered && fits);
    resetPeakHoldMenu_->setVisible(isOffered && !fits);
}

void MainToolbar::showRunState() {
    const bool isRunning = engine_.isRunning();
    const bool isStarting = engine_.isStarting();
    const bool isPaused = engine_.isPaused();
    spinner_->setVisible(isStarting);
    if (isStarting) {
        startButton_->setSymbol(QString(), QColor());
        startButton_->setHelp(QStringLiteral("Starting"), QStringLiteral("Cancel start (Space)"));
    } else if (isRunning) {
        startButton_->setSymbol(QStringLiteral("stop.circle.fill"),
                                Theme::color(TarvaneKit::SignalColors::red));
        startButton_->setHelp(QStringLiteral("Stop"), QStringLiteral("Stop metering (Space)"));
    } else {
        startButton_->setSymbol(QStringLiteral("play.circle.fill"), Theme::accent);
        startButton_->setHelp(QStringLiteral("Start"), QStringLiteral("Start metering (Space)"));
    }
    pauseButton_->setVisible(isRunning);
    pausedNote_->setVisible(isRunning && isPaused);
    if (isPaused) {
        pauseButton_->setSymbol(QStringLiteral("play.circle"), Theme::primaryText);
        pauseButton_->setHelp(QStringLiteral("Resume"), QStringLiteral("Resume metering (P)"));
    } else {
        pauseButton_->setSymbol(QStringLiteral("pause.circle"), Theme::primaryText);
        pauseButton_->setHelp(QStringLiteral("Pause"),
                              QStringLiteral("Pause metering without clearing (P)"));
    }
}

}  // namespace TarvaneApp
