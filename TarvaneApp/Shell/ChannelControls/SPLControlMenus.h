// What a channel's level meter measures, as one menu for each choice: for a window that has no
// room for the rows of buttons.
#pragma once

#include <QWidget>

#include "Core/UUID.h"
#include "Records/ChannelDisplaySettings.h"

namespace TarvaneApp {

class ElidedLabel;
class MenuButton;
class MeterEngine;

class SPLControlMenus final : public QWidget {
    Q_OBJECT
  public:
    SPLControlMenus(MeterEngine& engine, const TarvaneKit::UUID& channelID,
                    QWidget* parent = nullptr);

    void setChannelID(const TarvaneKit::UUID& channelID);

  private:
    template <class E>
    void offer(MenuButton& menu, E ChannelDisplaySettings::*field);
    void showDisplay();

    MeterEngine& engine_;
    TarvaneKit::UUID channelID_;
    MenuButton* mode_;
    MenuButton* weighting_;
    MenuButton* timeWeighting_;
    ElidedLabel* leqNote_;
};

}  // namespace TarvaneApp
