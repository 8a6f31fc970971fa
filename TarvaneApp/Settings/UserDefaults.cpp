#include "Settings/UserDefaults.h"

#include <QSettings>

namespace TarvaneApp {

namespace {

QString name(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

}  // namespace

UserDefaults::UserDefaults()
    : UserDefaults(
          QSettings(QSettings::IniFormat, QSettings::UserScope, "Tarvane", "Tarvane").fileName()) {}

UserDefaults::UserDefaults(const QString& path) : path_(path) {
    const QSettings file(path_, QSettings::IniFormat);
    for (const QString& key : file.allKeys()) {
        if (!key.isEmpty()) {  // as a damaged line may have it
            values_.insert_or_assign(key, file.value(key));
        }
    }
    writer_.emplace("org.brenlow.tarvane.settings");
}

UserDefaults::~UserDefaults() {
    synchronize();
    writer_.reset();
    write();
}

QVariant UserDefaults::stored(std::string_view key) const {
    const auto found = values_.find(name(key));
    return found != values_.end() ? found->second : QVariant();
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
    set(key, QString::fromStdString(value));
}

void UserDefaults::setNumber(std::string_view key, double value) {
    set(key, value);
}

void UserDefaults::setData(std::string_view key, const std::string& bytes) {
    set(key, QByteArray::fromStdString(bytes));
}

void UserDefaults::remove(std::string_view key) {
    set(key, QVariant());
}

void UserDefaults::set(std::string_view key, const QVariant& value) {
    QVariant& current = values_[name(key)];
    if (current != value) {
        current = value;
        changes_.insert_or_assign(name(key), value);
    }
}

void UserDefaults::synchronize() {
    if (changes_.empty()) {
        return;
    }
    {
        const std::lock_guard hold(lock_);
        for (auto& [key, value] : changes_) {
            waiting_.insert_or_assign(key, std::move(value));
        }
    }
    changes_.clear();
    writer_->post([this] { write(); });
}

// All that waits goes in one write: of a dragged slider's values the disk sees as many as it can.
// Qt exchanges the file for the new one when that is whole.
void UserDefaults::write() {
    Values values;
    {
        const std::lock_guard hold(lock_);
        values.swap(waiting_);
    }
    if (values.empty()) {
        return;
    }
    QSettings file(path_, QSettings::IniFormat);
    for (const auto& [key, value] : values) {
        if (value.isValid()) {
            file.setValue(key, value);
        } else {
            file.remove(key);
        }
    }
    file.sync();
}

}  // namespace TarvaneApp
