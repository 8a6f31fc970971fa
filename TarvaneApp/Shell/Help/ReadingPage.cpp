#include "Shell/Help/ReadingPage.h"

#include <QFontMetrics>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <QVBoxLayout>

#include "Displays/FocusRing.h"
#include "Displays/Theme.h"
#include "Shell/Help/HelpLook.h"

namespace TarvaneApp {

namespace {

// A line of more letters makes the eye lose its way back.
constexpr int lettersInLine = 70;

constexpr int pageMargin = 28;

// By a text as the pages have it.
int widthOfLine() {
    const QString sample =
        QStringLiteral("It says how much signal there is, and nothing yet about sound.");
    const QFontMetrics metrics(Typeface::installed().systemFont(HelpLook::bodySize));
    return metrics.horizontalAdvance(sample) * lettersInLine / static_cast<int>(sample.size());
}

}  // namespace

ReadingPage::ReadingPage(QWidget* parent) : QScrollArea(parent) {
    auto* content = new QWidget;
    content->setMaximumWidth(widthOfLine() + 2 * pageMargin);
    column_ = new QVBoxLayout(content);
    column_->setContentsMargins(pageMargin, pageMargin, pageMargin, pageMargin);
    column_->setSpacing(Theme::Space::section);
    setWidgetResizable(true);
    setAlignment(Qt::AlignHCenter | Qt::AlignTop);
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::StrongFocus);
    setWidget(content);
    // The ring around the page is painted under it.
    content->setAutoFillBackground(false);
}

void ReadingPage::focusInEvent(QFocusEvent* event) {
    isReachedByKey_ =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    viewport()->update();
    QScrollArea::focusInEvent(event);
}

void ReadingPage::focusOutEvent(QFocusEvent* event) {
    viewport()->update();
    QScrollArea::focusOutEvent(event);
}

void ReadingPage::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::MoveToStartOfLine) ||
        event->matches(QKeySequence::MoveToStartOfDocument)) {
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMinimum);
    } else if (event->matches(QKeySequence::MoveToEndOfLine) ||
               event->matches(QKeySequence::MoveToEndOfDocument)) {
        verticalScrollBar()->triggerAction(QAbstractSlider::SliderToMaximum);
    } else {
        QScrollArea::keyPressEvent(event);
    }
}

void ReadingPage::paintEvent(QPaintEvent* event) {
    QScrollArea::paintEvent(event);
    if (hasFocus() && isReachedByKey_) {
        QPainter painter(viewport());
        paintFocusRing(painter, viewport()->rect(), Theme::Radius::control);
    }
}

}  // namespace TarvaneApp
