#include "Shell/Preferences/ChannelWindowLayoutSection.h"

#include <optional>
#include <vector>

#include "Shell/Forms/EnumChoices.h"
#include "Shell/Forms/Form.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

namespace {

template <class E>
std::vector<FormChoice<std::optional<E>>> ownOrTheMainWindows() {
    std::vector<FormChoice<std::optional<E>>> choices{
        {QStringLiteral("Same as Main Window"), std::nullopt}};
    for (const FormChoice<E>& choice : enumChoices<E>()) {
        choices.push_back({choice.label, choice.value});
    }
    return choices;
}

}  // namespace

void addChannelWindowLayoutSection(Form& form, const ChannelValues& channel,
                                   std::function<void(const TarvaneKit::UUID&)> openChannelWindow) {
    FormSection& section = form.addSection(QStringLiteral("Channel Window"));
    section.addHelp(QStringLiteral("Shows"));
    section.addToggle(QStringLiteral("SPL"),
                      channel.windowLayout(&ChannelWindowLayout::showsSPLMeter));
    section.addToggle(QStringLiteral("RTA"), channel.windowLayout(&ChannelWindowLayout::showsRTA));
    section.addToggle(QStringLiteral("Spectrogram"),
                      channel.windowLayout(&ChannelWindowLayout::showsSpectrogram));
    section.addToggle(QStringLiteral("History"),
                      channel.windowLayout(&ChannelWindowLayout::showsLevelHistory));
    section.addPicker(QStringLiteral("RTA & Spectrogram"), ownOrTheMainWindows<GraphOrientation>(),
                      channel.windowLayout(&ChannelWindowLayout::graphOrientation));
    section.addPicker(QStringLiteral("Graph Order"), ownOrTheMainWindows<GraphOrder>(),
                      channel.windowLayout(&ChannelWindowLayout::graphOrder));
    section.addPicker(QStringLiteral("Level History Position"),
                      ownOrTheMainWindows<LevelHistoryPosition>(),
                      channel.windowLayout(&ChannelWindowLayout::levelHistoryPosition));
    section.addButtons(
        {makeFormButton(
             QStringLiteral("Open in Window"),
             [channel, open = std::move(openChannelWindow)] { open(channel.id()); }, &section),
         makeFormButton(
             QStringLiteral("Reset Layout"),
             [channel] { channel.engine().resetWindowLayout(channel.id()); }, &section)});
}

}  // namespace TarvaneApp
