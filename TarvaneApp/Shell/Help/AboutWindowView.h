// What the program is called, which version this is, and under which licence it may be passed on.
// WindowScenes opens it; main thread.
#pragma once

#include <QWidget>

namespace TarvaneApp {

class AboutWindowView final : public QWidget {
    Q_OBJECT
  public:
    struct Environment {
        QString version;
        QString legalLine;
        QString makerSite;  ///< an address, or empty
    };

    explicit AboutWindowView(const Environment& environment);
};

}  // namespace TarvaneApp
