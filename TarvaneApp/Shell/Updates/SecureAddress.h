// Which addresses are asked, and opened, for updates.
#pragma once

#include <QString>
#include <QUrl>

namespace TarvaneApp {

/// Over TLS, of a named host, and without a user's name or password, which are there to mislead.
inline bool isSecureAddress(const QUrl& address) {
    return address.isValid() && address.scheme() == QStringLiteral("https") &&
           !address.host().isEmpty() && address.userInfo().isEmpty();
}

}  // namespace TarvaneApp
