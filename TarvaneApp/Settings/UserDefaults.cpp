#include "Settings/UserDefaults.h"

#include <QStandardPaths>

namespace TarvaneApp {

namespace {

QString name(std::string_view key) {
    return QString::fromUtf8(key.data(), static_cast<qsizetype>(key.size()));
}

}  // namespace

UserDefaults::UserDefaults()
    : UserDefaults(QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                   QStringLiteral("/Tarvane/Tarvane.ini")) {}

UserDefaults::UserDefaults(const QString& path, std::chrono::milliseconds retryInterval)
    : file_(path) {
    SettingsFile::Content content = file_.read();
    values_ = std::move(content.values);
    if (content.problem) {
        saveFailure_.set(sentence(*content.problem));
    }
    retry_.setSingleShot(true);
    retry_.setInterval(retryInterval);
    QObject::connect(&retry_, &QTimer::timeout, &retry_, [this] { order(); });
    writer_.emplace("org.brenlow.tarvane.settings");
}

UserDefaults::~UserDefaults() {
    ends_ = true;
    synchronize();
    writer_.reset();
    write();  // no window is left to tell a problem in
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
    order();
}

void UserDefaults::order() {
    writer_->post([this] {
        const SettingsFile::Problem problem = write();
        QMetaObject::invokeMethod(&retry_, [this, problem] { written(problem); });
    });
}

// All that waits goes in one write: of a dragged slider's values the disk sees as many as it can.
SettingsFile::Problem UserDefaults::write() {
    Values values;
    {
        const std::lock_guard hold(lock_);
        values.swap(waiting_);
    }
    if (values.empty()) {
        return std::nullopt;
    }
    SettingsFile::Problem problem = file_.write(values, ends_);
    if (problem) {
        const std::lock_guard hold(lock_);
        waiting_.merge(values);  // what was set meanwhile is newer
    }
    return problem;
}

// Told once, until a write has worked.
void UserDefaults::written(const SettingsFile::Problem& problem) {
    if (!problem) {
        retry_.stop();
        if (saveFailure_()) {
            saveFailure_.set(std::nullopt);
        }
        return;
    }
    retry_.start();
    if (!saveFailure_()) {
        saveFailure_.set(sentence(*problem));
    }
}

std::string UserDefaults::sentence(const QString& problem) const {
    return QStringLiteral(
               "Tarvane couldn't save its settings to %1: %2. They are kept while the program "
               "runs, and saving is tried again.")
        .arg(file_.path(), problem)
        .toStdString();
}

}  // namespace TarvaneApp
