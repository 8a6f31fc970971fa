#include "Core/UUID.h"

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/string_generator.hpp>
#include <boost/uuid/uuid_io.hpp>

#include "Core/Contract.h"

namespace TarvaneKit {

namespace {

bool isHexDigit(char c) {
    return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

// The generator below also takes braces and missing hyphens, which no stored identifier has.
bool isCanonical(std::string_view text) {
    if (text.size() != 36) {
        return false;
    }
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isHyphen = i == 8 || i == 13 || i == 18 || i == 23;
        if (isHyphen ? text[i] != '-' : !isHexDigit(text[i])) {
            return false;
        }
    }
    return true;
}

}  // namespace

UUID UUID::random() {
    static thread_local boost::uuids::random_generator generate;
    return UUID(generate());
}

std::optional<UUID> UUID::create(std::string_view text) {
    if (!isCanonical(text)) {
        return std::nullopt;
    }
    return UUID(boost::uuids::string_generator()(text.begin(), text.end()));
}

const UUID& UUID::main() {
    static const UUID id = *create("6A1D0000-0000-4000-8000-000000000001");
    return id;
}

std::string UUID::text() const {
    std::string result = boost::uuids::to_string(value_);
    for (char& c : result) {
        if (c >= 'a' && c <= 'f') {
            c = static_cast<char>(c - 'a' + 'A');
        }
    }
    return result;
}

}  // namespace TarvaneKit
