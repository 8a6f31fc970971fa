// Shows a message that something observes as absent once it was dismissed: one alert at a time,
// over the window that the user is in. It blocks nothing while it is open; dismissing it clears the
// message.
#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <functional>
#include <optional>
#include <string>

#include "Settings/Observable.h"

class QMessageBox;
class QWidget;

namespace TarvaneApp {

class ErrorAlert final : public QObject {
    Q_OBJECT
  public:
    using Message = Observable<std::optional<std::string>>;

    /// `window` owns it, and is under the alert while the user is in none of the program's. What is
    /// told before the window's first appearance waits for that.
    ErrorAlert(const QString& title, const Message& message, std::function<void()> dismiss,
               QWidget* window);

  protected:
    bool eventFilter(QObject* window, QEvent* event) override;

  private:
    void messageChanged();
    QWidget* usersWindow() const;

    const QString title_;
    const Message& message_;
    const std::function<void()> dismiss_;
    QWidget* window_;
    bool hasAppeared_;
    QPointer<QMessageBox> box_;
};

}  // namespace TarvaneApp
