#include "Clock.h"

namespace TarvaneApp {

TarvaneKit::Date SystemClock::now() const {
    return std::chrono::system_clock::now();
}

}  // namespace TarvaneApp
