// The help: the topics at the left, the one that is chosen at the right. It opens at the topic that
// was read last. WindowScenes opens it; main thread.
#pragma once

#include <QString>
#include <QWidget>

#include "Shell/Help/HelpNavigation.h"

class QVBoxLayout;

namespace TarvaneApp {

class HelpSidebar;
class KeyValueStore;

class HelpWindowView final : public QWidget {
    Q_OBJECT
  public:
    /// `makerSite` is an address, or empty.
    HelpWindowView(KeyValueStore& store, QString makerSite);

    HelpNavigation& navigation() { return navigation_; }

  private:
    void showTopic();

    KeyValueStore& store_;
    const QString makerSite_;
    HelpNavigation navigation_;
    HelpSidebar* sidebar_;
    QVBoxLayout* detail_;
    QWidget* shown_ = nullptr;
};

}  // namespace TarvaneApp
