// An icon button with a text beside its symbol, which opens a menu under itself. A long text is cut
// short.
#pragma once

#include "Shell/Controls/IconMenuButton.h"

namespace TarvaneApp {

class IconTextMenuButton : public IconMenuButton {
    Q_OBJECT
  public:
    IconTextMenuButton(int iconSize, std::function<void(QMenu&)> fill, QWidget* parent = nullptr);

    void setText(const QString& text);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace TarvaneApp
