// Preferences, Display: what the meter's place shows, and the colours of the spectrograms with the
// ramps that the user keeps.
#pragma once

#include <cstddef>
#include <functional>
#include <vector>

#include "Records/SpectrogramRanges.h"
#include "Shell/Forms/Form.h"
#include "Shell/Forms/FormList.h"
#include "Shell/Forms/NumberScale.h"

namespace TarvaneApp {

class MeterEngine;
struct SpectrogramColorStop;
struct TextFieldStore;

class DisplaySettingsView final : public Form {
    Q_OBJECT
  public:
    /// `texts` outlives the form.
    DisplaySettingsView(MeterEngine& engine, TextFieldStore& texts, QWidget* parent = nullptr);

  private:
    void addMeter();
    void addRamp();
    void addPresets();
    FormList::Item makeStop(std::size_t place, QWidget* parent);
    FormList::Item makePreset(std::size_t place, QWidget* parent);
    void orderStops();
    void editStop(std::size_t place, const std::function<void(SpectrogramColorStop&)>& edit);
    void savePreset();

    /// Of the channel whose spectrogram the main window shows.
    SpectrogramRange range() const;
    NumberScale levels() const;

    MeterEngine& engine_;
    TextFieldStore& texts_;
    QWidget* stopRows_ = nullptr;
    /// By row, which of the stored stops it shows.
    std::vector<std::size_t> stopOfRow_;
};

}  // namespace TarvaneApp
