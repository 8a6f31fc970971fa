// A button that is only a symbol.
#pragma once

#include <QAbstractButton>
#include <QColor>

namespace TarvaneApp {

class IconButton : public QAbstractButton {
    Q_OBJECT
  public:
    /// `iconSize` in logical pixels.
    explicit IconButton(int iconSize, QWidget* parent = nullptr);

    /// All are as large as the plate that shows under the pointer, whatever their symbol.
    static constexpr int side = 28;
    /// How far a button reaches beyond a symbol of that size on each side.
    static constexpr int margin(int iconSize) { return (side - iconSize) / 2; }

    /// An empty name draws nothing; the button keeps its place.
    void setSymbol(const QString& name, const QColor& color);
    QString symbol() const { return symbol_; }

    /// What the button does, as a tooltip and for a screen reader; or a name of its own for the
    /// latter.
    void setHelp(const QString& help) { setHelp(help, help); }
    void setHelp(const QString& name, const QString& toolTip);

    QSize sizeHint() const override;

  protected:
    int iconSize() const { return iconSize_; }
    void paintEvent(QPaintEvent* event) override;

  private:
    int iconSize_;
    QString symbol_;
    QColor color_;
};

}  // namespace TarvaneApp
