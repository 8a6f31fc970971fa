#include "Shell/Windows/WindowScenes.h"
#include "Settings/KeyValueStore.h"

#include <QApplication>
#include <QScreen>
#include <QShortcut>
#include <vector>

#include "Build/Maker.h"
#include "Build/Version.h"
#include "Core/Coding.h"
#include "Engine/MeterEngine.h"
#include "Shell/Help/AboutWindowView.h"
#include "Shell/Help/HelpWindowView.h"
#include "Shell/Help/ReleaseNotesWindowView.h"
#include "Shell/Windows/AppTermination.h"
#include "Shell/Windows/ChannelWindowView.h"
#include "Shell/Windows/InFront.h"
#include "Shell/Windows/MeterHeightMemory.h"
#include "Shell/Windows/StageWindow.h"
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

void WindowScenes::openHelp() {
    if (!bringBack<HelpWindowView>()) {
        open(new HelpWindowView(store_, QString::fromUtf8(Build::makerSite)), "help");
    }
}

void WindowScenes::openReleaseNotes() {
    if (!bringBack<ReleaseNotesWindowView>()) {
        open(new ReleaseNotesWindowView, "release-notes");
    }
}

void WindowScenes::openAbout() {
    if (bringBack<AboutWindowView>()) {
        return;
    }
    open(new AboutWindowView({.version = QString::fromUtf8(Build::version),
                              .legalLine = legalLine(QString::fromUtf8(Build::maker)),
                              .makerSite = QString::fromUtf8(Build::makerSite)}),
         "about");
}

template <class Window>
bool WindowScenes::bringBack() const {
    for (const QPointer<QWidget>& window : windows_) {
        // One that was closed is there until the event loop takes it away.
        if (auto* found = qobject_cast<Window*>(window.data()); found && found->isVisible()) {
            bringToFront(*found);
            return true;
        }
    }
    return false;
}

void WindowScenes::toggleFullScreenMeter() {
    QWidget* from = QApplication::activeWindow();
    const auto* ofStage = qobject_cast<const StageWindow*>(from);
    const auto* ofChannel = qobject_cast<const ChannelWindowView*>(from);
    const auto channelID = ofStage != nullptr     ? ofStage->fixedChannelID()
                           : ofChannel != nullptr ? ofChannel->channelID()
                                                  : std::nullopt;
    for (const QPointer<QWidget>& window : windows_) {
        auto* open = qobject_cast<StageWindow*>(window.data());
        if (open != nullptr && open->isVisible() && open->fixedChannelID() == channelID) {
            open->close();
            return;
        }
    }
    auto* stage = new StageWindow(engine_, channelID);
    windows_.removeAll(nullptr);
    windows_.append(stage);
    stage->addActions(actions_);
    stage->cover(from != nullptr ? *from->screen() : *QGuiApplication::primaryScreen());
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
    MeterHeightMemory::keep(store_, frameName, *window);
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
