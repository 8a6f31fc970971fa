#include "Shell/Panels/LevelHistoryExtremesSummary.h"

#include <QAbstractButton>
#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QPainter>
#include <cmath>

#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/TabularText.h"
#include "Displays/Theme.h"
#include "LiveDisplays/LiveLevelHistoryGraph.h"
#include "Shell/Controls/BareLayout.h"

namespace TarvaneApp {

using TarvaneKit::LevelHistoryExtreme;

namespace {

constexpr int margin = 6;  // holds the ring of the focus, too
constexpr int buttonHeight = 24;
constexpr double cornerRadius = 5.0;
constexpr double dimmed = 0.5;

}  // namespace

class LevelHistoryExtremesSummary::Button final : public QAbstractButton {
  public:
    Button(const QString& title, QWidget* parent) : QAbstractButton(parent), title_(title) {
        setAttribute(Qt::WA_Hover);
        setToolTip(QStringLiteral("Show this moment"));
        setFocusPolicy(Qt::TabFocus);
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        show(std::nullopt, {});
    }

    void show(const std::optional<LevelHistoryExtreme>& extreme, const QString& value) {
        elapsed_ = extreme ? extreme->elapsed : 0.0;
        setEnabled(extreme.has_value());
        if (value != value_ || text().isEmpty()) {
            value_ = value;
            setText(value.isEmpty() ? title_ : title_ + u' ' + value);
            updateGeometry();
            update();
        }
    }

    /// The moment of the extreme.
    double elapsed() const { return elapsed_; }

    QSize sizeHint() const override {
        const double width =
            TabularText::width(title_, titleFont()) +
            (value_.isEmpty() ? 0.0
                              : Theme::Space::related + TabularText::width(value_, valueFont()));
        return {static_cast<int>(std::ceil(width)) + 2 * margin, buttonHeight};
    }

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        if (isEnabled() && (underMouse() || isDown())) {
            paintPlate(painter, rect(), cornerRadius,
                       isDown() ? Theme::gridLine : Theme::controlBackground);
        }
        // Both texts share the base line of the larger one.
        const QFontMetricsF metrics(valueFont());
        const double baseline = (height() + metrics.capHeight()) / 2.0;
        painter.setOpacity(isEnabled() ? 1.0 : dimmed);
        painter.setPen(Theme::axisText);
        TabularText::draw(painter, QPointF(margin, baseline), title_, titleFont());
        // The level first; when it was stands behind it, quieter.
        const auto timeAt = value_.lastIndexOf(u' ') + 1;
        const QString level = value_.left(timeAt);
        const double left =
            margin + TabularText::width(title_, titleFont()) + Theme::Space::related;
        painter.setPen(Theme::primaryText);
        TabularText::draw(painter, QPointF(left, baseline), level, valueFont());
        painter.setPen(Theme::axisText);
        TabularText::draw(painter, QPointF(left + TabularText::width(level, valueFont()), baseline),
                          value_.mid(timeAt), valueFont());
        if (hasFocus()) {
            paintFocusRing(painter, rect(), cornerRadius - 1.0);
        }
    }

  private:
    static QFont titleFont() { return Typeface::installed().systemFont(Theme::Text::tick); }
    static QFont valueFont() { return Typeface::installed().systemFont(Theme::Text::caption); }

    const QString title_;
    QString value_;
    double elapsed_ = 0.0;
};

LevelHistoryExtremesSummary::LevelHistoryExtremesSummary(LiveLevelHistoryGraph& graph,
                                                         QWidget* parent)
    : QWidget(parent),
      graph_(graph),
      max_(new Button(QStringLiteral("MAX"), this)),
      min_(new Button(QStringLiteral("MIN"), this)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    auto* row = layOutRow(this, 0);
    for (Button* button : {max_, min_}) {
        row->addWidget(button);
        connect(button, &QAbstractButton::clicked, this,
                [this, button] { graph_.showMoment(button->elapsed()); });
    }
    connect(&graph, &LiveLevelHistoryGraph::historyChanged, this, [this] { showExtremes(); });
    showExtremes();
}

void LevelHistoryExtremesSummary::showExtremes() {
    const LevelHistoryView& view = graph_.view();
    const auto extremes = view.recorder->extremes(view.metricIndex);
    const auto show = [&](Button& button, const std::optional<LevelHistoryExtreme>& extreme) {
        button.show(extreme, extreme ? view.extremeLabel(*extreme) : QString());
    };
    show(*max_, extremes.max);
    show(*min_, extremes.min);
}

}  // namespace TarvaneApp
