#include "Core/TextFile.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

namespace TarvaneKit {

namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

bool isContinuation(unsigned char byte) {
    return (byte & 0xC0U) == 0x80U;
}

// Length of the encoded character at the text's head, 0 when there is none. RFC 3629, 4: the
// lead byte fixes the length, and four leads narrow the range of the second byte.
std::size_t characterLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned char lead = byte(0);
    if (lead < 0x80U) {
        return 1;
    }
    if (lead < 0xC2U || lead > 0xF4U) {
        return 0;
    }
    const std::size_t length = lead < 0xE0U ? 2 : lead < 0xF0U ? 3 : 4;
    if (text.size() < length) {
        return 0;
    }
    for (std::size_t i = 1; i < length; ++i) {
        if (!isContinuation(byte(i))) {
            return 0;
        }
    }
    const unsigned char second = byte(1);
    const bool isOverlong = (lead == 0xE0U && second < 0xA0U) || (lead == 0xF0U && second < 0x90U);
    const bool isSurrogate = lead == 0xEDU && second >= 0xA0U;
    const bool isBeyondUnicode = lead == 0xF4U && second >= 0x90U;
    return isOverlong || isSurrogate || isBeyondUnicode ? 0 : length;
}

class File {
  public:
    explicit File(const std::filesystem::path& path)
        // Without O_NONBLOCK the opening of a pipe waits for its writer.
        : descriptor_(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)) {}
    ~File() {
        if (isOpen()) {
            close(descriptor_);
        }
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    bool isOpen() const { return descriptor_ >= 0; }
    bool isRegular() const {
        struct stat status {};
        return fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode);
    }

    /// Up to `maxBytes`; empty on a failure, which `errno` names.
    std::optional<std::string> read(std::size_t maxBytes) const {
        constexpr std::size_t pieceBytes = 65536;
        std::string bytes;
        while (bytes.size() < maxBytes) {
            const std::size_t size = bytes.size();
            bytes.resize(size + std::min(pieceBytes, maxBytes - size));
            const ssize_t count = ::read(descriptor_, bytes.data() + size, bytes.size() - size);
            if (count < 0 && errno != EINTR) {
                return std::nullopt;
            }
            bytes.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
            if (count == 0) {
                break;
            }
        }
        return bytes;
    }

  private:
    int descriptor_;
};

TextFileError unreadable(const std::string& name, const std::string& reason) {
    return {TextFileError::Kind::unreadable,
            fmt::format("The file “{}” couldn't be read: {}.", name, reason)};
}

TextFileError unreadable(const std::string& name, int error) {
    return unreadable(name, std::generic_category().message(error));
}

}  // namespace

std::optional<std::string> utf8Text(std::string bytes) {
    std::string_view rest = bytes;
    while (!rest.empty()) {
        const std::size_t length = characterLength(rest);
        if (length == 0) {
            return std::nullopt;
        }
        rest.remove_prefix(length);
    }
    if (bytes.starts_with(byteOrderMark)) {
        bytes.erase(0, byteOrderMark.size());
    }
    return bytes;
}

std::string readTextFile(const std::filesystem::path& path, std::size_t maxBytes) {
    const std::string name = path.filename().string();
    const File file(path);
    if (!file.isOpen()) {
        throw unreadable(name, errno);
    }
    if (!file.isRegular()) {
        throw unreadable(name, "it isn't a regular file");
    }
    auto bytes = file.read(maxBytes + 1);
    if (!bytes) {
        throw unreadable(name, errno);
    }
    if (bytes->size() > maxBytes) {
        throw TextFileError(
            TextFileError::Kind::tooLarge,
            fmt::format("The file “{}” is too large: text files of up to {} MB can be read.", name,
                        maxBytes / 1'000'000));
    }
    auto text = utf8Text(*std::move(bytes));
    if (!text) {
        throw TextFileError(
            TextFileError::Kind::notUTF8,
            fmt::format("The file “{}” couldn't be read because it isn't UTF-8 text.", name));
    }
    return *std::move(text);
}

}  // namespace TarvaneKit
