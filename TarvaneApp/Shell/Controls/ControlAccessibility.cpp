#include "Shell/Controls/ControlAccessibility.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QAccessibleWidget>
#include <QAction>
#include <QActionGroup>
#include <QApplication>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <algorithm>

#include "Shell/Controls/ColorSwatches.h"
#include "Shell/Controls/CompactToggleButton.h"
#include "Shell/Controls/IconButton.h"
#include "Shell/Controls/IconMenuButton.h"
#include "Shell/Controls/MenuButton.h"
#include "Shell/Controls/SegmentedPicker.h"
#include "Shell/Controls/SpokenRole.h"
#include "Shell/Controls/SpokenSlider.h"

namespace TarvaneApp {

namespace {

// Without the mark of the letter that Alt goes with.
QString spoken(QString text) {
    text.replace(QStringLiteral("&&"), QString(QChar::Null));
    text.remove(u'&');
    return text.replace(QChar::Null, u'&');
}

class AccessibleButton final : public QAccessibleWidget {
  public:
    AccessibleButton(QAbstractButton& button, QAccessible::Role role)
        : QAccessibleWidget(&button, role), button_(button) {}

    // Its parts first, then what it has opened.
    int childCount() const override {
        return QAccessibleWidget::childCount() + static_cast<int>(popups().size());
    }
    QAccessibleInterface* child(int index) const override {
        const int parts = QAccessibleWidget::childCount();
        return index < parts ? QAccessibleWidget::child(index)
                             : QAccessible::queryAccessibleInterface(popups().value(index - parts));
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int i = 0; i < childCount(); ++i) {
            if (this->child(i) == child) {
                return i;
            }
        }
        return -1;
    }

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name && button_.accessibleName().isEmpty()
                   ? spoken(button_.text())
                   : QAccessibleWidget::text(kind);
    }
    QAccessible::State state() const override {
        QAccessible::State state = QAccessibleWidget::state();
        state.checkable = button_.isCheckable();
        state.checked = button_.isChecked();
        state.pressed = button_.isDown();
        state.hasPopup = opensMenu() || opensPopover(button_);
        return state;
    }

    QStringList actionNames() const override {
        QStringList names;
        if (button_.isEnabled()) {
            names.append(button_.isCheckable() ? toggleAction() : pressAction());
        }
        return names + QAccessibleWidget::actionNames();
    }
    void doAction(const QString& name) override {
        if (name == toggleAction() || name == pressAction()) {
            press();
        } else {
            QAccessibleWidget::doAction(name);
        }
    }

  private:
    bool opensMenu() const {
        return qobject_cast<const IconMenuButton*>(&button_) != nullptr ||
               qobject_cast<const MenuButton*>(&button_) != nullptr;
    }
    // Menus and popovers are windows of their own, made as children of their button.
    QWidgetList popups() const {
        QWidgetList open;
        for (QObject* child : button_.children()) {
            auto* widget = qobject_cast<QWidget*>(child);
            if (widget != nullptr && widget->windowType() == Qt::Popup && widget->isVisible()) {
                open.append(widget);
            }
        }
        return open;
    }
    // A tool button's menu would hold up whoever asks for it until it is closed.
    void press() {
        if (auto* menuButton = qobject_cast<MenuButton*>(&button_)) {
            QMetaObject::invokeMethod(menuButton, &QToolButton::showMenu, Qt::QueuedConnection);
        } else {
            button_.click();
        }
    }

    QAbstractButton& button_;
};

// What a button has opened belongs to it; the toolkit takes it for a window that stands alone.
class AccessiblePopover final : public QAccessibleWidget {
  public:
    AccessiblePopover(QWidget& popover, QWidget& button)
        : QAccessibleWidget(&popover, QAccessible::Dialog), button_(&button) {}

    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(button_);
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name && button_ != nullptr ? button_->accessibleName()
                                                               : QAccessibleWidget::text(kind);
    }

  private:
    const QPointer<QWidget> button_;
};

// A menu under a button, under an item of another menu, or under a title of the menu bar.
class AccessibleMenu final : public QAccessibleWidget {
  public:
    explicit AccessibleMenu(QMenu& menu)
        : QAccessibleWidget(&menu, QAccessible::PopupMenu), menu_(menu) {}

    QAccessibleInterface* parent() const override {
        const auto owners = menu_.menuAction()->associatedObjects();
        for (const QObject* owner : owners) {
            if (qobject_cast<const QMenu*>(owner) != nullptr ||
                qobject_cast<const QMenuBar*>(owner) != nullptr) {
                return QAccessible::queryAccessibleInterface(menu_.menuAction());
            }
        }
        QWidget* button = menu_.parentWidget();
        return qobject_cast<QAbstractButton*>(button) != nullptr
                   ? QAccessible::queryAccessibleInterface(button)
                   : QAccessibleWidget::parent();
    }
    int childCount() const override { return static_cast<int>(menu_.actions().size()); }
    QAccessibleInterface* child(int index) const override {
        return QAccessible::queryAccessibleInterface(menu_.actions().value(index));
    }
    QAccessibleInterface* childAt(int x, int y) const override {
        QAction* item = menu_.actionAt(menu_.mapFromGlobal(QPoint(x, y)));
        return item != nullptr ? QAccessible::queryAccessibleInterface(item) : nullptr;
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return static_cast<int>(menu_.actions().indexOf(qobject_cast<QAction*>(child->object())));
    }
    QString text(QAccessible::Text kind) const override {
        if (kind != QAccessible::Name) {
            return QAccessibleWidget::text(kind);
        }
        const QWidget* button = qobject_cast<QAbstractButton*>(menu_.parentWidget());
        return menu_.title().isEmpty() && button != nullptr ? button->accessibleName()
                                                            : spoken(menu_.title());
    }

