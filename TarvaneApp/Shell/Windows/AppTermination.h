// Whether the application is quitting. Its windows close in either case; what a closed window means
// for the next launch depends on it. One per application, which owns it; main thread.
#pragma once

#include <QObject>

namespace TarvaneApp {

class AppTermination final : public QObject {
    Q_OBJECT
  public:
    AppTermination();
    ~AppTermination() override;

    /// True from the request to quit on, before the windows close.
    static bool isTerminating();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace TarvaneApp
