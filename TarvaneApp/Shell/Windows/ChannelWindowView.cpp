#include "Shell/Windows/ChannelWindowView.h"

#include <QCloseEvent>
#include <QLabel>
#include <QVBoxLayout>

#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "Settings/Observable.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/ChannelColorDot.h"
#include "Shell/Controls/Divider.h"
#include "Shell/Controls/ElidedLabel.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Panels/ChannelWindowArrangement.h"
#include "Shell/Panels/ModuleLayoutView.h"
#include "Shell/Windows/ChannelWindowLayoutMenu.h"
#include "Shell/Windows/MeteringKeys.h"
#include "Shell/Windows/ScreenRoom.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

constexpr QSize smallestSize(360, 200);
constexpr QSize firstSize(960, 820);
constexpr int headerMargin = 5;  // the button's plate has its own

}  // namespace

ChannelWindowView::ChannelWindowView(MeterEngine& engine, const std::optional<UUID>& channelID)
    : engine_(engine),
      channelID_(channelID),
      removedNote_(makeTextLabel(QStringLiteral("This channel has been removed."),
                                 Theme::Text::title, Theme::axisText, this)) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowRole(QStringLiteral("channel"));
    setWindowIcon(Icon::application());
    setMinimumSize(smallestSize);
    resize(firstSize.boundedTo(ScreenRoom::of(*this)));
    removedNote_->setAlignment(Qt::AlignCenter);
    setCentralWidget(new QWidget(this));
    auto* column = new QVBoxLayout(centralWidget());
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(removedNote_);
    if (channelID_) {
        content_ = makeContent(*channelID_);
        column->addWidget(content_);
    }
    new MeteringKeys(engine, *this);
    // No control is ringed until the user moves the focus there.
    setFocusPolicy(Qt::ClickFocus);
    setFocus();
    followChannels(engine.channelChanges(), this, [this] { showChannel(); });
}

QWidget* ChannelWindowView::makeContent(const UUID& channelID) {
    auto* content = new QWidget(this);
    auto* column = layOutColumn(content, 0);
    column->addWidget(makeHeader(channelID, content));
    column->addWidget(makeDivider(content));
    auto* arrangement = new ChannelWindowArrangement(engine_, channelID, content);
    column->addWidget(new ModuleLayoutView(engine_, *arrangement, channelID, content), 1);
    return content;
}

QWidget* ChannelWindowView::makeHeader(const UUID& channelID, QWidget* parent) {
    auto* header = new QWidget(parent);
    dot_ = new ChannelColorDot(header);
    name_ = new ElidedLabel(Theme::Text::title, Theme::primaryText, header);
    input_ = new ElidedLabel(Theme::Text::body, Theme::axisText, header);
    status_ = new ElidedLabel(Theme::Text::caption, Theme::axisText, header);
    auto* row = new QHBoxLayout(header);
    row->setContentsMargins(Theme::Space::panel, headerMargin,
                            Theme::Space::panel - IconButton::margin(Theme::Symbol::toolbar),
                            headerMargin);
    row->setSpacing(Theme::Space::row);
    row->addWidget(dot_);
    row->addWidget(name_);
    row->addWidget(input_);
    row->addStretch(1);
    row->addWidget(status_);
    row->addWidget(new ChannelWindowLayoutMenu(engine_, channelID, header));
    return header;
}

void ChannelWindowView::showChannel() {
    const auto channel = channelID_ ? engine_.channelInfo(*channelID_) : std::nullopt;
    removedNote_->setVisible(!channel);
    if (content_ != nullptr) {
        content_->setVisible(channel.has_value());
    }
    if (!channel) {
        setWindowTitle(QStringLiteral("Tarvane — Channel"));
        return;
    }
    const QString name = QString::fromStdString(channel->name);
    setWindowTitle(QStringLiteral("Tarvane — ") + name);
    dot_->setColor(Theme::color(channel->color));
    name_->setText(name);
    input_->setText(QString::fromStdString(engine_.inputDescription(*channel)));
    status_->setText(!channel->isEnabled    ? QStringLiteral("Turned off in Preferences > Audio")
                     : !engine_.isRunning() ? QStringLiteral("Press Start in the main window")
                                            : QString());
    status_->setVisible(!status_->text().isEmpty());
}

void ChannelWindowView::closeEvent(QCloseEvent* event) {
    QMainWindow::closeEvent(event);
    Q_EMIT closed();
}

}  // namespace TarvaneApp
