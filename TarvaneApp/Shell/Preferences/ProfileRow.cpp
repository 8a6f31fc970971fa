#include "Shell/Preferences/ProfileRow.h"

#include <QDateTime>
#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <chrono>

#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Profiles/ProfileStore.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/ElidedLabel.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/IconMenuButton.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

namespace {

// "Saved Mar 1, 2026 9:30 PM", in the words of the user's country.
QString savedText(TarvaneKit::Date date) {
    using namespace std::chrono;
    const QDateTime at =
        QDateTime::fromSecsSinceEpoch(floor<seconds>(date).time_since_epoch().count());
    const QLocale locale;
    return QStringLiteral("Saved ") + locale.toString(at.date(), QStringLiteral("MMM d, yyyy")) +
           u' ' + locale.toString(at.time(), QLocale::ShortFormat);
}

}  // namespace

ProfileRow::ProfileRow(MeterEngine& engine, ProfileStore& profiles, int place, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      profiles_(profiles),
      place_(static_cast<std::size_t>(place)),
      current_(new QLabel(this)),
      name_(new ElidedLabel(Theme::Text::title, Theme::primaryText, this)),
      saved_(makeTextLabel({}, Theme::Text::caption, Theme::axisText, this)),
      load_(makeFormButton(
          QStringLiteral("Load"), [this] { profiles_.load(profile(), engine_); }, this)),
      more_(new IconMenuButton(
          Theme::Symbol::toolbar,
          [this](QMenu& menu) {
              menu.addAction(QStringLiteral("Overwrite with Current Settings"),
                             [this] { profiles_.saveCurrent(engine_, profile().name); });
              menu.addAction(QStringLiteral("Export…"),
                             [this] { profiles_.exportProfile(profile()); });
              menu.addSeparator();
              menu.addAction(QStringLiteral("Delete…"), [this] { confirmDelete(); });
          },
          this)) {
    current_->setPixmap(
        Icon::tinted(QStringLiteral("checkmark.circle.fill"), Theme::Symbol::options, Theme::accent)
            .pixmap(QSize(Theme::Symbol::options, Theme::Symbol::options), devicePixelRatioF()));
    current_->setToolTip(QStringLiteral("Current profile"));
    current_->setAccessibleName(current_->toolTip());
    QSizePolicy keepsItsRoom = current_->sizePolicy();
    keepsItsRoom.setRetainSizeWhenHidden(true);
    current_->setSizePolicy(keepsItsRoom);
    more_->setSymbol(QStringLiteral("ellipsis.circle"), Theme::axisText);
    auto* row = layOutRow(this, Theme::Space::row);
    row->addWidget(current_);
    auto* texts = new QVBoxLayout;
    texts->setSpacing(0);
    texts->addWidget(name_);
    texts->addWidget(saved_);
    row->addLayout(texts, 1);
    row->addWidget(load_);
    row->addWidget(more_);
}

SettingsProfile ProfileRow::profile() const {
    return profiles_.profiles()[place_];
}

void ProfileRow::showProfile() {
    const SettingsProfile& shown = profiles_.profiles()[place_];
    const QString name = utf8Text(shown.name);
    current_->setVisible(profiles_.activeProfileName() == shown.name);
    name_->setText(name);
    saved_->setText(savedText(shown.savedAt));
    load_->setAccessibleName(QStringLiteral("Load ") + name);
    more_->setHelp(QStringLiteral("More for ") + name, QStringLiteral("More"));
}

// What is asked about is deleted, whatever the list has become in the meantime.
void ProfileRow::confirmDelete() {
    auto* box = new QMessageBox(QMessageBox::Warning, QStringLiteral("Profiles"),
                                QStringLiteral("Delete \"%1\"?").arg(utf8Text(profile().name)),
                                QMessageBox::Cancel, window());
    box->setAttribute(Qt::WA_DeleteOnClose);
    box->setTextFormat(Qt::PlainText);
    box->setInformativeText(QStringLiteral("This can't be undone."));
    const QPushButton* remove =
        box->addButton(QStringLiteral("Delete"), QMessageBox::DestructiveRole);
    connect(remove, &QPushButton::clicked, &profiles_,
            [&profiles = profiles_, asked = profile()] { profiles.remove(asked); });
    box->open();
}

}  // namespace TarvaneApp
