#include "Profiles/SettingsProfile.h"

#include "Core/JSONValue.h"
#include "Core/TextFile.h"

namespace TarvaneApp {

using TarvaneKit::DateForm;
using TarvaneKit::JSONValue;

std::optional<SettingsProfile> SettingsProfile::fromText(std::string_view text) {
    return TarvaneKit::decode<SettingsProfile>(text, DateForm::iso8601);
}

std::optional<SettingsProfile> SettingsProfile::read(const std::filesystem::path& file) {
    try {
        return fromText(TarvaneKit::readTextFile(file, largestFileBytes));
    } catch (const TarvaneKit::TextFileError&) {
        return std::nullopt;
    }
}

std::optional<std::string> SettingsProfile::text() const {
    auto text = TarvaneKit::encodeJSON(*this, DateForm::iso8601).write(JSONValue::Layout::document);
    if (text) {
        text->push_back('\n');
    }
    return text && text->size() <= largestFileBytes ? text : std::nullopt;
}

}  // namespace TarvaneApp
