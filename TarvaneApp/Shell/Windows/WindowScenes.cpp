#include "Shell/Windows/WindowScenes.h"
#include "Settings/KeyValueStore.h"

#include <QShortcut>
#include <vector>

#include "Core/Coding.h"
#include "Engine/MeterEngine.h"
#include "Shell/Windows/AppTermination.h"
#include "Shell/Windows/ChannelWindowView.h"
#include "Shell/Windows/InFront.h"
#include "Shell/Windows/StandaloneModuleWindow.h"
#include "Shell/Windows/WindowFrame.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

// The channels whose windows are open, as the JSON of their identifiers.
constexpr auto openChannelsKey = "OpenWindows.channel";

}  // namespace

WindowScenes::WindowScenes(MeterEngine& engine, KeyValueStore& store, QList<QAction*> actions)
    : engine_(engine), store_(store), actions_(std::move(actions)) {}

WindowScenes::~WindowScenes() {
    for (const QPointer<QWidget>& window : windows_) {
        delete window.data();
    }
}

void WindowScenes::openModule(StandaloneModule module) {
    open(new StandaloneModuleWindow(module, engine_), sceneIdentifier(module).toStdString());
}

void WindowScenes::openChannel(const UUID& channelID) {
    if (ChannelWindowView* there = channelWindow(channelID)) {
        bringToFront(*there);
        return;
    }
    auto* window = new ChannelWindowView(engine_, channelID);
    connect(window, &ChannelWindowView::closed, this, [this, window] {
        windows_.removeAll(window);
        storeOpenChannels();
    });
    open(window, "channel." + channelID.text());
    storeOpenChannels();
}

void WindowScenes::restoreChannels() {
    const auto bytes = store_.data(openChannelsKey);
    const auto ids = bytes ? TarvaneKit::decode<std::vector<UUID>>(*bytes) : std::nullopt;
    for (const UUID& id : ids.value_or(std::vector<UUID>{})) {
        if (engine_.channelInfo(id)) {
            openChannel(id);
        }
    }
}

void WindowScenes::open(QWidget* window, const std::string& frameName) {
    windows_.removeAll(nullptr);
    windows_.append(window);
    new WindowFrame(store_, frameName, *window);
    window->addActions(actions_);
    connect(new QShortcut(QKeySequence::Close, window), &QShortcut::activated, window,
            &QWidget::close);
    window->show();
}

ChannelWindowView* WindowScenes::channelWindow(const UUID& channelID) const {
    for (const QPointer<QWidget>& window : windows_) {
        auto* view = qobject_cast<ChannelWindowView*>(window.data());
        if (view != nullptr && view->channelID() == channelID) {
            return view;
        }
    }
    return nullptr;
}

// Windows that close because the program ends come back at the next launch.
void WindowScenes::storeOpenChannels() {
    if (AppTermination::isTerminating()) {
        return;
    }
    std::vector<UUID> ids;
    for (const QPointer<QWidget>& window : windows_) {
        if (const auto* view = qobject_cast<const ChannelWindowView*>(window.data())) {
            ids.push_back(*view->channelID());
        }
    }
    if (const auto bytes = TarvaneKit::encode(ids)) {
        store_.setData(openChannelsKey, *bytes);
        store_.synchronize();
    }
}

}  // namespace TarvaneApp
