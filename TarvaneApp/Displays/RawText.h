// Texts of the analysis library as the interface shows them.
#pragma once

#include <QString>
#include <string_view>

#include "Core/RawEnum.h"

namespace TarvaneApp {

inline QString utf8Text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

/// The raw value of an enum.
template <class E>
QString rawText(E value) {
    return utf8Text(TarvaneKit::rawValue(value));
}

}  // namespace TarvaneApp
