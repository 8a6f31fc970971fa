#include "UserDefaults.h"

namespace TarvaneApp {

namespace {

QString name(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

}  // namespace

UserDefaults::UserDefaults()
    : settings_(QSettings::IniFormat, QSettings::UserScope, "Tarvane", "Tarvane") {}

UserDefaults::UserDefaults(const QString& path) : settings_(path, QSettings::IniFormat) {}

QVariant UserDefaults::stored(std::string_view key) const {
    return settings_.value(name(key));
}

std::optional<std::string> UserDefaults::text(std::string_view key) const {
    const QVariant value = stored(key);
    // An INI file gives numbers back as text, so a number can't be told from its digits here.
    if (value.typeId() != QMetaType::QString) {
        return std::nullopt;
    }
    return value.toString().toStdString();
}

std::optional<double> UserDefaults::number(std::string_view key) const {
    const QVariant value = stored(key);
    if (value.typeId() != QMetaType::Double && value.typeId() != QMetaType::QString) {
        return std::nullopt;
    }
    bool isNumber = false;
    const double number = value.toDouble(&isNumber);
    return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<std::string> UserDefaults::data(std::string_view key) const {
    const QVariant value = stored(key);
    if (value.typeId() != QMetaType::QByteArray) {
        return std::nullopt;
    }
    return value.toByteArray().toStdString();
}

void UserDefaults::setText(std::string_view key, const std::string& value) {
    settings_.setValue(name(key), QString::fromStdString(value));
}

void UserDefaults::setNumber(std::string_view key, double value) {
    settings_.setValue(name(key), value);
}

void UserDefaults::setData(std::string_view key, const std::string& bytes) {
    settings_.setValue(name(key), QByteArray::fromStdString(bytes));
}

void UserDefaults::remove(std::string_view key) {
    settings_.remove(name(key));
}

void UserDefaults::synchronize() {
    settings_.sync();
}

}  // namespace TarvaneApp
