// A named copy of the whole working setup, as one JSON file that people may carry from machine to
// machine. A file may be anybody's: what isn't a profile from its first byte to its last is none.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

#include "Core/Coding.h"
#include "Core/Date.h"
#include "Records/SettingsSnapshot.h"

namespace TarvaneApp {

struct SettingsProfile {
    static constexpr std::int64_t currentFormat = 1;
    /// Room for a thousand channels with a microphone file each. A text that says nothing but
    /// brackets takes thirty times its length in memory.
    static constexpr std::size_t largestFileBytes = 16'000'000;

    /// Kept as it is read: a later program's files are told from ours, and not turned down.
    std::int64_t format = currentFormat;
    std::string name;
    TarvaneKit::Date savedAt;
    SettingsSnapshot settings;

    /// Empty for a text that is no profile.
    static std::optional<SettingsProfile> fromText(std::string_view text);
    /// Empty for a file that can't be read as well.
    static std::optional<SettingsProfile> read(const std::filesystem::path& file);

    /// Indented, its keys in order, and the same for the same profile whoever writes it, so that
    /// two can be compared. Empty when a number is not finite, a text is not UTF-8, or the text
    /// would be larger than what is read.
    std::optional<std::string> text() const;

    bool operator==(const SettingsProfile&) const = default;
};

}  // namespace TarvaneApp

template <>
struct TarvaneKit::Coding<TarvaneApp::SettingsProfile> {
    using Record = TarvaneApp::SettingsProfile;
    static constexpr auto keys = std::tuple{
        required("format", &Record::format),
        required("name", &Record::name),
        required("savedAt", &Record::savedAt),
        required("settings", &Record::settings),
    };
};
