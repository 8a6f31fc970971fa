// Ties a live display to the channels that it shows: one refresh after each publication, however
// many channels published and settings changed in between. Main thread.
#pragma once

#include <QObject>
#include <functional>
#include <vector>

#include "Core/UUID.h"

namespace TarvaneApp {

class MeterEngine;

class LiveBinding {
  public:
    /// `refresh` runs from the event loop, as long as `owner` lives.
    LiveBinding(QObject& owner, std::function<void()> refresh);
    ~LiveBinding();
    LiveBinding(const LiveBinding&) = delete;
    LiveBinding& operator=(const LiveBinding&) = delete;

    /// Follows these channels instead of all before.
    void bind(MeterEngine& engine, const std::vector<TarvaneKit::UUID>& channelIDs);
    /// One refresh soon. Until it has run, further calls change nothing.
    void schedule();

  private:
    QObject& owner_;
    const std::function<void()> refresh_;
    std::vector<QMetaObject::Connection> connections_;
    bool isPending_ = false;
};

}  // namespace TarvaneApp
