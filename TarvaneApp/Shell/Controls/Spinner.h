// A small turning arc that says that something is under way. Its timer runs only while it is
// turning and can be seen.
#pragma once

#include <QTimer>
#include <QWidget>

namespace TarvaneApp {

class Spinner final : public QWidget {
    Q_OBJECT
  public:
    explicit Spinner(QWidget* parent = nullptr);

  protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QTimer timer_;
    int step_ = 0;
};

}  // namespace TarvaneApp
