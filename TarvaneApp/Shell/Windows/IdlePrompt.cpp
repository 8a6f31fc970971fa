#include "Shell/Windows/IdlePrompt.h"

#include <QEvent>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>
#include <algorithm>

#include "Displays/Plate.h"
#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "LiveDisplays/LiveLevelHistoryGraph.h"
#include "LiveDisplays/LiveSPLReadoutView.h"
#include "LiveDisplays/LiveSpectrogramView.h"
#include "LiveDisplays/LiveSpectrumView.h"
#include "Settings/Observable.h"
#include "Shell/Controls/ElidedLabel.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

namespace {

constexpr int widest = 560;
// Over a readout, whose foot has a button: from the top.
constexpr double middleOfReadout = 0.33;

}  // namespace

IdlePrompt::IdlePrompt(MeterEngine& engine, QWidget& window)
    : QWidget(&window),
      engine_(engine),
      window_(window),
      title_(makeTextLabel({}, Theme::Text::number, Theme::primaryText, this)),
      detail_(new ElidedLabel(Theme::Text::body, Theme::axisText, this)) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Theme::Space::group, Theme::Space::section, Theme::Space::group,
                               Theme::Space::section);
    column->setSpacing(Theme::Space::label);
    column->addWidget(title_, 0, Qt::AlignHCenter);
    column->addWidget(detail_, 0, Qt::AlignHCenter);
    // The graphs first: what stands in an empty readout is at least a dash.
    displays_.append(window.findChild<LiveSpectrumView*>());
    displays_.append(window.findChild<LiveSpectrogramView*>());
    displays_.append(window.findChild<LiveLevelHistoryGraph*>());
    displays_.append(window.findChild<LiveSPLReadoutView*>());
    displays_.removeAll(nullptr);
    // A display moves with whatever it lies in.
    for (QWidget* widget : std::as_const(displays_)) {
        for (; widget != nullptr; widget = widget == &window ? nullptr : widget->parentWidget()) {
            widget->installEventFilter(this);
        }
    }
    followAll(
        this, [this] { showInput(); }, engine.isRunning, engine.isStarting,
        engine.selectedDeviceUID, engine.availableDevices);
}

bool IdlePrompt::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::Show:
        case QEvent::Hide:
            place();
            break;
        default:
            break;
    }
    return QWidget::eventFilter(watched, event);
}

void IdlePrompt::showInput() {
    hasMetered_ = hasMetered_ || engine_.isRunning();
    const auto input = engine_.mainInputInWords();
    title_->setText(input ? QStringLiteral("Press Space to start")
                          : QStringLiteral("No input device"));
    detail_->setText(input ? utf8Text(*input)
                           : QStringLiteral("Connect one, or choose System Output in Settings."));
    place();
}

void IdlePrompt::place() {
    const QSize size = sizeHint().boundedTo(QSize(widest, sizeHint().height()));
    const auto display = std::ranges::find_if(displays_, [&](const QWidget* each) {
        return each->isVisibleTo(&window_) && each->width() >= size.width() &&
               each->height() >= size.height();
    });
    const bool isWanted = !hasMetered_ && !engine_.isStarting() && display != displays_.end();
    if (isWanted) {
        QPoint middle = (*display)->rect().center();
        if (qobject_cast<const LiveSPLReadoutView*>(*display) != nullptr) {
            middle.setY(static_cast<int>(middleOfReadout * (*display)->height()));
        }
        middle = (*display)->mapTo(&window_, middle);
        setGeometry(QRect(middle - QPoint(size.width() / 2, size.height() / 2), size));
        raise();
    }
    setVisible(isWanted);
}

void IdlePrompt::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintRaisedPanel(painter, rect());
}

}  // namespace TarvaneApp
