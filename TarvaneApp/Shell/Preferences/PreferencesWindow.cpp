#include "Shell/Preferences/PreferencesWindow.h"

#include <QKeyEvent>
#include <QScrollArea>
#include <QTabWidget>
#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Preferences/AudioSettingsView.h"
#include "Shell/Preferences/LeqSettingsView.h"
#include "Shell/Preferences/ProfilesSettingsView.h"

namespace TarvaneApp {

namespace {

constexpr QSize smallestSize(520, 360);
constexpr QSize firstSize(660, 540);

}  // namespace

PreferencesWindow::PreferencesWindow(MeterEngine& engine, ProfileStore& profiles)
    : QWidget(nullptr, Qt::Window), tabs_(new QTabWidget(this)) {
    setWindowTitle(QStringLiteral("Settings"));
    setWindowIcon(Icon::application());
    setMinimumSize(smallestSize);
    resize(firstSize);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(Theme::Space::section, Theme::Space::section, Theme::Space::section,
                               Theme::Space::section);
    column->addWidget(tabs_);
    tabs_->setDocumentMode(true);
    tabs_->setIconSize(QSize(Theme::Symbol::tab, Theme::Symbol::tab));
    addTab(QStringLiteral("Audio"), QStringLiteral("waveform.circle"),
           new AudioSettingsView(engine));
    addTab(QStringLiteral("Leq"), QStringLiteral("waveform"), new LeqSettingsView(engine));
    profilesTab_ = addTab(QStringLiteral("Profiles"), QStringLiteral("person.crop.circle"),
                          new ProfilesSettingsView(engine, profiles));
}

void PreferencesWindow::showProfiles() {
    tabs_->setCurrentWidget(profilesTab_);
}

QWidget* PreferencesWindow::addTab(const QString& title, const QString& symbol, QWidget* form) {
    form->setContentsMargins(Theme::Margins::form);
    auto* scroll = new QScrollArea;
    scroll->setWidgetResizable(true);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setFocusPolicy(Qt::NoFocus);
    scroll->setWidget(form);
    tabs_->addTab(scroll, Icon::tinted(symbol, Theme::Symbol::tab, Theme::primaryText), title);
    return scroll;
}

void PreferencesWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape || event->matches(QKeySequence::Close)) {
        close();
    } else {
        QWidget::keyPressEvent(event);
    }
}

}  // namespace TarvaneApp
