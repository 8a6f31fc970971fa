#include "MainWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QComboBox>
#include <QKeyEvent>
#include <QMenuBar>
#include <QShortcut>
#include <QToolButton>

#include "ContentView.h"
#include "ErrorAlert.h"
#include "Icon.h"
#include "LiveFollow.h"
#include "MainToolbar.h"
#include "MeterEngine.h"

namespace TarvaneApp {

namespace {

constexpr int smallestWidth = 900;
constexpr int smallestHeight = 260;
constexpr int smallestHeightWithGraphs = 600;
constexpr int historyHeight = 170;
constexpr QSize firstSize(1200, 920);

}  // namespace

MainWindow::MainWindow(MeterEngine& engine, const Actions& actions) : engine_(engine) {
    setWindowTitle(QStringLiteral("Tarvane"));
    setWindowIcon(Icon::application());
    followAll(
        this,
        [this] {
            const int graphs =
                engine_.mainWindowShowsGraphArea() ? smallestHeightWithGraphs : smallestHeight;
            const int history =
                engine_.levelHistoryPlacement() == ModulePlacement::mainWindow ? historyHeight : 0;
            setMinimumSize(smallestWidth, graphs + history);
        },
        engine.rtaPlacement, engine.spectrogramPlacement, engine.levelHistoryPlacement);
    resize(firstSize);
    setCentralWidget(new ContentView(engine, this));
    // No control is pressed or ringed until the user moves the focus there.
    centralWidget()->setFocusPolicy(Qt::ClickFocus);
    centralWidget()->setFocus();
    makeMenus(actions);
    makeShortcuts();
    new ErrorAlert(engine, this);
}

void MainWindow::makeMenus(const Actions& actions) {
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    QAction* settings = file->addAction(QStringLiteral("Settings…"), this, actions.showSettings);
    settings->setShortcut(QKeySequence(QStringLiteral("Ctrl+,")));
    settings->setMenuRole(QAction::PreferencesRole);
    file->addSeparator();
    QAction* quit = file->addAction(QStringLiteral("Quit"), this, actions.quit);
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
}

// A text field that has the focus takes the keys as text before any shortcut sees them.
void MainWindow::makeShortcuts() {
    MainToolbar& toolbar = static_cast<ContentView*>(centralWidget())->toolbar();
    const auto add = [this, &toolbar](Qt::Key key, void (MainToolbar::*action)()) {
        auto* shortcut = new QShortcut(QKeySequence(key), this);
        shortcut->setAutoRepeat(false);
        connect(shortcut, &QShortcut::activated, &toolbar, action);
    };
    add(Qt::Key_Space, &MainToolbar::toggleRunning);
    add(Qt::Key_P, &MainToolbar::togglePause);
}

// Space belongs to start and stop, so Return presses the control that has the focus.
void MainWindow::keyPressEvent(QKeyEvent* event) {
    const bool isReturn = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    QWidget* focused = focusWidget();
    if (!isReturn || focused == nullptr) {
        QMainWindow::keyPressEvent(event);
    } else if (auto* menuButton = qobject_cast<QToolButton*>(focused);
               menuButton != nullptr && menuButton->menu() != nullptr) {
        menuButton->showMenu();
    } else if (auto* button = qobject_cast<QAbstractButton*>(focused)) {
        button->click();
    }
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (!event->spontaneous()) {
        engine_.refreshDevices();
    }
}

void MainWindow::showInFront() {
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

}  // namespace TarvaneApp
