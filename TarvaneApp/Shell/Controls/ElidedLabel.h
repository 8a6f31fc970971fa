// A line of plain text that can shrink: without room for all of it, it ends in an ellipsis, and a
// tooltip shows the whole text.
#pragma once

#include <QColor>
#include <QLabel>

namespace TarvaneApp {

class ElidedLabel final : public QLabel {
    Q_OBJECT
  public:
    /// `size` in logical pixels.
    ElidedLabel(double size, const QColor& color, QWidget* parent = nullptr);

    QSize minimumSizeHint() const override;

  protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    QString shownText() const;
};

}  // namespace TarvaneApp
