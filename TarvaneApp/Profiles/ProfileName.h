// What a profile may be called: anything that doesn't consist of white space alone.
#pragma once

#include <QString>
#include <string>

namespace TarvaneApp {

/// Without white space and line breaks at both ends.
inline std::string trimmedProfileName(const std::string& name) {
    return QString::fromStdString(name).trimmed().toStdString();
}

}  // namespace TarvaneApp
