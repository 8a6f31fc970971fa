#include "Shell/Help/HelpWindowView.h"

#include <QLabel>
#include <QShortcut>
#include <QSplitter>
#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Settings/KeyValueStore.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/SpokenRole.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Help/HelpBook.h"
#include "Shell/Help/HelpLook.h"
#include "Shell/Help/HelpSidebar.h"
#include "Shell/Help/HelpTopicView.h"

namespace TarvaneApp {

namespace {

constexpr QSize smallestSize(640, 420);
constexpr QSize firstSize(920, 680);
constexpr int narrowestSidebar = 200;
constexpr int idealSidebar = 256;
constexpr int widestSidebar = 340;

constexpr auto topicKey = "HelpWindow.topic";

}  // namespace

HelpWindowView::HelpWindowView(KeyValueStore& store, QString makerSite)
    : QWidget(nullptr, Qt::Window),
      store_(store),
      makerSite_(std::move(makerSite)),
      sidebar_(new HelpSidebar(navigation_)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowRole(QStringLiteral("help"));
    setSpokenRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("Tarvane Help"));
    setWindowIcon(Icon::application());
    setMinimumSize(smallestSize);
    resize(firstSize);
    auto* parts = new QSplitter(this);
    layOutColumn(this, 0)->addWidget(parts);
    auto* detail = new QWidget;
    detail_ = layOutColumn(detail, 0);
    sidebar_->setMinimumWidth(narrowestSidebar);
    sidebar_->setMaximumWidth(widestSidebar);
    parts->setHandleWidth(1);
    parts->setChildrenCollapsible(false);
    parts->addWidget(sidebar_);
    parts->addWidget(detail);
    parts->setStretchFactor(1, 1);
    parts->setSizes({idealSidebar, firstSize.width() - idealSidebar});
    connect(new QShortcut(QKeySequence::Find, this), &QShortcut::activated, this,
            [this] { sidebar_->search(); });
    const std::string lastRead = store.text(topicKey).value_or(std::string());
    navigation_.selection.set(helpTopic(lastRead) != nullptr ? lastRead
                                                             : allHelpTopics().front().title);
    follow(navigation_.selection, this, [this] { showTopic(); });
    sidebar_->setFocus();
}

// Each topic is a page of its own, so that it is read from its top.
void HelpWindowView::showTopic() {
    const auto& selection = navigation_.selection();
    const HelpTopic* topic = selection ? helpTopic(*selection) : nullptr;
    const bool isBeingRead = shown_ != nullptr && shown_->isAncestorOf(focusWidget());
    if (shown_ != nullptr) {
        shown_->hide();
        shown_->deleteLater();  // its own button may be what turned the page
    }
    if (topic != nullptr) {
        shown_ = new HelpTopicView(*topic, navigation_, makerSite_);
        store_.setText(topicKey, topic->title);
        store_.synchronize();
    } else {
        auto* note = makeTextLabel(QStringLiteral("Choose a topic"), HelpLook::bodySize,
                                   HelpLook::bodyText, nullptr);
        note->setAlignment(Qt::AlignCenter);
        shown_ = note;
    }
    detail_->addWidget(shown_);
    if (isBeingRead) {
        shown_->setFocus(Qt::OtherFocusReason);
    }
}

}  // namespace TarvaneApp
