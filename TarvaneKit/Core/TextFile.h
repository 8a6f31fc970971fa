// Text files as the program reads them: UTF-8, whole, of a known largest size. A file chosen by
// mistake (a device, a disk image, a recording) ends in a sentence for the user, not in a wait.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace TarvaneKit {

/// `what()` is the finished sentence for the user.
class TextFileError : public std::runtime_error {
  public:
    enum class Kind {
        unreadable,  ///< missing, not permitted, no regular file, or a failing disk
        tooLarge,
        notUTF8,
    };

    TextFileError(Kind kind, const std::string& description)
        : std::runtime_error(description), kind_(kind) {}

    Kind kind() const { return kind_; }

  private:
    Kind kind_;
};

/// The bytes as text, without a byte order mark at their head. Empty when they are not UTF-8
/// (RFC 3629: no surrogates, no overlong forms, nothing above U+10FFFF).
std::optional<std::string> utf8Text(std::string bytes);

/// The whole file as `utf8Text`. Throws a `TextFileError`, for more than `maxBytes` too, and
/// never waits for a writer as the read of a pipe would.
std::string readTextFile(const std::filesystem::path& path, std::size_t maxBytes);

}  // namespace TarvaneKit
