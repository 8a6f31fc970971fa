#include "Shell/Panels/SpectrogramPanelView.h"

#include <QPainter>
#include <QVBoxLayout>

#include "Displays/Spectrogram/SpectrogramFrequencyAxisView.h"
#include "Displays/Theme.h"
#include "Engine/MeterEngine.h"
#include "LiveDisplays/LiveSpectrogramView.h"
#include "Settings/Observable.h"
#include "Shell/ChannelControls/ChannelPickerMenu.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Panels/PanelFrame.h"
#include "Shell/Panels/PanelHeader.h"
#include "Shell/Panels/PanelMaximizeToggleButton.h"
#include "Shell/Panels/SpectrogramControls.h"

namespace TarvaneApp {

using TarvaneKit::UUID;

namespace {

class FrequencyAxisStrip final : public QWidget {
  public:
    explicit FrequencyAxisStrip(QWidget* parent) : QWidget(parent) {
        setFixedHeight(static_cast<int>(SpectrogramFrequencyAxisView::height));
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paint(painter, SpectrogramFrequencyAxisView{}, width());
    }
};

}  // namespace

SpectrogramPanelView::SpectrogramPanelView(MeterEngine& engine,
                                           const std::optional<UUID>& fixedChannelID,
                                           ModuleArrangementLink* arrangement, QWidget* parent)
    : QWidget(parent),
      engine_(engine),
      fixedChannelID_(fixedChannelID),
      picture_(new LiveSpectrogramView(engine, channelID(), this)),
      header_(new PanelHeader(QStringLiteral("Spectrogram"), this)),
      controls_(new SpectrogramControls(engine, fixedChannelID, Qt::Horizontal, header_)),
      adjustButton_(new IconButton(Theme::Symbol::options, header_)),
      adjustPopover_(*adjustButton_, [this](QWidget* popover) {
          return new SpectrogramControls(engine_, fixedChannelID_, Qt::Vertical, popover);
      }) {
    adjustButton_->setSymbol(QStringLiteral("slider.horizontal.3"), Theme::axisText);
    adjustButton_->setHelp(QStringLiteral("Adjust Floor, Ceiling, Speed, Slice Height"));
    if (!fixedChannelID_) {
        auto* picker = new ChannelPickerMenu(engine, engine.spectrogramChannelID, header_);
        picker->setName(QStringLiteral("Spectrogram channel"));
        picker->letShrink();
        header_->row().addWidget(picker);
    }
    header_->row().addStretch(1);
    std::vector<QWidget*> icons{controls_, adjustButton_};
    adjustButton_->hide();
    if (arrangement != nullptr) {
        icons.push_back(
            new PanelMaximizeToggleButton(*arrangement, PanelLayout::spectrogramOnly, header_));
    }
    header_->addIcons(icons);
    header_->orderTabs(*picture_);

    framePanel(this, header_, picture_, 0)->addWidget(new FrequencyAxisStrip(this));

    const auto showChannel = [this] { picture_->setChannelID(channelID()); };
    follow(engine.spectrogramChannelID, this, showChannel);
    followChannels(engine.channelChanges(), this, showChannel);
}

UUID SpectrogramPanelView::channelID() const {
    return engine_.resolvedChannelID(fixedChannelID_.value_or(engine_.spectrogramChannelID()));
}

void SpectrogramPanelView::resizeEvent(QResizeEvent* event) {
    // What the header's size hint counts: the sliders, or their button.
    const int shown = (controls_->isHidden() ? static_cast<QWidget*>(adjustButton_) : controls_)
                          ->sizeHint()
                          .width();
    const int others = header_->row().sizeHint().width() - shown;
    const bool fits = width() >= others + controls_->sizeHint().width();
    controls_->setVisible(fits);
    adjustButton_->setVisible(!fits);
    QWidget::resizeEvent(event);
}

}  // namespace TarvaneApp
