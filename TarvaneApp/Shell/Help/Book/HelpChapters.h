// The chapters of the help, each written in a source of its own.
#pragma once

#include "Shell/Help/HelpTopic.h"

namespace TarvaneApp::HelpChapters {

HelpGroup basics();
HelpGroup modules();
HelpGroup measuring();
HelpGroup setup();
HelpGroup reference();

}  // namespace TarvaneApp::HelpChapters
