#include "Shell/Controls/PopoverPresentationState.h"

#include <QAbstractButton>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

#include "Displays/Plate.h"
#include "Displays/Theme.h"
#include "Shell/Controls/SpokenRole.h"

namespace TarvaneApp {

namespace {

constexpr int gap = Theme::Space::label;  // between the button and the popover

class Popover final : public QWidget {
  public:
    Popover(QWidget* parent, const PopoverPresentationState::Content& makeContent)
        : QWidget(parent, Qt::Popup | Qt::FramelessWindowHint) {
        setAttribute(Qt::WA_DeleteOnClose);
        setAttribute(Qt::WA_TranslucentBackground);
        // The click that closes it does nothing else; passed on to the button it would open it
        // again.
        setAttribute(Qt::WA_NoMouseReplay);
        auto* layout = new QVBoxLayout(this);
        layout->setContentsMargins(Theme::Margins::form);
        layout->setSizeConstraint(QLayout::SetFixedSize);
        layout->addWidget(makeContent(this));
        layout->activate();
    }

    // Under the button and aligned with its right end, as far as the screen allows.
    void standUnder(const QAbstractButton& button) {
        const QRect screen = button.screen()->availableGeometry();
        const QPoint corner = button.mapToGlobal(QPoint(button.width(), button.height()));
        const int above = corner.y() - button.height() - gap - height();
        const bool fitsUnder = corner.y() + gap + height() <= screen.bottom() + 1;
        const int left =
            std::max(std::min(corner.x() - width(), screen.right() + 1 - width()), screen.left());
        move(left, std::max(fitsUnder ? corner.y() + gap : above, screen.top()));
    }

    void focusFirstControl() { focusNextChild(); }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintRaisedPanel(painter, rect());
    }
};

}  // namespace

PopoverPresentationState::PopoverPresentationState(QAbstractButton& button, Content makeContent)
    : button_(button), makeContent_(std::move(makeContent)) {
    setOpensPopover(button);
    connect(&button, &QAbstractButton::clicked, this, [this] { setPresented(!isPresented()); });
}

bool PopoverPresentationState::isPresented() const {
    return popover_ != nullptr && popover_->isVisible();
}

void PopoverPresentationState::setPresented(bool presented) {
    if (presented == isPresented()) {
        return;
    }
    if (!presented) {
        popover_->close();
        return;
    }
    auto* popover = new Popover(&button_, makeContent_);
    popover_ = popover;
    popover->standUnder(button_);
    popover->show();
    if (button_.hasFocus()) {
        popover->focusFirstControl();
    }
}

}  // namespace TarvaneApp
