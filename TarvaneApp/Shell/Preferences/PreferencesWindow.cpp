#include "Shell/Preferences/PreferencesWindow.h"

#include <QKeyEvent>
#include <QScrollArea>
#include <QShortcut>
#include <QTabBar>
#include <QTabWidget>
#include <QVBoxLayout>

#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Settings/KeyValueStore.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/SpokenRole.h"
#include "Shell/Forms/TabStops.h"
#include "Shell/Preferences/AudioSettingsView.h"
#include "Shell/Preferences/DisplaySettingsView.h"
#include "Shell/Preferences/LeqSettingsView.h"
#include "Shell/Preferences/LoudnessSettingsView.h"
#include "Shell/Preferences/ProfilesSettingsView.h"
#include "Shell/Preferences/RestartRow.h"
#include "Shell/Preferences/TrafficLightSettingsView.h"

namespace TarvaneApp {

namespace {

constexpr QSize smallestSize(520, 360);
constexpr QSize firstSize(660, 540);

// Beyond it a row's label and its control would no longer read as one.
constexpr int widestForm = 760;

// The title of the tab that was open last.
constexpr auto tabKey = "SettingsWindow.tab";

}  // namespace

PreferencesWindow::PreferencesWindow(const Environment& environment)
    : QWidget(nullptr, Qt::Window), store_(environment.store), tabs_(new QTabWidget(this)) {
    MeterEngine& engine = environment.engine;
    setSpokenRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Settings"));
    setWindowIcon(Icon::application());
    setMinimumSize(smallestSize);
    resize(firstSize);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, Theme::Space::section, 0, 0);
    column->addWidget(tabs_);
    tabs_->setDocumentMode(true);
    // The bar has the focus, and says which tab it is.
    tabs_->setFocusPolicy(Qt::NoFocus);
    tabs_->tabBar()->setFocusPolicy(Qt::TabFocus);
    tabs_->setIconSize(QSize(Theme::Symbol::tab, Theme::Symbol::tab));
    addTab(
        QStringLiteral("Audio"), QStringLiteral("waveform.circle"),
        new AudioSettingsView(
            {.engine = engine, .texts = texts_, .openChannelWindow = environment.openChannelWindow},
            store_),
        new RestartRow(engine));
    addTab(QStringLiteral("Display"), QStringLiteral("chart.xyaxis.line"),
           new DisplaySettingsView(engine, texts_));
    addTab(QStringLiteral("Leq"), QStringLiteral("waveform"), new LeqSettingsView(engine));
    addTab(QStringLiteral("Loudness"), QStringLiteral("speaker.wave.3"),
           new LoudnessSettingsView(engine));
    addTab(QStringLiteral("Traffic Light"), QStringLiteral("circle.lefthalf.filled"),
           new TrafficLightSettingsView(engine));
    profilesTab_ = addTab(QStringLiteral("Profiles"), QStringLiteral("person.crop.circle"),
                          new ProfilesSettingsView(engine, environment.profiles));
    addTabKeys();
    restoreTab();
}

void PreferencesWindow::showProfiles() {
    tabs_->setCurrentWidget(profilesTab_);
}

QWidget* PreferencesWindow::addTab(const QString& title, const QString& symbol, QWidget* form,
                                   QWidget* head) {
    form->setContentsMargins(Theme::Margins::form);
    form->setMaximumWidth(widestForm);
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(form);
    auto* page = new QWidget;
    auto* column = layOutColumn(page, 0);
    if (head != nullptr) {
        column->addWidget(head);
    }
    column->addWidget(scroll, 1);
    tabs_->addTab(page, Icon::tinted(symbol, Theme::Symbol::tab, Theme::primaryText), title);
    return page;
}

// The tabs are a ring. The same keys turn them wherever the focus is.
void PreferencesWindow::addTabKeys() {
    const auto add = [this](const char* keys, int step) {
        auto* shortcut = new QShortcut(QKeySequence(QLatin1String(keys)), this);
        connect(shortcut, &QShortcut::activated, this,
                [this, step] { turnTo(tabs_->currentIndex() + step); });
    };
    add("Ctrl+PgDown", 1);
    add("Ctrl+PgUp", -1);
    add("Ctrl+Tab", 1);
    add("Ctrl+Shift+Backtab", -1);
}

void PreferencesWindow::turnTo(int tab) {
    tabs_->setCurrentIndex((tab + tabs_->count()) % tabs_->count());
}

void PreferencesWindow::restoreTab() {
    const QString stored = utf8Text(store_.text(tabKey).value_or(std::string()));
    for (int tab = 0; tab < tabs_->count(); ++tab) {
        if (tabs_->tabText(tab) == stored) {
            tabs_->setCurrentIndex(tab);
        }
    }
    connect(tabs_, &QTabWidget::currentChanged, this, [this](int tab) {
        store_.setText(tabKey, tabs_->tabText(tab).toStdString());
        store_.synchronize();
    });
}

void PreferencesWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

// Sections come, unfold and grow after what stands under them was made.
bool PreferencesWindow::focusNextPrevChild(bool next) {
    return focusNextTabStop(*this, next);
}

}  // namespace TarvaneApp
