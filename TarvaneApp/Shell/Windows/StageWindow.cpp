#include "Shell/Windows/StageWindow.h"

#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

#include "Engine/MeterEngine.h"
#include "LiveDisplays/LiveClockReadoutView.h"
#include "LiveDisplays/LiveStageReadoutView.h"
#include "Settings/Observable.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/SpokenRole.h"
#include "Shell/Windows/MeteringKeys.h"

namespace TarvaneApp {

StageWindow::StageWindow(MeterEngine& engine, const std::optional<TarvaneKit::UUID>& fixedChannelID)
    : engine_(engine), fixedChannelID_(fixedChannelID) {
    setAttribute(Qt::WA_DeleteOnClose);
    setSpokenRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Tarvane — Full-Screen SPL Meter"));
    setWindowRole(QStringLiteral("stage"));
    setWindowIcon(Icon::application());
    setCursor(Qt::BlankCursor);
    const auto channelID = [this] { return fixedChannelID_.value_or(engine_.splMeterChannelID()); };
    auto* column = layOutColumn(this, 0);
    auto* readout = new LiveStageReadoutView(engine, channelID(), this);
    auto* clock = new LiveClockReadoutView(this);
    column->addWidget(readout);
    column->addWidget(clock);
    follow(engine.splMeterChannelID, this,
           [readout, channelID] { readout->setChannelID(channelID()); });
    follow(engine.splReadoutShowsClock, this, [this, readout, clock] {
        readout->setVisible(!engine_.splReadoutShowsClock());
        clock->setVisible(engine_.splReadoutShowsClock());
    });
    new MeteringKeys(engine, *this);
    connect(new QShortcut(QKeySequence(Qt::Key_Escape), this), &QShortcut::activated, this,
            &QWidget::close);
}

// Where the screen is is what window managers go by; what is asked for before the window is there
// goes by the screen that it is made on.
void StageWindow::cover(QScreen& screen) {
    setScreen(&screen);
    setGeometry(screen.geometry());
    showFullScreen();
    raise();
    activateWindow();
}

}  // namespace TarvaneApp
