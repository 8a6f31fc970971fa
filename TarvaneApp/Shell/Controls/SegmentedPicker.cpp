#include "Shell/Controls/SegmentedPicker.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>

#include "Displays/Contrast.h"
#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/PickedTabStop.h"

namespace TarvaneApp {

namespace {

constexpr double segmentInset = 2.0;  // of a segment in the picker

class Segment final : public QAbstractButton {
  public:
    Segment(const QString& label, QWidget* parent) : QAbstractButton(parent) {
        setText(label);
        setCheckable(true);
        setAttribute(Qt::WA_Hover);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }
    QSize sizeHint() const override { return {20, Theme::controlHeight}; }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const QRectF body =
            QRectF(rect()).adjusted(segmentInset, segmentInset, -segmentInset, -segmentInset);
        if (isChecked()) {
            paintPlate(painter, body, Theme::Radius::control - segmentInset, Theme::accent);
        }
        painter.setFont(Typeface::installed().systemFont(Theme::Text::title));
        painter.setPen(isChecked()                ? Contrast::textOn(Theme::accent)
                       : isDown() || underMouse() ? Theme::primaryText
                                                  : Theme::axisText);
        painter.drawText(rect(), Qt::AlignCenter, text());
        if (hasFocus()) {
            paintFocusRing(painter, body, Theme::Radius::control - segmentInset - 1.0,
                           isChecked() ? Contrast::textOn(Theme::accent) : Theme::accent);
        }
    }
};

}  // namespace

SegmentedPicker::SegmentedPicker(const QStringList& labels, int width,
                                 std::function<void(int)> onPick, QWidget* parent)
    : QWidget(parent) {
    setFixedSize(width, Theme::controlHeight);
    auto* row = layOutRow(this, 0);
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
    paintPlate(painter, rect(), Theme::Radius::control, Theme::controlBackground);
}

}  // namespace TarvaneApp
