// A filled circle in a channel's colour.
#pragma once

#include <QColor>
#include <QWidget>

namespace TarvaneApp {

class ChannelColorDot final : public QWidget {
    Q_OBJECT
  public:
    explicit ChannelColorDot(QWidget* parent = nullptr);

    void setColor(const QColor& color);
    QColor color() const { return color_; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QColor color_;
};

}  // namespace TarvaneApp
