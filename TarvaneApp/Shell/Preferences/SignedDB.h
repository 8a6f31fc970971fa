// How the forms write a difference of levels.
#pragma once

#include <QString>

namespace TarvaneApp {

/// "+1.5 dB".
inline QString signedDB(double differenceDB) {
    return QString::asprintf("%+.1f dB", differenceDB);
}

}  // namespace TarvaneApp
