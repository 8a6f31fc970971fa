// A feed over the network: by TLS alone, from a server whose certificate holds, also where it sends
// us elsewhere, and no more of it than a feed can be. That is all that speaks for the answer; it
// carries no signature of its own. Main thread.
#pragma once

#include <QNetworkAccessManager>
#include <QObject>
#include <QSslConfiguration>
#include <chrono>

#include "Shell/Updates/UpdateFetch.h"

namespace TarvaneApp {

class NetworkUpdateFetch final : public QObject, public UpdateFetch {
    Q_OBJECT
  public:
    /// `trust` says which certificates hold: by default those that the system trusts.
    explicit NetworkUpdateFetch(
        const QSslConfiguration& trust = QSslConfiguration::defaultConfiguration());

    static constexpr std::chrono::seconds longestWait{20};

    void fetch(const QUrl& address, std::function<void(const Answer&)> done) override;

  private:
    const QSslConfiguration trust_;
    QNetworkAccessManager network_;
};

}  // namespace TarvaneApp
