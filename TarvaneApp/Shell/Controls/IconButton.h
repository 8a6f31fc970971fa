// A button that is only a symbol.
#pragma once

#include <QAbstractButton>
#include <QColor>

namespace TarvaneApp {

class IconButton : public QAbstractButton {
    Q_OBJECT
  public:
    /// `iconSize` in logical pixels; the button is a little larger, for the focus ring.
    explicit IconButton(int iconSize, QWidget* parent = nullptr);

    /// How far the button reaches beyond its symbol on each side.
    static constexpr int margin = 3;

    /// An empty name draws nothing; the button keeps its place.
    void setSymbol(const QString& name, const QColor& color);
    QString symbol() const { return symbol_; }

    /// What the button does, as a tooltip and for a screen reader; or a name of its own for the
    /// latter.
    void setHelp(const QString& help) { setHelp(help, help); }
    void setHelp(const QString& name, const QString& toolTip);

    QSize sizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    int iconSize_;
    QString symbol_;
    QColor color_;
};

}  // namespace TarvaneApp
