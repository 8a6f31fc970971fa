#include "Shell/Windows/MainWindowLayoutMenu.h"

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Shell/Controls/MenuItems.h"
#include "Shell/Windows/StandaloneModule.h"

namespace TarvaneApp {

namespace {

void fill(QMenu& menu, MeterEngine& engine) {
    const auto addSettingPicker = [&menu]<class E>(std::string_view title, Setting<E>& setting) {
        addPicker(menu, title, setting(), [&setting](E value) { setting.set(value); });
    };
    menu.addSection(QStringLiteral("Modules"));
    for (const StandaloneModule module : standaloneModules) {
        addSettingPicker(label(module).toStdString(), placement(engine, module));
    }
    menu.addSeparator();
    addSettingPicker("RTA & Spectrogram", engine.graphOrientation);
    addSettingPicker("Graph Order", engine.graphOrder);
    addSettingPicker("Level History Position", engine.levelHistoryPosition);
    menu.addSection(QStringLiteral("Quick Layouts"));
    for (const LayoutPreset preset : TarvaneKit::allCases<LayoutPreset>()) {
        menu.addAction(menuText(TarvaneKit::rawValue(preset)),
                       [&engine, preset] { engine.applyLayoutPreset(preset); });
    }
}

}  // namespace

MainWindowLayoutMenu::MainWindowLayoutMenu(MeterEngine& engine, QWidget* parent)
    : IconMenuButton(
          Theme::Symbol::toolbar, [&engine](QMenu& menu) { fill(menu, engine); }, parent) {
    setSymbol(QStringLiteral("rectangle.3.group"), Theme::axisText);
    setHelp(QStringLiteral("Layout"),
            QStringLiteral("Choose where each module goes and how the main window is arranged"));
}

}  // namespace TarvaneApp
