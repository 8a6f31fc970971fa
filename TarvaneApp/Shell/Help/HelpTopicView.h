// A topic as a page: its title, its summary, its blocks, and the way to its neighbours.
#pragma once

#include <QWidget>

#include "Shell/Help/HelpTopic.h"

namespace TarvaneApp {

class HelpNavigation;
class ReadingPage;

class HelpTopicView final : public QWidget {
    Q_OBJECT
  public:
    /// The page stands at its top. `makerSite` is an address, or empty.
    HelpTopicView(const HelpTopic& topic, HelpNavigation& navigation, const QString& makerSite,
                  QWidget* parent = nullptr);

  private:
    void addFooter(const std::string& title, HelpNavigation& navigation, const QString& makerSite);

    ReadingPage* page_;
};

}  // namespace TarvaneApp
