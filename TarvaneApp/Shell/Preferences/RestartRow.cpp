#include "Shell/Preferences/RestartRow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

RestartRow::RestartRow(MeterEngine& engine, QWidget* parent) : QWidget(parent) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(Theme::Margins::row);
    row->setSpacing(Theme::Space::panel);
    auto* text =
        makeTextLabel(QStringLiteral("Device or input changes take effect after a restart."),
                      Theme::Text::body, Theme::peakHold, this);
    text->setWordWrap(true);
    row->addWidget(text, 1);
    row->addWidget(makeFormButton(
        QStringLiteral("Restart Now"),
        [&engine] {
            engine.stop();
            engine.start();
        },
        this));
    follow(engine.channelSourcesChangedWhileRunning, this,
           [this, &engine] { setVisible(engine.channelSourcesChangedWhileRunning()); });
}

}  // namespace TarvaneApp