  private:
    QMenu& menu_;
};

// An item of a menu. One that is checked or not is a switch, and one of a group of which one is
// checked a choice.
class AccessibleMenuItem final : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    AccessibleMenuItem(QAction& action, QMenu& menu) : action_(&action), menu_(&menu) {}

    bool isValid() const override { return action_ != nullptr && menu_ != nullptr; }
    QObject* object() const override { return action_; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(menu_);
    }
    int childCount() const override { return action_->menu() != nullptr ? 1 : 0; }
    QAccessibleInterface* child(int index) const override {
        return index == 0 && action_->menu() != nullptr
                   ? QAccessible::queryAccessibleInterface(action_->menu())
                   : nullptr;
    }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int indexOfChild(const QAccessibleInterface* child) const override {
        return action_->menu() != nullptr && child->object() == action_->menu() ? 0 : -1;
    }
    QAccessible::Role role() const override {
        if (action_->isSeparator()) {
            return QAccessible::Separator;
        }
        if (!action_->isCheckable()) {
            return QAccessible::MenuItem;
        }
        const QActionGroup* group = action_->actionGroup();
        return group != nullptr && group->isExclusive() ? QAccessible::RadioButton
                                                        : QAccessible::CheckBox;
    }
    QRect rect() const override {
        const QRect place = menu_->actionGeometry(action_);
        return {menu_->mapToGlobal(place.topLeft()), place.size()};
    }
    QString text(QAccessible::Text kind) const override {
        switch (kind) {
            case QAccessible::Name:
                return spoken(action_->text());
            case QAccessible::Accelerator:
                return action_->shortcut().toString(QKeySequence::NativeText);
            default:
                return {};
        }
    }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::State state() const override {
        QAccessible::State state;
        const bool isUsable = action_->isEnabled() && !action_->isSeparator();
        state.invisible = !menu_->isVisible() || !action_->isVisible();
        state.disabled = !isUsable;
        state.focusable = isUsable;
        state.focused = menu_->activeAction() == action_;
        state.checkable = action_->isCheckable();
        state.checked = action_->isChecked();
        state.hasPopup = action_->menu() != nullptr;
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this)
                                                    : nullptr;
    }

    QStringList actionNames() const override {
        return state().disabled             ? QStringList()
               : action_->isCheckable()     ? QStringList{toggleAction()}
               : action_->menu() != nullptr ? QStringList{showMenuAction()}
                                            : QStringList{pressAction()};
    }
    void doAction(const QString& name) override {
        if (!actionNames().contains(name)) {
            return;
        }
        if (action_->menu() != nullptr) {
            menu_->setActiveAction(action_);  // which opens it
            return;
        }
        QAction* chosen = action_;
        closeMenus();
        chosen->trigger();
    }
    QStringList keyBindingsForAction(const QString&) const override {
        return {action_->shortcut().toString(QKeySequence::NativeText)};
    }

  private:
    // As a click does it: with the menus that this one was opened from.
    void closeMenus() {
        while (auto* open = qobject_cast<QMenu*>(QApplication::activePopupWidget())) {
            open->close();
        }
    }

    const QPointer<QAction> action_;
    const QPointer<QMenu> menu_;
};

// What holds a row of which one is chosen.
bool isPicker(const QObject* object) {
    return qobject_cast<const SegmentedPicker*>(object) != nullptr ||
           qobject_cast<const ColorSwatches*>(object) != nullptr;
}

QAccessibleInterface* makeButton(QAbstractButton& button) {
    if (qobject_cast<CompactToggleButton*>(&button) != nullptr || isPicker(button.parentWidget())) {
        return new AccessibleButton(button, QAccessible::RadioButton);
    }
    if (qobject_cast<IconButton*>(&button) != nullptr ||
        qobject_cast<MenuButton*>(&button) != nullptr) {
        return new AccessibleButton(button, QAccessible::Button);
    }
    return nullptr;
}

// The titles in the menu bar are left to the toolkit. Some of them are in a menu, too: the one that
// the bar keeps for where it is too narrow.
QAccessibleInterface* makeMenuItem(QAction& action) {
    const auto owners = action.associatedObjects();
    if (std::ranges::any_of(owners, [](const QObject* owner) {
            return qobject_cast<const QMenuBar*>(owner) != nullptr;
        })) {
        return nullptr;
    }
    for (QObject* owner : owners) {
        if (auto* menu = qobject_cast<QMenu*>(owner)) {
            return new AccessibleMenuItem(action, *menu);
        }
    }
    return nullptr;
}

QAccessibleInterface* makeWidget(QWidget& widget) {
    if (const auto role = spokenRole(widget)) {
        return new QAccessibleWidget(&widget, *role);
    }
    if (isPicker(&widget)) {
        return new QAccessibleWidget(&widget, QAccessible::Grouping);
    }
    if (widget.windowType() == Qt::Popup) {
        if (auto* button = qobject_cast<QAbstractButton*>(widget.parentWidget())) {
            return new AccessiblePopover(widget, *button);
        }
    }
    return nullptr;
}

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    if (auto* button = qobject_cast<QAbstractButton*>(object)) {
        return makeButton(*button);
    }
    if (auto* action = qobject_cast<QAction*>(object)) {
        return makeMenuItem(*action);
    }
    if (auto* menu = qobject_cast<QMenu*>(object)) {
        return new AccessibleMenu(*menu);
    }
    if (auto* slider = makeSpokenSlider(*object)) {
        return slider;
    }
    auto* widget = qobject_cast<QWidget*>(object);
    return widget != nullptr ? makeWidget(*widget) : nullptr;
}

}  // namespace

void installControlAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(makeAccessible);
        return true;
    }();
    static_cast<void>(installed);
}

}  // namespace TarvaneApp
