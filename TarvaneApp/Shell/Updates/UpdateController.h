// Looks whether there is a newer version: quietly at launch, and with an answer in any case when it
// is asked for. It tells the version and opens the page where it can be had; it loads and installs
// nothing. Main thread.
#pragma once

#include <QObject>
#include <QUrl>
#include <functional>
#include <string>

namespace TarvaneApp {

class NoteBar;
class UpdateFetch;

class UpdateController final : public QObject {
    Q_OBJECT
  public:
    /// The references outlive it.
    struct Environment {
        QUrl feed;
        std::string runningVersion;
        UpdateFetch& fetch;
        NoteBar& note;
        std::function<void(const QUrl&)> openPage;
    };
    explicit UpdateController(Environment environment);

    /// Says something only if there is a newer version.
    void checkAtLaunch() { check(false); }
    void checkForUpdates() { check(true); }

  private:
    void check(bool isAskedFor);
    void answered(const QByteArray& content, const QString& failure);

    const Environment environment_;
    bool isChecking_ = false;
    bool isAskedFor_ = false;
};

}  // namespace TarvaneApp
