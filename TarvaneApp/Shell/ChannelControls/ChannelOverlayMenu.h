// Which other channels lie over a panel's own. Not there while there is no other channel.
#pragma once

#include <vector>

#include "Core/UUID.h"
#include "Shell/Controls/IconMenuButton.h"

namespace TarvaneApp {

class MeterEngine;
template <class T>
class Setting;

class ChannelOverlayMenu : public IconMenuButton {
    Q_OBJECT
  public:
    using IDs = std::vector<TarvaneKit::UUID>;

    /// The channel under the overlays, which is no overlay itself.
    void setBaseChannelID(const TarvaneKit::UUID& id);

  protected:
    /// `overlays` is one of the engine's settings.
    ChannelOverlayMenu(MeterEngine& engine, Setting<IDs>& overlays, const QString& help,
                       const TarvaneKit::UUID& baseChannelID, QWidget* parent);

    /// Adds a check item for each channel that can lie over the base.
    virtual void fill(QMenu& menu);

    MeterEngine& engine_;
    Setting<IDs>& overlays_;

  private:
    struct Choice;
    std::vector<Choice> choices() const;
    void toggle(const TarvaneKit::UUID& id);
    void showState();

    TarvaneKit::UUID baseChannelID_;
};

}  // namespace TarvaneApp
