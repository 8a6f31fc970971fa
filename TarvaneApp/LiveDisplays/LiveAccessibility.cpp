#include "LiveDisplays/LiveAccessibility.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QWidget>

namespace TarvaneApp {

namespace {

// A value is offered as read-only text, the form that assistive programs read on every platform.
class ValueText : public QAccessibleTextInterface {
  public:
    QString text(int startOffset, int endOffset) const override {
        return valueText().mid(startOffset, endOffset < 0 ? -1 : endOffset - startOffset);
    }
    int characterCount() const override { return static_cast<int>(valueText().size()); }

    void selection(int, int* startOffset, int* endOffset) const override {
        *startOffset = 0;
        *endOffset = 0;
    }
    int selectionCount() const override { return 0; }
    void addSelection(int, int) override {}
    void removeSelection(int) override {}
    void setSelection(int, int, int) override {}
    int cursorPosition() const override { return 0; }
    void setCursorPosition(int) override {}
    QRect characterRect(int) const override { return {}; }
    int offsetAtPoint(const QPoint&) const override { return -1; }
    void scrollToSubstring(int, int) override {}
    QString attributes(int, int* startOffset, int* endOffset) const override {
        *startOffset = 0;
        *endOffset = characterCount();
        return {};
    }

  protected:
    virtual QString valueText() const = 0;
};

class AccessiblePart final : public QAccessibleInterface, public ValueText {
  public:
    AccessiblePart(QWidget& widget, const SpokenDisplay& display, std::size_t index)
        : widget_(widget), display_(display), index_(index) {}

    bool isValid() const override { return true; }
    QObject* object() const override { return nullptr; }
    QAccessibleInterface* parent() const override {
        return QAccessible::queryAccessibleInterface(&widget_);
    }
    QAccessibleInterface* child(int) const override { return nullptr; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessible::Role role() const override { return QAccessible::StaticText; }
    QRect rect() const override {
        const QRect place = part().place;
        return {widget_.mapToGlobal(place.topLeft()), place.size()};
    }
    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name    ? part().name
               : kind == QAccessible::Value ? part().value
                                            : QString();
    }
    void setText(QAccessible::Text, const QString&) override {}
    QAccessible::State state() const override {
        QAccessible::State state;
        state.readOnly = true;
        state.invisible = !widget_.isVisible() || part().place.isEmpty();
        return state;
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : nullptr;
    }
    using ValueText::text;

  protected:
    QString valueText() const override { return part().value; }

  private:
    SpokenPart part() const { return display_.spokenParts().at(index_); }

    QWidget& widget_;
    const SpokenDisplay& display_;
    const std::size_t index_;
};

class AccessibleDisplay final : public QAccessibleWidget, public ValueText {
  public:
    AccessibleDisplay(QWidget* widget, const SpokenDisplay& display)
        : QAccessibleWidget(widget, display.spokenRole()), display_(display) {
        const std::size_t count = display.spokenParts().size();
        for (std::size_t i = 1; i < count; ++i) {
            parts_.push_back(
                QAccessible::registerAccessibleInterface(new AccessiblePart(*widget, display, i)));
        }
    }
    ~AccessibleDisplay() override {
        for (const QAccessible::Id part : parts_) {
            QAccessible::deleteAccessibleInterface(part);
        }
    }

    // The drawn parts come first, then the child widgets.
    int childCount() const override { return drawnCount() + QAccessibleWidget::childCount(); }
    QAccessibleInterface* child(int index) const override {
        return index >= 0 && index < drawnCount()
                   ? QAccessible::accessibleInterface(parts_[static_cast<std::size_t>(index)])
                   : QAccessibleWidget::child(index - drawnCount());
    }
    int indexOfChild(const QAccessibleInterface* child) const override {
        for (int i = 0; i < drawnCount(); ++i) {
            if (this->child(i) == child) {
                return i;
            }
        }
        const int index = QAccessibleWidget::indexOfChild(child);
        return index < 0 ? index : index + drawnCount();
    }

    QString text(QAccessible::Text kind) const override {
        switch (kind) {
            case QAccessible::Name:
                return display_.spokenParts().front().name;
            case QAccessible::Value:
                return valueText();
            default:
                return QAccessibleWidget::text(kind);
        }
    }
    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::TextInterface ? static_cast<QAccessibleTextInterface*>(this)
                                                  : QAccessibleWidget::interface_cast(type);
    }
    using ValueText::text;

  protected:
    QString valueText() const override { return display_.spokenParts().front().value; }

  private:
    int drawnCount() const { return static_cast<int>(parts_.size()); }

    const SpokenDisplay& display_;
    std::vector<QAccessible::Id> parts_;
};

QAccessibleInterface* makeAccessible(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    const auto* display = dynamic_cast<const SpokenDisplay*>(object);
    return widget != nullptr && display != nullptr ? new AccessibleDisplay(widget, *display)
                                                   : nullptr;
}

}  // namespace

void installDisplayAccessibility() {
    static const bool installed = [] {
        QAccessible::installFactory(makeAccessible);
        return true;
    }();
    static_cast<void>(installed);
}

}  // namespace TarvaneApp
