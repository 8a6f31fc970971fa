#include "Settings/SettingsFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSaveFile>
#include <QSettings>
#include <QTemporaryDir>
#include <algorithm>
#include <cerrno>
#include <chrono>
#include <filesystem>
#include <system_error>

#include "Settings/FileLock.h"

#include <sys/stat.h>
#include <unistd.h>

namespace TarvaneApp {

namespace {

constexpr std::chrono::milliseconds longestWait{5000};
constexpr std::chrono::milliseconds longestWaitInAHurry{300};

QString errorText(int number) {
    return QString::fromStdString(std::generic_category().message(number));
}

SettingsFile::Problem write(const QByteArray& bytes, const QString& path, bool isNew) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        return file.errorString();
    }
    if (isNew) {  // the user's own, as Qt makes such files
        file.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner);
    }
    if (file.write(bytes) != bytes.size() || !file.flush() || !file.commit()) {
        return file.errorString();
    }
    return std::nullopt;
}

SettingsFile::Values valuesOf(const QSettings& file) {
    SettingsFile::Values values;
    for (const QString& key : file.allKeys()) {
        if (!key.isEmpty()) {  // as a damaged line may have it
            values.insert_or_assign(key, file.value(key));
        }
    }
    return values;
}

// A number comes back from the file as its digits.
bool isAsWritten(const SettingsFile::Values& read, const SettingsFile::Values& written) {
    return std::ranges::equal(read, written, [](const auto& a, const auto& b) {
        return a.first == b.first &&
               (a.second == b.second || a.second.toString() == b.second.toString());
    });
}

// Qt alone knows the form of the file, but writes it with a lock of its own, which a crash leaves
// behind and which may then be waited for; and it takes a file that was cut short by a full disk
// for written. So it works on a copy that nobody else sees, and that is read again.
SettingsFile::Problem putInto(QByteArray& bytes, const SettingsFile::Values& changes) {
    const QTemporaryDir folder;
    if (!folder.isValid()) {
        return folder.errorString();
    }
    QFile copy(folder.filePath(QStringLiteral("settings.ini")));
    if (!copy.open(QIODevice::WriteOnly) || copy.write(bytes) != bytes.size() || !copy.flush()) {
        return copy.errorString();
    }
    copy.close();
    SettingsFile::Values wanted;
    {
        QSettings settings(copy.fileName(), QSettings::IniFormat);
        for (const auto& [key, value] : changes) {
            if (value.isValid()) {
                settings.setValue(key, value);
            } else {
                settings.remove(key);
            }
        }
        settings.sync();
        wanted = valuesOf(settings);
    }
    // Under its old name Qt would remember the content.
    if (!copy.rename(folder.filePath(QStringLiteral("written.ini"))) ||
        !copy.open(QIODevice::ReadOnly)) {
        return copy.errorString();
    }
    bytes = copy.readAll();
    if (!isAsWritten(valuesOf(QSettings(copy.fileName(), QSettings::IniFormat)), wanted)) {
        return QStringLiteral("there is no room in %1").arg(QDir::tempPath());
    }
    return std::nullopt;
}

}  // namespace

SettingsFile::Problem SettingsFile::whyUnreadable() const {
    const QByteArray name = QFile::encodeName(path_);
    struct stat status {};
    if (stat(name.constData(), &status) != 0) {
        return errno == ENOENT ? Problem() : errorText(errno);
    }
    if (!S_ISREG(status.st_mode)) {
        return QStringLiteral("it isn't a regular file");
    }
    return access(name.constData(), R_OK) == 0 ? Problem() : errorText(errno);
}

SettingsFile::Content SettingsFile::read() const {
    Content content;
    content.problem = whyUnreadable();
    if (content.problem) {
        return content;
    }
    content.values = valuesOf(QSettings(path_, QSettings::IniFormat));
    return content;
}

SettingsFile::Problem SettingsFile::write(const Values& changes,
                                          const std::atomic<bool>& hurries) const {
    std::error_code error;
    std::filesystem::create_directories(QFileInfo(path_).filesystemAbsolutePath(), error);
    if (error) {
        return QString::fromStdString(error.message());
    }
    const FileLock lock(path_ + QStringLiteral(".lock"), [&](std::chrono::milliseconds waited) {
        return waited < (hurries ? longestWaitInAHurry : longestWait);
    });
    if (Problem problem = whyUnreadable()) {
        return problem;
    }
    QFile file(path_);
    const bool isNew = !file.exists();
    if (!isNew && !file.open(QIODevice::ReadOnly)) {
        return file.errorString();
    }
    QByteArray bytes = isNew ? QByteArray() : file.readAll();
    if (file.error() != QFileDevice::NoError) {
        return file.errorString();
    }
    file.close();
    if (Problem problem = putInto(bytes, changes)) {
        return problem;
    }
    return TarvaneApp::write(bytes, path_, isNew);
}

}  // namespace TarvaneApp
