#include "Shell/Help/ReadingLabel.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "Displays/Theme.h"
#include "Shell/Help/HelpLook.h"
#include "Shell/Help/Prose.h"

namespace TarvaneApp {

namespace {

class AccessibleHeading final : public QAccessibleWidget {
  public:
    explicit AccessibleHeading(HeadingLabel* label)
        : QAccessibleWidget(label, QAccessible::Heading), label_(*label) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? label_.text() : QAccessibleWidget::text(kind);
    }

  private:
    const HeadingLabel& label_;
};

QAccessibleInterface* makeAccessibleHeading(const QString&, QObject* object) {
    auto* heading = qobject_cast<HeadingLabel*>(object);
    return heading != nullptr ? new AccessibleHeading(heading) : nullptr;
}

void installHeadings() {
    static const bool installed = [] {
        QAccessible::installFactory(makeAccessibleHeading);
        return true;
    }();
    static_cast<void>(installed);
}

}  // namespace

HeadingLabel::HeadingLabel(const QString& text, double size, QWidget* parent)
    : WrappedLabel(size, Theme::primaryText, parent) {
    installHeadings();
    setFont(Typeface::installed().systemFont(size, QFont::DemiBold));
    setTextInteractionFlags(Qt::TextSelectableByMouse);
    setText(text);
}

WrappedLabel* makeProseLabel(std::string_view text, QWidget* parent) {
    auto* label = makeReadingLabel({}, HelpLook::bodySize, HelpLook::bodyText, parent);
    label->setTextFormat(Qt::RichText);
    label->setText(proseHTML(text, Theme::primaryText));
    return label;
}

WrappedLabel* makeReadingLabel(const QString& text, double size, const QColor& color,
                               QWidget* parent) {
    auto* label = new WrappedLabel(size, color, parent);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setText(text);
    return label;
}

}  // namespace TarvaneApp
