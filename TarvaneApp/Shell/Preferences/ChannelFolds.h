// Which channels of the audio form are unfolded, by channel. It belongs to this machine's form and
// is no setting of the engine, so it has a key of its own in the store. Main thread only.
#pragma once

#include <map>

#include "Core/UUID.h"

namespace TarvaneApp {

class KeyValueStore;

class ChannelFolds {
  public:
    /// The store outlives this.
    explicit ChannelFolds(KeyValueStore& store);

    /// Until the user folds one, the main input is unfolded and no other channel.
    bool isExpanded(const TarvaneKit::UUID& channelID) const;
    void setExpanded(const TarvaneKit::UUID& channelID, bool isExpanded);
    /// The channel is gone.
    void forget(const TarvaneKit::UUID& channelID);

  private:
    void save();

    KeyValueStore& store_;
    std::map<TarvaneKit::UUID, bool> expanded_;
};

}  // namespace TarvaneApp
