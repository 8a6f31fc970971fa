// A channel in the audio form: folded, its colour, name and input; unfolded, everything about it.
#pragma once

#include <functional>

#include "Core/UUID.h"
#include "Shell/Forms/FoldingGroup.h"
#include "Shell/Preferences/ChannelValues.h"

namespace TarvaneApp {

class ChannelColorDot;
class ElidedLabel;
class Form;
class MeterEngine;
struct TextFieldStore;

class ChannelSection final : public FoldingGroup {
    Q_OBJECT
  public:
    /// All but the channel outlives this.
    struct Environment {
        MeterEngine& engine;
        TextFieldStore& texts;
        std::function<void(const TarvaneKit::UUID&)> openChannelWindow;
    };
    ChannelSection(const Environment& environment, const TarvaneKit::UUID& channelID,
                   QWidget* parent = nullptr);

    const TarvaneKit::UUID& channelID() const { return channel_.id(); }

  private:
    Form* makeForm(QWidget* parent);
    void addChannelRows(Form& form);
    void refresh();

    const Environment environment_;
    const ChannelValues channel_;
    ChannelColorDot* dot_;
    ElidedLabel* name_;
    ElidedLabel* input_;
};

}  // namespace TarvaneApp
