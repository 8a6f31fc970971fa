#include "Shell/Forms/ColorWell.h"

#include <QColorDialog>
#include <QPainter>

#include "Displays/FocusRing.h"
#include "Displays/Theme.h"

namespace TarvaneApp {

using TarvaneKit::RGBAColor;

namespace {

constexpr QSize wellSize(44, Theme::controlHeight);
constexpr double inset = 4.0;
constexpr double dimmed = 0.4;

// The dialog's colours are opaque; how transparent a colour is stays as it was.
RGBAColor picked(const QColor& color, const RGBAColor& old) {
    return {color.redF(), color.greenF(), color.blueF(), old.alpha};
}

}  // namespace

ColorWell::ColorWell(const QString& name, std::function<void(const RGBAColor&)> onPick,
                     QWidget* parent)
    : QAbstractButton(parent), onPick_(std::move(onPick)) {
    setAccessibleName(name);
    setAttribute(Qt::WA_Hover);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, &ColorWell::openDialog);
}

void ColorWell::setColor(const RGBAColor& color) {
    color_ = color;
    setAccessibleDescription(Theme::color(color).name());
    update();
}

QSize ColorWell::sizeHint() const {
    return wellSize;
}

void ColorWell::openDialog() {
    const RGBAColor old = color_;
    auto* dialog = new QColorDialog(Theme::color(old), this);
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->setWindowTitle(accessibleName());
    connect(dialog, &QColorDialog::currentColorChanged, this,
            [this, old](const QColor& color) { onPick_(picked(color, old)); });
    connect(dialog, &QColorDialog::rejected, this, [this, old] { onPick_(old); });
    dialog->open();
}

void ColorWell::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setOpacity(isEnabled() ? 1.0 : dimmed);
    const bool isHovered = underMouse() && isEnabled();
    painter.setPen(Qt::NoPen);
    painter.setBrush(isHovered ? Theme::gridLineStrong : Theme::gridLine);
    painter.drawRoundedRect(rect(), Theme::Radius::control, Theme::Radius::control);
    painter.setBrush(Theme::color(color_));
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                            Theme::Radius::graph, Theme::Radius::graph);
    if (hasFocus()) {
        paintFocusRing(painter, rect(), Theme::Radius::control - 1.0);
    }
}

}  // namespace TarvaneApp
