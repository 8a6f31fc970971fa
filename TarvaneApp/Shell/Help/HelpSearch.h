// Finds topics by words of their text.
#pragma once

#include <QString>
#include <vector>

#include "Shell/Help/HelpTopic.h"

namespace TarvaneApp {

/// The topics with words that begin like each word of `query`, in upper or lower case: first those
/// that have them all in the title, each in the order of the book. All topics, if it is blank.
std::vector<const HelpTopic*> helpTopicsWith(const QString& query);

}  // namespace TarvaneApp
