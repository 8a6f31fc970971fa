// A setting of the main input that is one field of a channel's display settings.
//
// Declaring it is a line that names the field. The field's default is the setting's, and whatever
// goes over all display settings (reading them as one record, assigning one) goes over the list
// that the line enters itself in.
#pragma once

#include <string_view>
#include <vector>

#include "Records/ChannelDisplaySettings.h"
#include "Settings/Setting.h"

namespace TarvaneApp {

class DisplaySettingBase {
  public:
    virtual ~DisplaySettingBase() = default;
    virtual void read(ChannelDisplaySettings& into) const = 0;
    /// Sets the setting if the record's value is another one.
    virtual void assign(const ChannelDisplaySettings& from) = 0;
};

/// In the order of their declaration.
struct DisplaySettings {
    SettingsRegistry& registry;
    std::vector<DisplaySettingBase*> list;
};

template <class T>
class DisplaySetting final : public Setting<T>, public DisplaySettingBase {
  public:
    using Field = T ChannelDisplaySettings::*;

    DisplaySetting(DisplaySettings& settings, std::string_view key, Field field)
        : Setting<T>(settings.registry, key, ChannelDisplaySettings{}.*field), field_(field) {
        settings.list.push_back(this);
    }

    /// The field of a channel with display settings of its own; null is one that follows the main
    /// input.
    const T& of(const ChannelDisplaySettings* own) const {
        return own != nullptr ? own->*field_ : (*this)();
    }

    void read(ChannelDisplaySettings& into) const override { into.*field_ = (*this)(); }
    void assign(const ChannelDisplaySettings& from) override {
        if (from.*field_ != (*this)()) {
            this->set(from.*field_);
        }
    }

  private:
    const Field field_;
};

}  // namespace TarvaneApp
