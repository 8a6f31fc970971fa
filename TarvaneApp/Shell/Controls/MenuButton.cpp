#include "Shell/Controls/MenuButton.h"

#include <QActionGroup>
#include <QFontMetrics>
#include <QMenu>
#include <QPainter>
#include <algorithm>

#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/MenuItems.h"

namespace TarvaneApp {

namespace {

constexpr int dotSize = 8;
constexpr int dotGap = 5;
constexpr int widestTitle = 220;
// Letters of which nobody can tell a word aren't worth their room.
constexpr int narrowestTitle = 44;

QFont labelFont() {
    return Typeface::installed().systemFont(Theme::Text::caption);
}

}  // namespace

MenuButton::MenuButton(const QString& name, QWidget* parent) : QToolButton(parent), name_(name) {
    setFocusPolicy(Qt::TabFocus);
    setPopupMode(QToolButton::InstantPopup);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setMenu(new QMenu(this));
}

void MenuButton::letShrink() {
    mayShrink_ = true;
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
}

void MenuButton::setTight(bool isTight) {
    if (isTight != isTight_) {
        isTight_ = isTight;
        updateGeometry();
        update();
    }
}

int MenuButton::padding() const {
    return isTight_ ? Theme::Space::related : Theme::Space::button;
}

void MenuButton::setItems(std::vector<Item> items) {
    // This may run from one of the old actions, so they are deleted later.
    for (QAction* old : menu()->actions()) {
        menu()->removeAction(old);
        old->deleteLater();
    }
    if (group_ != nullptr) {
        group_->deleteLater();
    }
    group_ = new QActionGroup(menu());
    for (Item& item : items) {
        QAction* action = menu()->addAction(menuText(item.text.toStdString()));
        action->setCheckable(true);
        action->setChecked(item.isCurrent);
        group_->addAction(action);
        if (item.isCurrent) {
            setText(item.label.value_or(item.text));
            dot_ = item.dot;
        }
        connect(action, &QAction::triggered, this, [run = std::move(item.action)] { run(); });
    }
    tellName();
    updateGeometry();
    update();
}

void MenuButton::setName(const QString& name) {
    name_ = name;
    tellName();
}

void MenuButton::tellName() {
    setAccessibleName(name_ + QStringLiteral(": ") + text());
}

int MenuButton::widthWith(int textWidth) const {
    return 2 * padding() + (dot_ ? dotSize + dotGap : 0) + textWidth + Theme::Space::related +
           Theme::Symbol::chevron;
}

QSize MenuButton::sizeHint() const {
    const int textWidth =
        std::min(QFontMetrics(labelFont()).horizontalAdvance(text()), widestTitle);
    return {widthWith(textWidth), Theme::controlHeight};
}

int MenuButton::ordinaryWidth() const {
    return sizeHint().width() + 2 * (Theme::Space::button - padding());
}

int MenuButton::widthIn(int room) const {
    const int whole = sizeHint().width();
    const bool isWordless = dot_ && room < widthWith(narrowestTitle);
    return room >= whole ? whole
           : isWordless  ? minimumSizeHint().width()
                         : std::max(room, minimumSizeHint().width());
}

QSize MenuButton::minimumSizeHint() const {
    const QSize whole = sizeHint();
    if (!mayShrink_) {
        return whole;
    }
    // The dot alone tells which one it is.
    return {std::min(widthWith(dot_ ? 0 : narrowestTitle), whole.width()), whole.height()};
}

void MenuButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    paintPlate(painter, rect(), Theme::Radius::control,
               isDown() || underMouse() ? Theme::gridLine : Theme::controlBackground);
    double x = padding();
    if (dot_) {
        painter.setBrush(*dot_);
        painter.drawEllipse(QRectF(x, (height() - dotSize) / 2.0, dotSize, dotSize));
        x += dotSize + dotGap;
    }
    const double right = width() - padding() - Theme::Symbol::chevron;
    const QRectF textRect(x, 0.0, right - Theme::Space::related - x, height());
    painter.setFont(labelFont());
    painter.setPen(Theme::primaryText);
    const bool fits = painter.fontMetrics().horizontalAdvance(text()) <= textRect.width() + 1.0;
    if (fits || !dot_ || textRect.width() >= narrowestTitle) {
        painter.drawText(textRect, Qt::AlignLeft | Qt::AlignVCenter,
                         painter.fontMetrics().elidedText(text(), Qt::ElideRight,
                                                          static_cast<int>(textRect.width()) + 1));
    }
    Icon::paint(painter, QStringLiteral("chevron.down"),
                QRectF(right, (height() - Theme::Symbol::chevron) / 2.0, Theme::Symbol::chevron,
                       Theme::Symbol::chevron),
                Theme::axisText);
    if (hasFocus()) {
        paintFocusRing(painter, rect(), Theme::Radius::control - 1.0);
    }
}

}  // namespace TarvaneApp
