#include "Profiles/ProfileFolder.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include <QChar>
#include <QCollator>
#include <QFile>
#include <QLocale>
#include <QSaveFile>
#include <QString>
#include <QStringView>
#include <algorithm>
#include <cerrno>
#include <climits>
#include <string_view>
#include <system_error>

#include "Profiles/ProfileName.h"

namespace TarvaneApp {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view extension = ".json";

// What QSaveFile puts behind a file's name while it writes.
constexpr std::size_t temporaryEnding = std::string_view(".XXXXXX").size();
constexpr std::size_t longestFileName = NAME_MAX - temporaryEnding;

// Those that some system gives a meaning in a path, since a file may be carried there.
bool isKeptOutOfFileNames(QChar character) {
    return QStringView(u"/\\:?%*|\"<>").contains(character) ||
           character.category() == QChar::Other_Control;
}

// Shortened by whole characters to what fits with that ending.
std::string shortened(const QString& text, std::size_t endingBytes) {
    std::string bytes = text.toStdString();
    std::size_t length = std::min(bytes.size(), longestFileName - endingBytes);
    const auto isInsideCharacter = [&](std::size_t at) {
        return at < bytes.size() && (static_cast<unsigned char>(bytes[at]) & 0xC0U) == 0x80U;
    };
    while (isInsideCharacter(length)) {
        --length;
    }
    bytes.resize(length);
    return bytes;
}

QString stem(const std::string& profileName) {
    QString result = QString::fromStdString(profileName);
    std::replace_if(result.begin(), result.end(), isKeptOutOfFileNames, QLatin1Char('-'));
    if (result.startsWith(QLatin1Char('.'))) {  // which hides a file
        result.prepend(QLatin1Char('_'));
    }
    return result.isEmpty() ? QStringLiteral("Profile") : result;
}

std::string fileNameWith(const std::string& profileName, const std::string& ending) {
    return shortened(stem(profileName), ending.size()) + ending;
}

// A language's own order, with numbers by their value. The locale "C" has no language and knows
// nothing but codes.
QCollator naturalOrder() {
    const QLocale locale = QLocale().collation();
    QCollator order(locale.language() == QLocale::C ? QLocale(QLocale::English) : locale);
    order.setNumericMode(true);
    return order;
}

// To the disk itself, with the error's number where that fails: Qt has no words for a disk that is
// full in the middle of a file, and passes over one that fails at the end.
int writeAll(std::string_view bytes, int descriptor) {
    while (!bytes.empty()) {
        const ssize_t count = write(descriptor, bytes.data(), bytes.size());
        if (count < 0 && errno != EINTR) {
            return errno;
        }
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    }
    return fsync(descriptor) == 0 ? 0 : errno;
}

// The file is there to stay once its entry in the folder is.
void synchronize(const fs::path& folder) {
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        fsync(descriptor);
        close(descriptor);
    }
}

}  // namespace

std::vector<fs::path> ProfileFolder::files() const {
    std::vector<fs::path> files;
    std::error_code error;
    for (fs::directory_iterator entry(path_, error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().extension() == extension) {
            files.push_back(entry->path());
        }
    }
    std::ranges::sort(files);
    return files;
}

ProfileFolder::Content ProfileFolder::read(const std::vector<fs::path>& files) {
    Content content;
    for (const fs::path& file : files) {
        auto profile = SettingsProfile::read(file);
        if (profile && !trimmedProfileName(profile->name).empty() &&
            content.fileURLs.try_emplace(profile->name, file).second) {
            content.profiles.push_back(*std::move(profile));
        }
    }
    std::ranges::stable_sort(content.profiles, [order = naturalOrder()](const auto& a,
                                                                        const auto& b) {
        return order.compare(QString::fromStdString(a.name), QString::fromStdString(b.name)) < 0;
    });
    return content;
}

ProfileFolder::Problem ProfileFolder::create() const {
    std::error_code error;
    fs::create_directories(path_, error);
    return error ? Problem(error.message()) : std::nullopt;
}

fs::path ProfileFolder::newFileURL(const std::string& name) const {
    fs::path candidate = path_ / fileName(name);
    std::error_code error;
    for (int number = 2; fs::exists(fs::symlink_status(candidate, error)); ++number) {
        candidate = path_ / fileNameWith(name, fmt::format(" {}{}", number, extension));
    }
    return candidate;
}

std::string ProfileFolder::fileName(const std::string& profileName) {
    return fileNameWith(profileName, std::string(extension));
}

ProfileFolder::Problem ProfileFolder::write(const SettingsProfile& profile, const fs::path& file) {
    const auto text = profile.text();
    if (!text) {
        return fmt::format("the settings have no form in a file of at most {} MB",
                           SettingsProfile::largestFileBytes / 1'000'000);
    }
    QSaveFile saved(QFile::decodeName(file.c_str()));
    if (!saved.open(QIODevice::WriteOnly)) {
        return saved.errorString().toStdString();
    }
    if (const int error = writeAll(*text, saved.handle()); error != 0) {
        saved.cancelWriting();
        return std::generic_category().message(error);
    }
    if (!saved.commit()) {
        return saved.errorString().toStdString();
    }
    synchronize(file.parent_path());
    return std::nullopt;
}

}  // namespace TarvaneApp
