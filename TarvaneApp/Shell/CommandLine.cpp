#include "Shell/CommandLine.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>

#include "Build/Version.h"

namespace TarvaneApp::CommandLine {

namespace {

constexpr std::string_view help =
    "Usage: tarvane [option]\n"
    "Live sound measurement.\n"
    "\n"
    "  -h, --help     say this and end\n"
    "  -v, --version  say which version this is and end\n"
    "\n"
    "Options of the Qt toolkit, such as -platform and -style, are passed on to it.\n";

struct ToolkitOption {
    std::string_view name;
    bool hasValue;
};

// Those of QGuiApplication, QApplication and the X11 platform. A session manager launches with
// -session, for instance.
constexpr std::array toolkitOptions{
    ToolkitOption{"platform", true},
    ToolkitOption{"platformpluginpath", true},
    ToolkitOption{"platformtheme", true},
    ToolkitOption{"plugin", true},
    ToolkitOption{"qwindowgeometry", true},
    ToolkitOption{"geometry", true},
    ToolkitOption{"qwindowicon", true},
    ToolkitOption{"icon", true},
    ToolkitOption{"qwindowtitle", true},
    ToolkitOption{"title", true},
    ToolkitOption{"session", true},
    ToolkitOption{"style", true},
    ToolkitOption{"stylesheet", true},
    ToolkitOption{"display", true},
    ToolkitOption{"name", true},
    ToolkitOption{"reverse", false},
    ToolkitOption{"widgetcount", false},
    ToolkitOption{"nograb", false},
    ToolkitOption{"dograb", false},
};

// The toolkit takes its options with one dash or two.
const ToolkitOption* toolkitOption(std::string_view argument) {
    if (!argument.starts_with('-')) {
        return nullptr;
    }
    argument.remove_prefix(argument.starts_with("--") ? 2 : 1);
    const auto* found = std::ranges::find(toolkitOptions, argument, &ToolkitOption::name);
    return found != toolkitOptions.end() ? found : nullptr;
}

Answer refusal(const std::string& what) {
    return {.text = "tarvane: " + what + "; see tarvane --help\n", .isRefusal = true};
}

std::vector<QByteArray> heldBack;
QtMessageHandler handlerBefore = nullptr;

// A display in name alone: its server is gone, or it isn't ours.
QByteArray reason() {
    if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY")) {
        return "there is no display: neither DISPLAY nor WAYLAND_DISPLAY is set";
    }
    return heldBack.empty() ? "the display can't be used" : heldBack.front();
}

void holdBack(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (type == QtFatalMsg) {
        std::fprintf(stderr, "tarvane: no window can be opened: %s\n",
                     reason().trimmed().constData());
        std::_Exit(1);
    }
    heldBack.push_back(qFormatLogMessage(type, context, message).toLocal8Bit());
}

}  // namespace

std::optional<Answer> answer(const std::vector<std::string_view>& arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const std::string_view argument = arguments[i];
        if (argument == "--help" || argument == "-h") {
            return Answer{.text = std::string(help)};
        }
        if (argument == "--version" || argument == "-v") {
            return Answer{.text = "Tarvane " + std::string(Build::version) + "\n"};
        }
        std::string quoted("'");
        quoted.append(argument).append("'");
        const ToolkitOption* option = toolkitOption(argument);
        if (option == nullptr) {
            return refusal((argument.starts_with('-') ? "unknown option " : "unknown argument ") +
                           quoted);
        }
        if (option->hasValue && ++i == arguments.size()) {
            return refusal("the option " + quoted + " lacks its value");
        }
    }
    return std::nullopt;
}

DisplaySearch::DisplaySearch() {
    handlerBefore = qInstallMessageHandler(&holdBack);
}

DisplaySearch::~DisplaySearch() {
    qInstallMessageHandler(handlerBefore);
    for (const QByteArray& message : heldBack) {
        std::fprintf(stderr, "%s\n", message.constData());
    }
    heldBack.clear();
}

}  // namespace TarvaneApp::CommandLine
