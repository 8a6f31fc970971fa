#include "Shell/Windows/TrayIcon.h"

#include <QAction>
#include <QPainter>
#include <QPixmap>
#include <array>
#include <utility>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Windows/MeteringKeys.h"

namespace TarvaneApp {

using Kind = TrayState::Kind;

namespace {

// As trays show them, at scales up to 2.
constexpr std::array sizes{16, 22, 24, 32, 44, 48, 64};
constexpr double signShare = 0.5;  // of the icon's side

// Each sign has a shape of its own: trays are small, and not everyone tells red from green.
void paintSign(QPainter& painter, Kind kind, const QRectF& room) {
    painter.setPen(Qt::NoPen);
    const auto part = [&room](double x, double y, double width, double height) {
        return QRectF(room.left() + x * room.width(), room.top() + y * room.height(),
                      width * room.width(), height * room.height());
    };
    switch (kind) {
        case Kind::idle:
            break;
        case Kind::running:
            painter.setBrush(Theme::color(TarvaneKit::SignalColors::green));
            painter.drawEllipse(room);
            break;
        case Kind::paused:
            painter.setBrush(Theme::background);
            painter.drawRect(room);
            painter.setBrush(Theme::peakHold);
            painter.drawRect(part(0.1, 0.1, 0.3, 0.8));
            painter.drawRect(part(0.6, 0.1, 0.3, 0.8));
            break;
        case Kind::clip:
            painter.setBrush(Theme::color(TarvaneKit::SignalColors::red));
            painter.drawRect(room);
            painter.setBrush(Qt::white);
            painter.drawRect(part(0.4, 0.12, 0.2, 0.46));
            painter.drawRect(part(0.4, 0.7, 0.2, 0.18));
            break;
        case Kind::ring:
            painter.setBrush(Theme::background);
            painter.drawEllipse(room);
            painter.setBrush(Theme::ringAlert);
            painter.drawEllipse(part(0.08, 0.08, 0.84, 0.84));
            painter.setBrush(Theme::background);
            painter.drawEllipse(part(0.24, 0.24, 0.52, 0.52));
            painter.setBrush(Theme::ringAlert);
            painter.drawEllipse(part(0.38, 0.38, 0.24, 0.24));
            break;
    }
}

}  // namespace

TrayIcon::TrayIcon(MeterEngine& engine, const Commands& commands)
    : engine_(engine),
      start_(menu_.addAction(QString(), this, [this] { toggleRunning(engine_); })),
      pause_(menu_.addAction(QString(), this, [this] { togglePause(engine_); })),
      showMainWindow_(commands.showMainWindow),
      binding_(*this, [this] { showState(); }) {
    menu_.addSeparator();
    menu_.addAction(QStringLiteral("Show Main Window"), this, commands.showMainWindow);
    menu_.addSeparator();
    menu_.addAction(QStringLiteral("Quit"), this, commands.quit);
    connect(&tray_, &DesktopTray::arrived, this, &TrayIcon::showIcon);
    followChannels(engine.channelChanges(), this, [this] {
        std::vector<TarvaneKit::UUID> ids;
        for (const ChannelInfo& info : engine_.activeChannelInfos()) {
            ids.push_back(info.id);
        }
        binding_.bind(engine_, ids);
    });
    followAll(
        this, [this] { showState(); }, engine.isRunning, engine.isStarting, engine.isPaused,
        engine.meteredDevice);
}

void TrayIcon::showIcon() {
    icon_ = std::make_unique<QSystemTrayIcon>(iconOf(state_.kind));
    icon_->setToolTip(state_.toolTip);
    icon_->setContextMenu(&menu_);
    connect(icon_.get(), &QSystemTrayIcon::activated, this,
            [this](QSystemTrayIcon::ActivationReason reason) {
                if (reason == QSystemTrayIcon::Trigger) {
                    showMainWindow_();
                }
            });
    icon_->show();
}

void TrayIcon::showState() {
    const bool isStarting = engine_.isStarting();
    start_->setText(engine_.isRunning() ? QStringLiteral("Stop")
                    : isStarting        ? QStringLiteral("Cancel Start")
                                        : QStringLiteral("Start"));
    pause_->setText(engine_.isPaused() ? QStringLiteral("Resume") : QStringLiteral("Pause"));
    pause_->setEnabled(engine_.isRunning());
    const TrayState before = std::exchange(state_, TrayState::of(engine_));
    if (icon_ == nullptr) {
        return;
    }
    if (state_.kind != before.kind) {
        icon_->setIcon(iconOf(state_.kind));
    }
    if (state_.toolTip != before.toolTip) {
        icon_->setToolTip(state_.toolTip);
    }
}

QIcon TrayIcon::iconOf(Kind kind) {
    QIcon icon;
    for (const int size : sizes) {
        QPixmap pixmap = Icon::application().pixmap(size);
        pixmap.setDevicePixelRatio(1.0);
        QPainter painter(&pixmap);
        painter.setRenderHint(QPainter::Antialiasing);
        const double side = signShare * pixmap.width();
        paintSign(painter, kind, QRectF(pixmap.width() - side, pixmap.height() - side, side, side));
        painter.end();
        icon.addPixmap(pixmap);
    }
    return icon;
}

}  // namespace TarvaneApp
