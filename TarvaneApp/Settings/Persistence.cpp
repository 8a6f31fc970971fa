#include "Settings/Persistence.h"

namespace TarvaneApp {

std::string Persistence::storedName(Key key) {
    return "Tarvane." + std::string(TarvaneKit::rawValue(key));
}

}  // namespace TarvaneApp
