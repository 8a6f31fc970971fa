#include "Shell/Preferences/DeviceTitles.h"

#include <algorithm>
#include <cstddef>
#include <string_view>

namespace TarvaneApp {

using TarvaneKit::AudioInputDevice;

namespace {

constexpr std::string_view separators = "._-:#@ ";

bool isSeparator(char c) {
    return separators.find(c) != std::string_view::npos;
}

std::size_t commonLength(std::string_view a, std::string_view b) {
    return static_cast<std::size_t>(std::ranges::mismatch(a, b).in1 - a.begin());
}

std::string reversed(std::string_view text) {
    return {text.rbegin(), text.rend()};
}

// How many characters all uids begin with, as far as a word's end.
std::size_t commonWords(const std::vector<std::string>& uids) {
    std::size_t length = uids.front().size();
    for (const std::string& uid : uids) {
        length = std::min(length, commonLength(uids.front(), uid));
    }
    const auto endsAWord = [&](std::size_t end) {
        return std::ranges::all_of(uids, [end](const std::string& uid) {
            return end == uid.size() || isSeparator(uid[end]);
        });
    };
    while (length > 0 && !endsAWord(length)) {
        --length;
    }
    return length;
}

std::string_view withoutSeparatorsAround(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(separators);
    return begin == std::string_view::npos
               ? std::string_view()
               : text.substr(begin, text.find_last_not_of(separators) - begin + 1);
}

// What is left of each uid without the words that all begin and end with.
std::vector<std::string> distinctions(std::vector<std::string> uids) {
    for (int end = 0; end < 2; ++end) {
        const std::size_t common = commonWords(uids);
        for (std::string& uid : uids) {
            uid = reversed(std::string_view(uid).substr(common));
        }
    }
    for (std::string& uid : uids) {
        uid = withoutSeparatorsAround(uid);
    }
    return uids;
}

bool areDifferent(std::vector<std::string> texts) {
    std::ranges::sort(texts);
    return std::ranges::adjacent_find(texts) == texts.end();
}

}  // namespace

std::vector<std::string> deviceTitles(const std::vector<AudioInputDevice>& devices) {
    std::vector<std::string> titles;
    for (const AudioInputDevice& device : devices) {
        std::vector<std::string> uids;
        std::size_t own = 0;
        for (const AudioInputDevice& other : devices) {
            if (other.name == device.name) {
                own = &other == &device ? uids.size() : own;
                uids.push_back(other.uid);
            }
        }
        std::string distinction;
        if (uids.size() > 1) {
            const auto words = distinctions(uids);
            distinction = (areDifferent(words) ? words : uids)[own];
        }
        titles.push_back(distinction.empty() ? device.name
                                             : device.name + " (" + distinction + ")");
    }
    return titles;
}

}  // namespace TarvaneApp
