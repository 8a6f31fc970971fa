#include "Shell/Panels/PanelHeader.h"

#include <QEvent>
#include <QLabel>
#include <utility>

#include "Displays/Theme.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Controls/TextLabel.h"

namespace TarvaneApp {

namespace {

constexpr double letterSpacing = 0.5;

// With and without controls, so that graphs beside each other begin at one height.
constexpr int headerHeight = Theme::controlHeight + 2 * Theme::Space::row;
constexpr int marginUpDown = (headerHeight - IconButton::side) / 2;

// From left to right, including those inside other widgets.
void collectTabStops(const QLayout& layout, std::vector<QWidget*>& stops) {
    for (int i = 0; i < layout.count(); ++i) {
        if (const QLayout* inner = layout.itemAt(i)->layout()) {
            collectTabStops(*inner, stops);
        } else if (QWidget* widget = layout.itemAt(i)->widget()) {
            if ((widget->focusPolicy() & Qt::TabFocus) != 0) {
                stops.push_back(widget);
            } else if (const QLayout* inside = widget->layout()) {
                collectTabStops(*inside, stops);
            }
        }
    }
}

}  // namespace

PanelHeader::PanelHeader(const QString& title, QWidget* parent)
    : QWidget(parent), row_(new QHBoxLayout(this)) {
    row_->setContentsMargins(Theme::Space::panel, marginUpDown, Theme::Space::panel, marginUpDown);
    row_->setSpacing(Theme::Space::panel);
    setMinimumHeight(headerHeight);
    auto* label = makeTextLabel(title.toUpper(), Theme::Text::caption, Theme::axisText, this);
    QFont font = Theme::sectionLabelFont();
    font.setLetterSpacing(QFont::AbsoluteSpacing, letterSpacing);
    label->setFont(font);
    label->setAccessibleName(title);  // not every letter a capital
    row_->addWidget(label);
    expendable_ = {label};
}

void PanelHeader::addIcons(const std::vector<QWidget*>& buttons) {
    auto* icons = new QHBoxLayout;
    icons->setSpacing(0);
    for (QWidget* button : buttons) {
        icons->addWidget(button);
    }
    row_->addLayout(icons);
    row_->setContentsMargins(Theme::Space::panel, marginUpDown,
                             Theme::Space::panel - IconButton::margin(Theme::Symbol::header),
                             marginUpDown);
}

void PanelHeader::setExpendable(std::vector<QWidget*> widgets) {
    widgets.push_back(expendable_.back());
    expendable_ = std::move(widgets);
    fit();
}

// A widget in a row within the row has no spacing of its own.
int PanelHeader::widthOf(const QWidget& widget) const {
    const bool isOfRow = row_->indexOf(&widget) >= 0;
    return widget.sizeHint().width() + (isOfRow ? row_->spacing() : 0);
}

void PanelHeader::orderTabs(QWidget& content) {
    std::vector<QWidget*> stops;
    collectTabStops(*row_, stops);
    stops.push_back(&content);
    for (std::size_t i = 1; i < stops.size(); ++i) {
        setTabOrder(stops[i - 1], stops[i]);
    }
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
