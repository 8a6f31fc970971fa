#include "Panels/PanelHeader.h"

#include <QEvent>
#include <QLabel>
#include <utility>

#include "Theme.h"

namespace TarvaneApp {

namespace {

constexpr int paddingAcross = 16;
constexpr int paddingUpDown = 8;
constexpr int spacing = 16;
constexpr double letterSpacing = 0.5;

}  // namespace

PanelHeader::PanelHeader(const QString& title, QWidget* parent)
    : QWidget(parent), row_(new QHBoxLayout(this)) {
    row_->setContentsMargins(paddingAcross, paddingUpDown, paddingAcross, paddingUpDown);
    row_->setSpacing(spacing);
    auto* label = new QLabel(title.toUpper(), this);
    QFont font = Theme::sectionLabelFont();
    font.setLetterSpacing(QFont::AbsoluteSpacing, letterSpacing);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, Theme::axisText);
    label->setPalette(palette);
    row_->addWidget(label);
}

void PanelHeader::setExpendable(std::vector<QWidget*> widgets) {
    expendable_ = std::move(widgets);
    fit();
}

int PanelHeader::widthOf(const QWidget& widget) const {
    return widget.sizeHint().width() + row_->spacing();
}

QSize PanelHeader::minimumSizeHint() const {
    QSize size = QWidget::minimumSizeHint();
    for (const QWidget* widget : expendable_) {
        size.rwidth() -= widget->isHidden() ? 0 : widthOf(*widget);
    }
    return size;
}

bool PanelHeader::event(QEvent* event) {
    if (event->type() == QEvent::LayoutRequest) {
        fit();
    }
    return QWidget::event(event);
}

void PanelHeader::resizeEvent(QResizeEvent* event) {
    fit();
    QWidget::resizeEvent(event);
}

void PanelHeader::fit() {
    int needed = row_->sizeHint().width();
    for (const QWidget* widget : expendable_) {
        needed += widget->isHidden() ? widthOf(*widget) : 0;
    }
    for (QWidget* widget : expendable_) {
        const bool fits = needed <= width();
        needed -= fits ? 0 : widthOf(*widget);
        widget->setVisible(fits);
    }
}

}  // namespace TarvaneApp
