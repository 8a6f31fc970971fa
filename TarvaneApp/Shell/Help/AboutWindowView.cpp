#include "Shell/Help/AboutWindowView.h"

#include <QLabel>
#include <QShortcut>
#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/SpokenRole.h"
#include "Shell/Help/HelpLook.h"
#include "Shell/Help/MakerSite.h"
#include "Shell/Help/ReadingLabel.h"

namespace TarvaneApp {

namespace {

constexpr int iconSize = 96;
constexpr int contentWidth = 320;
constexpr int margin = 28;

void addLine(QVBoxLayout& column, WrappedLabel* line) {
    line->setAlignment(Qt::AlignHCenter);
    line->setMinimumHeight(line->heightForWidth(contentWidth));
    column.addWidget(line);
}

}  // namespace

QString legalLine(const QString& maker) {
    return QStringLiteral(
               "© 2026 %1. Tarvane is free software under the GNU General Public License, version "
               "3 or later (GPL-3.0-or-later). It comes with no warranty, as far as the law "
               "permits.")
        .arg(maker);
}

AboutWindowView::AboutWindowView(const Environment& environment) : QWidget(nullptr, Qt::Window) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowRole(QStringLiteral("about"));
    setSpokenRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("About Tarvane"));
    setWindowIcon(Icon::application());
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(Theme::Space::row);
    column->setSizeConstraint(QLayout::SetFixedSize);
    auto* icon = new QLabel(this);
    icon->setPixmap(
        Icon::application().pixmap(QSize(iconSize, iconSize), icon->devicePixelRatioF()));
    icon->setAlignment(Qt::AlignHCenter);
    icon->setMinimumWidth(contentWidth);
    icon->setAccessibleName(QStringLiteral("The icon of Tarvane"));
    column->addWidget(icon);
    column->addSpacing(Theme::Space::label);
    addLine(*column, new HeadingLabel(QStringLiteral("Tarvane"), HelpLook::titleSize, this));
    addLine(*column, makeReadingLabel(QStringLiteral("Version ") + environment.version,
                                      HelpLook::bodySize, Theme::primaryText, this));
    column->addSpacing(Theme::Space::row);
    addLine(*column, makeReadingLabel(environment.legalLine, Theme::Text::caption,
                                      HelpLook::bodyText, this));
    if (!environment.makerSite.isEmpty()) {
        column->addWidget(makeMakerSiteLabel({}, environment.makerSite, this), 0, Qt::AlignHCenter);
    }
    connect(new QShortcut(QKeySequence::Cancel, this), &QShortcut::activated, this,
            &QWidget::close);
}

}  // namespace TarvaneApp
