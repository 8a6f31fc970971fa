#include "Shell/Windows/MeteredInputLabel.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QPen>

#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Controls/ElidedLabel.h"
#include "Shell/Controls/SpokenRole.h"

namespace TarvaneApp {

namespace {

constexpr int dotSize = 10;
constexpr double line = 2.0;

QString said(InputState state) {
    switch (state) {
        case InputState::idle:
            break;
        case InputState::running:
            return QStringLiteral("Metering");
        case InputState::paused:
            return QStringLiteral("Paused");
        case InputState::lost:
            return QStringLiteral("Not connected");
    }
    return QStringLiteral("Not metering");
}

}  // namespace

// The states differ in shape as well as in colour: a ring, a disc, two bars, a cross.
class MeteredInputLabel::Dot final : public QWidget {
  public:
    explicit Dot(QWidget* parent) : QWidget(parent) {
        setFixedSize(dotSize, dotSize);
        setSpokenRole(*this, QAccessible::StaticText);
        setState(InputState::idle);
    }

    InputState state() const { return state_; }
    void setState(InputState state) {
        state_ = state;
        setToolTip(said(state));
        setAccessibleName(said(state));
        update();
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF circle = QRectF(rect()).adjusted(1.0, 1.0, -1.0, -1.0);
        switch (state_) {
            case InputState::idle:
                painter.setPen(QPen(Theme::axisText, line));
                painter.drawEllipse(circle.adjusted(0.5, 0.5, -0.5, -0.5));
                break;
            case InputState::running:
                painter.setPen(Qt::NoPen);
                painter.setBrush(Theme::color(TarvaneKit::SignalColors::green));
                painter.drawEllipse(circle);
                break;
            case InputState::paused:
                painter.fillRect(QRectF(1.0, 1.0, 3.0, 8.0), Theme::peakHold);
                painter.fillRect(QRectF(6.0, 1.0, 3.0, 8.0), Theme::peakHold);
                break;
            case InputState::lost:
                painter.setPen(QPen(Theme::color(TarvaneKit::SignalColors::red), line,
                                    Qt::SolidLine, Qt::RoundCap));
                painter.drawLine(circle.topLeft(), circle.bottomRight());
                painter.drawLine(circle.bottomLeft(), circle.topRight());
                break;
        }
    }

  private:
    InputState state_ = InputState::idle;
};

InputState inputState(const MeterEngine& engine) {
    if (engine.isRunning()) {
        return engine.isPaused() ? InputState::paused : InputState::running;
    }
    return engine.isConnected(engine.selectedDeviceUID()) ? InputState::idle : InputState::lost;
}

MeteredInputLabel::MeteredInputLabel(MeterEngine& engine, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      dot_(new Dot(this)),
      name_(new ElidedLabel(Theme::Text::body, Theme::primaryText, this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(Theme::Space::related);
    row->addWidget(dot_);
    row->addWidget(name_);
    followAll(
        this, [this] { showInput(); }, engine.selectedDeviceUID, engine.availableDevices,
        engine.meteredDevice, engine.isRunning, engine.isPaused);
}

QString MeteredInputLabel::text() const {
    return name_->text();
}

InputState MeteredInputLabel::state() const {
    return dot_->state();
}

void MeteredInputLabel::showInput() {
    const auto input = engine_.mainInputInWords();
    name_->setText(input ? utf8Text(*input) : QStringLiteral("No input device"));
    dot_->setState(inputState(engine_));
}

}  // namespace TarvaneApp
