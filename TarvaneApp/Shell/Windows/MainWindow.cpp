#include "Shell/Windows/MainWindow.h"

#include <QAction>
#include <QMenuBar>
#include <QShortcut>

#include "Engine/MeterEngine.h"
#include "Profiles/ProfileStore.h"
#include "Settings/Observable.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/MenuItems.h"
#include "Shell/Panels/ExportButton.h"
#include "Shell/Windows/ContentView.h"
#include "Shell/Windows/ErrorAlert.h"
#include "Shell/Windows/InFront.h"
#include "Shell/Windows/MeteringKeys.h"
#include "Shell/Windows/ProfilesCommands.h"
#include "Shell/Windows/ScreenRoom.h"

namespace TarvaneApp {

namespace {

constexpr int smallestWidth = 900;
constexpr int smallestHeight = 260;
constexpr int smallestHeightWithGraphs = 600;
constexpr int historyHeight = 170;
constexpr QSize mainWindowSize(1200, 920);

}  // namespace

MainWindow::MainWindow(MeterEngine& engine, ProfileStore& profiles, const AppCommands& commands)
    : engine_(engine), profiles_(profiles), room_(new ScreenRoom(*this)) {
    setWindowTitle(QStringLiteral("Tarvane"));
    setWindowIcon(Icon::application());
    followAll(
        this, [this] { limitSize(); }, engine.rtaPlacement, engine.spectrogramPlacement,
        engine.levelHistoryPlacement);
    connect(room_, &ScreenRoom::changed, this, &MainWindow::limitSize);
    resize(mainWindowSize.boundedTo(room_->size()));
    content_ = new ContentView(engine, profiles, commands, this);
    setCentralWidget(content_);
    // No control is pressed or ringed until the user moves the focus there.
    setFocusPolicy(Qt::ClickFocus);
    setFocus();
    makeMenus(commands);
    new MeteringKeys(engine, *this);
    new ErrorAlert(
        QStringLiteral("Error"), engine.errorMessage, [&engine] { engine.dismissError(); }, this);
    new ErrorAlert(
        QStringLiteral("Profiles"), profiles.errorMessage, [&profiles] { profiles.dismissError(); },
        this);
}

// A screen that is lower than the modules need has the window all the same, and they make do.
void MainWindow::limitSize() {
    const int graphs =
        engine_.mainWindowShowsGraphArea() ? smallestHeightWithGraphs : smallestHeight;
    const int history =
        engine_.levelHistoryPlacement() == ModulePlacement::mainWindow ? historyHeight : 0;
    setMinimumSize(QSize(smallestWidth, graphs + history).boundedTo(room_->size()));
}

void MainWindow::makeMenus(const AppCommands& commands) {
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    QAction* exporting =
        file->addAction(QStringLiteral("Export Level History…"), this, commands.exportLevelHistory);
    exporting->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+E")));
    exporting->setObjectName(exportActionName);
    addAction(exporting);
    file->addSeparator();
    if (commands.checkForUpdates) {
        file->addAction(QStringLiteral("Check for Updates…"), this, commands.checkForUpdates);
    }
    QAction* settings = file->addAction(QStringLiteral("Settings…"), this, commands.showSettings);
    settings->setShortcut(QKeySequence(QStringLiteral("Ctrl+,")));
    settings->setMenuRole(QAction::PreferencesRole);
    file->addSeparator();
    QAction* quit = file->addAction(QStringLiteral("Quit"), this, commands.quit);
    quit->setShortcut(QKeySequence(QStringLiteral("Ctrl+Q")));
    quit->setMenuRole(QAction::QuitRole);

    QMenu* view = menuBar()->addMenu(QStringLiteral("&View"));
    const auto addSwitch = [this, view](const QString& text, Setting<bool>& setting) {
        QAction* item = view->addAction(text);
        item->setCheckable(true);
        connect(item, &QAction::triggered, this, [&setting](bool on) { setting.set(on); });
        follow(setting, this, [&setting, item] { item->setChecked(setting()); });
        return item;
    };
    addSwitch(QStringLiteral("Show Clock Instead of SPL Meter"), engine_.splReadoutShowsClock)
        ->setShortcut(QKeySequence(QStringLiteral("Ctrl+Shift+C")));
    addSwitch(QStringLiteral("Show Level Bar in SPL Meter"), engine_.splMeterShowsLevelBar);
    view->addSeparator();
    view->addAction(QStringLiteral("Full-Screen SPL Meter"), this, commands.toggleFullScreenMeter)
        ->setShortcut(QKeySequence(Qt::Key_F11));

    makeProfilesMenu(commands);
    makeWindowMenu(commands);
    makeHelpMenu(commands);
    connect(new QShortcut(QKeySequence(Qt::Key_F10), this), &QShortcut::activated, this,
            [this] { menuBar()->setActiveAction(menuBar()->actions().front()); });
}

void MainWindow::makeProfilesMenu(const AppCommands& commands) {
    QMenu* menu = menuBar()->addMenu(QStringLiteral("&Profiles"));
    followAll(
        menu,
        [this, menu, commands] {
            menu->clear();
            ProfilesCommands::addProfiles(*menu, profiles_, engine_);
            menu->addSeparator();
            ProfilesCommands::addSaveToCurrent(*menu, profiles_, engine_);
            ProfilesCommands::addManage(*menu, commands);
        },
        profiles_.profiles, profiles_.activeProfileName);
}

void MainWindow::makeWindowMenu(const AppCommands& commands) {
    QMenu* window = menuBar()->addMenu(QStringLiteral("&Window"));
    QAction* showMain = window->addAction(QStringLiteral("Show Main Window"), this,
                                          [this] { bringToFront(*this); });
    showMain->setShortcut(QKeySequence(QStringLiteral("Ctrl+0")));
    QMenu* channels = window->addMenu(QStringLiteral("Channel Windows"));
    follow(engine_.extraChannels, channels, [this, channels, open = commands.openChannelWindow] {
        const bool hasExtraChannels = !engine_.extraChannels().empty();
        channels->clear();
        channels->setEnabled(hasExtraChannels);
        if (hasExtraChannels) {
            for (const ChannelInfo& channel : engine_.channelInfos()) {
                channels->addAction(menuText(channel.name), [open, id = channel.id] { open(id); });
            }
        }
    });
}

void MainWindow::makeHelpMenu(const AppCommands& commands) {
    QMenu* help = menuBar()->addMenu(QStringLiteral("&Help"));
    QAction* book = help->addAction(QStringLiteral("Tarvane Help"), this, commands.openHelp);
    book->setShortcuts({QKeySequence(QStringLiteral("Ctrl+?")), QKeySequence(Qt::Key_F1)});
    help->addAction(QStringLiteral("What's New in Tarvane"), this, commands.openReleaseNotes);
    help->addSeparator();
    QAction* about = help->addAction(QStringLiteral("About Tarvane"), this, commands.openAbout);
    about->setMenuRole(QAction::AboutRole);
}

NoteBar& MainWindow::note() {
    return content_->note();
}

QList<QAction*> MainWindow::keyedActions() const {
    QList<QAction*> keyed;
    for (const QAction* title : menuBar()->actions()) {
        for (QAction* item : title->menu()->actions()) {
            if (!item->shortcut().isEmpty()) {
                keyed.append(item);
            }
        }
    }
    return keyed;
}

}  // namespace TarvaneApp
