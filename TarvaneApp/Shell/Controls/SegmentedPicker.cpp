#include "Shell/Controls/SegmentedPicker.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>

#include "Displays/Theme.h"
#include "Shell/Controls/PickedTabStop.h"

namespace TarvaneApp {

namespace {

class Segment final : public QAbstractButton {
  public:
    Segment(const QString& label, QWidget* parent) : QAbstractButton(parent) {
        setText(label);
        setCheckable(true);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }
    QSize sizeHint() const override { return {20, Theme::controlHeight}; }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QRectF body = QRectF(rect()).adjusted(2, 2, -2, -2);
        if (isChecked()) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(Theme::accent);
            painter.drawRoundedRect(body, Theme::Radius::control - 2.0,
                                    Theme::Radius::control - 2.0);
        }
        painter.setFont(Typeface::installed().systemFont(Theme::Text::title));
        painter.setPen(isChecked() || isDown() ? Theme::primaryText : Theme::axisText);
        painter.drawText(rect(), Qt::AlignCenter, text());
        if (hasFocus()) {
            painter.setPen(QPen(isChecked() ? Theme::primaryText : Theme::accent, 2.0));
            painter.setBrush(Qt::NoBrush);
            painter.drawRoundedRect(body.adjusted(1, 1, -1, -1), Theme::Radius::control - 3.0,
                                    Theme::Radius::control - 3.0);
        }
    }
};

}  // namespace

SegmentedPicker::SegmentedPicker(const QStringList& labels, int width,
                                 std::function<void(int)> onPick, QWidget* parent)
    : QWidget(parent) {
    setFixedSize(width, Theme::controlHeight);
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(0);
    for (int i = 0; i < labels.size(); ++i) {
        auto* segment = new Segment(labels[i], this);
        group_.addButton(segment, i);
        row->addWidget(segment);
    }
    stopTabAtPicked(group_);
    connect(&group_, &QButtonGroup::idToggled, this,
            [this, onPick = std::move(onPick)](int index, bool checked) {
                if (checked) {
                    stopTabAtPicked(group_);
                    onPick(index);
                }
            });
}

void SegmentedPicker::setSelectedIndex(int index) {
    if (QAbstractButton* segment = group_.button(index); segment && !segment->isChecked()) {
        const QSignalBlocker quiet(group_);
        segment->setChecked(true);
        stopTabAtPicked(group_);
        update();
    }
}

void SegmentedPicker::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Theme::controlBackground);
    painter.drawRoundedRect(rect(), Theme::Radius::control, Theme::Radius::control);
}

}  // namespace TarvaneApp
