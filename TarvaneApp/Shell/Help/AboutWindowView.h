// What the program is called, which version this is, and under which licence it may be passed on.
// WindowScenes opens it; main thread.
#pragma once

#include <QString>
#include <QWidget>

namespace TarvaneApp {

/// Who made the program, and on what terms it may be passed on.
QString legalLine(const QString& maker);

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
