// Preferences, Audio: the main input and every extra channel, each with its source, its display,
// its gain and its calibration.
#pragma once

#include <vector>

#include "Shell/Forms/Form.h"
#include "Shell/Preferences/ChannelFolds.h"
#include "Shell/Preferences/ChannelSection.h"

class QVBoxLayout;

namespace TarvaneApp {

class KeyValueStore;

class AudioSettingsView final : public Form {
    Q_OBJECT
  public:
    AudioSettingsView(const ChannelSection::Environment& environment, KeyValueStore& store,
                      QWidget* parent = nullptr);

  private:
    void showChannels();
    ChannelSection& makeSection(const TarvaneKit::UUID& id);
    void addChannel();

    const ChannelSection::Environment environment_;
    ChannelFolds folds_;
    QVBoxLayout* column_;
    QWidget* addButton_;
    std::vector<ChannelSection*> sections_;  // in the channels' order
};

}  // namespace TarvaneApp
