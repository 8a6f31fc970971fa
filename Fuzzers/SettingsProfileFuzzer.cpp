// Any bytes as the file of a profile: a profile or none, and a profile's text is one that comes
// back the same and stays as it is from then on.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include "Core/Contract.h"
#include "Profiles/SettingsProfile.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using TarvaneApp::SettingsProfile;
    const auto profile =
        SettingsProfile::fromText(std::string_view(reinterpret_cast<const char*>(data), size));
    if (!profile) {
        return 0;
    }
    const auto text = profile->text();
    TARVANE_PRECONDITION(text.has_value());
    const auto back = SettingsProfile::fromText(*text);
    TARVANE_PRECONDITION(back == profile);
    TARVANE_PRECONDITION(back->text() == text);
    return 0;
}
