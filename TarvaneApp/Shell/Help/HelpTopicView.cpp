#include "Shell/Help/HelpTopicView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/Divider.h"
#include "Shell/Help/HelpBlockView.h"
#include "Shell/Help/HelpBook.h"
#include "Shell/Help/HelpLook.h"
#include "Shell/Help/HelpNavigation.h"
#include "Shell/Help/HelpPageButton.h"
#include "Shell/Help/MakerSite.h"
#include "Shell/Help/ReadingLabel.h"
#include "Shell/Help/ReadingPage.h"

namespace TarvaneApp {

HelpTopicView::HelpTopicView(const HelpTopic& topic, HelpNavigation& navigation,
                             const QString& makerSite, QWidget* parent)
    : QWidget(parent), page_(new ReadingPage(this)) {
    setFocusProxy(page_);
    page_->setAccessibleName(utf8Text(topic.title));
    layOutColumn(this, 0)->addWidget(page_);
    QVBoxLayout& column = page_->column();
    column.addWidget(new HeadingLabel(utf8Text(topic.title), HelpLook::titleSize));
    column.addWidget(
        makeReadingLabel(utf8Text(topic.summary), HelpLook::headingSize, Theme::axisText, nullptr));
    column.addSpacing(Theme::Space::label);
    for (const HelpBlock& block : topic.blocks) {
        column.addWidget(new HelpBlockView(block));
    }
    addFooter(topic.title, navigation, makerSite);
    column.addStretch(1);
}

void HelpTopicView::addFooter(const std::string& title, HelpNavigation& navigation,
                              const QString& makerSite) {
    QVBoxLayout& column = page_->column();
    const auto [previous, next] = helpNeighbors(title);
    if (previous != nullptr || next != nullptr) {
        column.addSpacing(Theme::Space::row);
        column.addWidget(makeDivider(nullptr));
        auto* row = new QHBoxLayout;
        row->setSpacing(Theme::Space::section);
        const auto addButton = [&](HelpPageButton::Direction direction, const HelpTopic& topic) {
            auto* button = new HelpPageButton(direction, utf8Text(topic.title));
            connect(button, &QAbstractButton::clicked, this,
                    [&navigation, to = topic.title] { navigation.selection.set(to); });
            row->addWidget(button);
        };
        if (previous != nullptr) {
            addButton(HelpPageButton::Direction::previous, *previous);
        }
        row->addStretch(1);
        if (next != nullptr) {
            addButton(HelpPageButton::Direction::next, *next);
        }
        column.addLayout(row);
    }
    if (!makerSite.isEmpty()) {
        column.addWidget(
            makeMakerSiteLabel(QStringLiteral("Need more help? Visit "), makerSite, nullptr));
    }
}

}  // namespace TarvaneApp
