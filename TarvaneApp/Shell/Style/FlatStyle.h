// The one style of every window: it draws the toolkit's own controls as flat as ours, so that no
// other place has to speak of how a control looks. Colours are the theme's, sizes the theme's or
// here.
#pragma once

#include <QProxyStyle>

class QStyleOptionSpinBox;

namespace TarvaneApp {

class FlatStyle final : public QProxyStyle {
    Q_OBJECT
  public:
    FlatStyle();

    using QProxyStyle::polish;
    void polish(QWidget* widget) override;

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
                            QPainter* painter, const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option,
                         const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option,
                       const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override;

  private:
    void drawSpinBox(const QStyleOptionSpinBox& option, QPainter& painter,
                     const QWidget* widget) const;
};

}  // namespace TarvaneApp
