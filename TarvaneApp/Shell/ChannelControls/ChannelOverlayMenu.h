// Which other channels are drawn over a panel's own. Hidden while there is no other channel.
#pragma once

#include <QString>
#include <optional>
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

    /// The panel's own channel, which can't be an overlay.
    void setBaseChannelID(const TarvaneKit::UUID& id);

  protected:
    /// `overlays` is one of the engine's settings.
    ChannelOverlayMenu(MeterEngine& engine, Setting<IDs>& overlays, const QString& help,
                       const TarvaneKit::UUID& baseChannelID, QWidget* parent);

    /// Adds a check item for each channel that can be an overlay.
    virtual void fill(QMenu& menu);
    /// Why the graph doesn't draw that channel over the panel's own; absent where it does.
    virtual std::optional<QString> whyNot(const TarvaneKit::UUID& base,
                                          const TarvaneKit::UUID& overlay) const = 0;

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
