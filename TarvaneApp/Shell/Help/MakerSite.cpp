#include "Shell/Help/MakerSite.h"

#include <QLabel>

#include "Displays/Theme.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Help/HelpLook.h"

namespace TarvaneApp {

QLabel* makeMakerSiteLabel(const QString& text, const QString& address, QWidget* parent) {
    const qsizetype scheme = address.indexOf(QLatin1String("://"));
    const QString shown = scheme < 0 ? address : address.mid(scheme + 3);
    auto* label = makeTextLabel({}, Theme::Text::body, HelpLook::bodyText, parent);
    label->setTextFormat(Qt::RichText);
    label->setText(QStringLiteral("%1<a href=\"%2\">%3</a>")
                       .arg(text.toHtmlEscaped(), address.toHtmlEscaped(), shown.toHtmlEscaped()));
    label->setTextInteractionFlags(Qt::TextBrowserInteraction);
    label->setOpenExternalLinks(true);
    return label;
}

}  // namespace TarvaneApp
