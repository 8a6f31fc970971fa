// The raw value of an enum as the interface shows it.
#pragma once

#include <QString>

#include "Core/RawEnum.h"

namespace TarvaneApp {

template <class E>
QString rawText(E value) {
    const std::string_view raw = TarvaneKit::rawValue(value);
    return QString::fromUtf8(raw.data(), static_cast<qsizetype>(raw.size()));
}

}  // namespace TarvaneApp
