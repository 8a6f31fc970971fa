// How the answer of a feed is had. Main thread.
#pragma once

#include <QByteArray>
#include <QString>
#include <functional>

class QUrl;

namespace TarvaneApp {

class UpdateFetch {
  public:
    virtual ~UpdateFetch() = default;

    struct Answer {
        QByteArray content;
        /// Why there is none; empty where there is.
        QString failure;
    };
    /// Answers once, from the event loop, unless this has gone before.
    virtual void fetch(const QUrl& address, std::function<void(const Answer&)> done) = 0;
};

}  // namespace TarvaneApp
