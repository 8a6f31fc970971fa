// Turns to the topic before or after, whose title it shows.
#pragma once

#include <QAbstractButton>

namespace TarvaneApp {

class HelpPageButton final : public QAbstractButton {
    Q_OBJECT
  public:
    enum class Direction { previous, next };

    HelpPageButton(Direction direction, const QString& title, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QString caption() const;

    Direction direction_;
    QString title_;
};

}  // namespace TarvaneApp
