#include "Shell/Updates/NetworkUpdateFetch.h"

#include <QNetworkReply>
#include <QNetworkRequest>
#include <QTimer>
#include <utility>

#include "Build/Version.h"
#include "Shell/Updates/SecureAddress.h"
#include "Shell/Updates/UpdateOffer.h"

namespace TarvaneApp {

namespace {

constexpr int mostRedirects = 3;
constexpr int statusOK = 200;

QNetworkRequest requestOf(const QUrl& address, const QSslConfiguration& trust) {
    QNetworkRequest request(address);
    request.setSslConfiguration(trust);
    request.setTransferTimeout(
        static_cast<int>(std::chrono::milliseconds(NetworkUpdateFetch::longestWait).count()));
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute,
                         QNetworkRequest::NoLessSafeRedirectPolicy);
    request.setMaximumRedirectsAllowed(mostRedirects);
    // What is asked with the question tells nothing of who asks but which version it is.
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CacheLoadControlAttribute,
                         QNetworkRequest::AlwaysNetwork);
    request.setHeader(QNetworkRequest::UserAgentHeader,
                      QStringLiteral("Tarvane/") + QLatin1String(Build::version));
    return request;
}

UpdateFetch::Answer answerOf(QNetworkReply& reply) {
    if (reply.error() != QNetworkReply::NoError) {
        return {.content = {}, .failure = reply.errorString()};
    }
    if (!isSecureAddress(reply.url())) {
        return {.content = {}, .failure = QStringLiteral("the answer didn't come over TLS")};
    }
    const int status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != statusOK) {
        return {.content = {}, .failure = QStringLiteral("the server says %1").arg(status)};
    }
    return {.content = reply.readAll(), .failure = {}};
}

}  // namespace

NetworkUpdateFetch::NetworkUpdateFetch(const QSslConfiguration& trust) : trust_(trust) {}

void NetworkUpdateFetch::fetch(const QUrl& address, std::function<void(const Answer&)> done) {
    if (!isSecureAddress(address)) {
        QTimer::singleShot(0, this, [done = std::move(done)] {
            done({.content = {}, .failure = QStringLiteral("the address is not one of TLS")});
        });
        return;
    }
    QNetworkReply* reply = network_.get(requestOf(address, trust_));
    constexpr auto most = static_cast<qint64>(UpdateOffer::mostBytes);
    // A server that sends on and on is not listened to.
    reply->setReadBufferSize(most + 1);
    connect(reply, &QNetworkReply::readyRead, this, [reply] {
        if (reply->bytesAvailable() > most) {
            reply->setProperty("isTooLong", true);
            reply->abort();
        }
    });
    connect(reply, &QNetworkReply::finished, this, [reply, done = std::move(done)] {
        reply->deleteLater();
        done(reply->property("isTooLong").toBool()
                 ? Answer{.content = {},
                          .failure = QStringLiteral("the answer is too long for a feed")}
                 : answerOf(*reply));
    });
}

}  // namespace TarvaneApp
