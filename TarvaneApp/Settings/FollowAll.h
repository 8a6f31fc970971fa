// Watching several published fields with one handler.
#pragma once

#include "Settings/Published.h"

namespace TarvaneApp {

/// Calls `handler` now and on every change of any of the fields, as long as `context` lives.
template <class Handler, class... Fields>
void followAll(QObject* context, Handler handler, const Fields&... fields) {
    (QObject::connect(&fields.notifier(), &ChangeNotifier::changed, context, handler), ...);
    handler();
}

}  // namespace TarvaneApp
