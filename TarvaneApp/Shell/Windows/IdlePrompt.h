// What to do first, over the empty displays of a window in which nothing was metered yet: the key
// that starts and the device that it starts, or what is missing. It goes with the first start.
#pragma once

#include <QWidget>

class QLabel;

namespace TarvaneApp {

class ElidedLabel;
class MeterEngine;

class IdlePrompt final : public QWidget {
    Q_OBJECT
  public:
    /// Over the first of the displays in `window` that has room for it.
    IdlePrompt(MeterEngine& engine, QWidget& window);

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    void showInput();
    void place();

    MeterEngine& engine_;
    QWidget& window_;
    QLabel* title_;
    ElidedLabel* detail_;
    QList<QWidget*> displays_;
    bool hasMetered_ = false;
};

}  // namespace TarvaneApp
