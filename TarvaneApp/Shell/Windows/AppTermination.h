// Tells quitting from closing. The application's windows close in either case; what a closed window
// means for the next launch depends on it. The application owns the one there is; main thread.
#pragma once

#include <QObject>

namespace TarvaneApp {

class AppTermination final : public QObject {
    Q_OBJECT
  public:
    AppTermination();
    ~AppTermination() override;

    /// From the moment at which the program was told to quit, ahead of the closing of its windows.
    static bool isTerminating();

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace TarvaneApp
