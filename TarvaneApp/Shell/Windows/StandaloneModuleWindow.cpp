#include "Shell/Windows/StandaloneModuleWindow.h"

#include "Shell/Controls/Icon.h"
#include "Shell/Panels/LevelHistoryPanelView.h"
#include "Shell/Panels/RTAPanelView.h"
#include "Shell/Panels/SPLMeterPanelView.h"
#include "Shell/Panels/SpectrogramPanelView.h"
#include "Shell/Windows/MeteringKeys.h"
#include "Shell/Windows/StandaloneWindowGuard.h"

namespace TarvaneApp {

namespace {

// Wide enough for a panel's header with all its controls.
constexpr int firstWidth = 960;
constexpr int firstMeterWidth = 640;

QWidget* makePanel(StandaloneModule module, MeterEngine& engine, QWidget* window) {
    switch (module) {
        case StandaloneModule::splMeter:
            return new SPLMeterPanelView(engine, std::nullopt, window);
        case StandaloneModule::rta:
            return new RTAPanelView(engine, std::nullopt, nullptr, window);
        case StandaloneModule::spectrogram:
            return new SpectrogramPanelView(engine, std::nullopt, nullptr, window);
        case StandaloneModule::levelHistory:
            break;
    }
    return new LevelHistoryPanelView(engine, std::nullopt, window);
}

}  // namespace

StandaloneModuleWindow::StandaloneModuleWindow(StandaloneModule module, MeterEngine& engine) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(TarvaneApp::windowTitle(module));
    setWindowRole(sceneIdentifier(module));
    setWindowIcon(Icon::application());
    const QSize smallest = minimumWindowSize(module);
    setMinimumSize(smallest);
    resize(module == StandaloneModule::splMeter ? firstMeterWidth : firstWidth,
           2 * smallest.height());
    setCentralWidget(makePanel(module, engine, this));
    new MeteringKeys(engine, *this);
    // No control is ringed until the user moves the focus there.
    setFocusPolicy(Qt::ClickFocus);
    setFocus();
    new StandaloneWindowGuard(module, engine, this);
}

}  // namespace TarvaneApp
