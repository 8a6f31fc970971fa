#include "Settings/Persistence.h"

namespace TarvaneApp {

std::string Persistence::storedName(std::string_view key) {
    return "Tarvane." + std::string(key);
}

}  // namespace TarvaneApp
