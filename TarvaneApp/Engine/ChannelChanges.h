// One signal for "something about this channel is another": what it is, how it is shown, what feeds
// it, whether it runs. Displays of a channel follow this, and no list of the settings, gains and
// states that they happen to depend on. Its readings come with LiveMeterData's own signal.
//
// Sent by the engine after the change and its effects. Main thread only.
#pragma once

#include <QObject>
#include <optional>
#include <utility>

#include "Core/UUID.h"

namespace TarvaneApp {

class ChannelChanges : public QObject {
    Q_OBJECT
  Q_SIGNALS:
    /// Absent: any of them.
    void changed(const std::optional<TarvaneKit::UUID>& channelID);
};

/// Calls `handler` now and on every change of any channel, as long as `context` lives.
template <class Handler>
void followChannels(const ChannelChanges& changes, QObject* context, Handler handler) {
    QObject::connect(&changes, &ChannelChanges::changed, context, [handler] { handler(); });
    handler();
}

/// The same for the changes of channels that `shows` says yes to.
template <class Shows, class Handler>
void followChannels(const ChannelChanges& changes, QObject* context, Shows shows, Handler handler) {
    QObject::connect(&changes, &ChannelChanges::changed, context,
                     [shows, handler](const std::optional<TarvaneKit::UUID>& id) {
                         if (!id || shows(*id)) {
                             handler();
                         }
                     });
    handler();
}

}  // namespace TarvaneApp
