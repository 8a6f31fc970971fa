#include "Reports/LevelHistoryReportView.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <cmath>
#include <vector>

#include "ChannelViews/ChannelLevelHistory.h"
#include "Displays/LevelHistory/LevelHistoryDrawing.h"
#include "Engine/MeterEngine.h"
#include "Reports/ReportText.h"

namespace TarvaneApp {

using TarvaneKit::Date;
using TarvaneKit::UUID;

namespace {

constexpr double padding = 28.0;
constexpr QSizeF graphSize(LevelHistoryReportView::width - 2.0 * padding, 460.0);
constexpr double partSpacing = 20.0;
constexpr double lineSpacing = 5.0;
constexpr double sectionSpacing = 44.0;
constexpr double labelSpacing = 12.0;
constexpr double titleSize = 22.0;
constexpr double textSize = 12.0;
constexpr double footnoteSize = 10.0;

// A page is printed and enlarged: letters stand where their design puts them, and not on pixels.
// It is searched too, so that no two letters may become one sign: with any spacing between
// letters there are no ligatures.
QFont pageFont(QFont font) {
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setLetterSpacing(QFont::PercentageSpacing, 100.02);
    return font;
}

struct PlacedText {
    QRectF room;
    QString text;
    QFont font;
    QColor color;
};

// A text that is broken into lines goes on where a word ends, if it can. A name that is written
// from right to left turns neither its line nor what stands beside it.
QTextOption broken() {
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    option.setTextDirection(Qt::LeftToRight);
    return option;
}

// A name of thousands of letters would be all of its page.
QString shortened(const QString& text) {
    constexpr qsizetype longest = 600;
    return text.size() <= longest ? text : ReportText::cut(text, longest) + QChar(0x2026);
}

double heightOf(const QString& text, const QFont& font, double width) {
    QTextLayout layout(text, font);
    layout.setTextOption(broken());
    layout.beginLayout();
    double height = 0.0;
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        height += line.height();
    }
    layout.endLayout();
    return height;
}

// The largest width that columns of those natural widths may have so that all together fit.
double widestColumn(std::vector<double> natural, double room) {
    std::ranges::sort(natural);
    auto columns = static_cast<double>(natural.size());
    for (const double width : natural) {
        if (width * columns > room) {
            return room / columns;
        }
        room -= width;
        columns -= 1.0;
    }
    return natural.empty() ? 0.0 : natural.back();
}

// The page's texts, each in its place, and where the graph goes between them.
class PageLayout {
  public:
    PageLayout(const LevelHistoryReport& report, const Typeface& typeface)
        : text_(pageFont(typeface.systemFont(textSize))),
          heading_(pageFont(typeface.systemFont(textSize, QFont::DemiBold))) {
        const QFont title = pageFont(typeface.systemFont(titleSize, QFont::DemiBold));
        addText(report.title, title, Theme::primaryText);
        y_ += lineSpacing;
        addText(report.subtitle, text_, Theme::axisText);
        y_ += partSpacing;
        addSections(report.sections);
        y_ += partSpacing;
        graph_ = QRectF(QPointF(padding, y_), graphSize);
        y_ = graph_.bottom() + partSpacing;
        addText(report.footnote, pageFont(typeface.systemFont(footnoteSize)), Theme::axisText);
        y_ += padding;
    }

    const std::vector<PlacedText>& texts() const { return texts_; }
    const QRectF& graph() const { return graph_; }
    double height() const { return std::ceil(y_); }

  private:
    static double widthOf(const QString& text, const QFont& font) {
        return std::ceil(QFontMetricsF(font).horizontalAdvance(text)) + 1.0;
    }

    void addText(const QString& whole, const QFont& font, const QColor& color) {
        const QString text = shortened(whole);
        const double room = LevelHistoryReportView::width - 2.0 * padding;
        const double height = heightOf(text, font, room);
        texts_.push_back({.room = QRectF(padding, y_, room, height),
                          .text = text,
                          .font = font,
                          .color = color});
        y_ += height;
    }

    void addSections(const std::vector<LevelHistoryReport::Section>& sections) {
        double room = LevelHistoryReportView::width - 2.0 * padding;
        std::vector<double> natural;
        for (const auto& section : sections) {
            room -= labelWidth(section) + labelSpacing + sectionSpacing;
            natural.push_back(valueWidth(section));
        }
        const double widest = widestColumn(natural, room + sectionSpacing);
        double x = padding;
        double bottom = y_;
        for (const auto& section : sections) {
            x = addSection(section, x, widest, bottom) + sectionSpacing;
        }
        y_ = bottom;
    }

    // Returns its right edge, and moves `bottom` down to its own.
    double addSection(const LevelHistoryReport::Section& section, double x, double widest,
                      double& bottom) {
        double y = y_;
        const double lineHeight = QFontMetricsF(text_).height();
        texts_.push_back({.room = QRectF(x, y, widthOf(section.title, heading_), lineHeight),
                          .text = section.title,
                          .font = heading_,
                          .color = Theme::primaryText});
        y += lineHeight + lineSpacing;
        const double valueLeft = x + labelWidth(section) + labelSpacing;
        double right = x + widthOf(section.title, heading_);
        for (const auto& row : section.rows) {
            const QString value = shortened(row.value);
            const double width = std::min(widthOf(value, text_), widest);
            const double height = heightOf(value, text_, width);
            texts_.push_back({.room = QRectF(x, y, labelWidth(section), lineHeight),
                              .text = row.label,
                              .font = text_,
                              .color = Theme::axisText});
            texts_.push_back({.room = QRectF(valueLeft, y, width, height),
                              .text = value,
                              .font = text_,
                              .color = Theme::primaryText});
            right = std::max(right, valueLeft + width);
            y += std::max(height, lineHeight) + lineSpacing;
        }
        bottom = std::max(bottom, y - lineSpacing);
        return right;
    }

    double labelWidth(const LevelHistoryReport::Section& section) const {
        return widest(section, &LevelHistoryReport::Row::label);
    }
    double valueWidth(const LevelHistoryReport::Section& section) const {
        return widest(section, &LevelHistoryReport::Row::value);
    }
    double widest(const LevelHistoryReport::Section& section,
                  QString LevelHistoryReport::Row::*text) const {
        double width = 0.0;
        for (const auto& row : section.rows) {
            width = std::max(width, widthOf(shortened(row.*text), text_));
        }
        return width;
    }

    const QFont text_;
    const QFont heading_;
    std::vector<PlacedText> texts_;
    QRectF graph_;
    double y_ = padding;
};

}  // namespace

std::optional<LevelHistoryReportView> LevelHistoryReportView::page(const UUID& channelID,
                                                                   const MeterEngine& engine,
                                                                   Date exportDate) {
    auto report = LevelHistoryReport::make(engine, channelID, exportDate);
    if (!report) {
        return std::nullopt;
    }
    LevelHistoryView graph = channelLevelHistory(engine, *engine.findMeterChannel(channelID));
    graph.isInteractive = false;
    LevelHistoryGeometry geometry = layout(graph, graphSize);
    graph.recorder = nullptr;
    graph.lostAudio = nullptr;
    return LevelHistoryReportView{
        .report = std::move(*report), .graph = std::move(graph), .geometry = std::move(geometry)};
}

QSizeF LevelHistoryReportView::size(const Typeface& typeface) const {
    return {width, PageLayout(report, typeface).height()};
}

void LevelHistoryReportView::paint(QPainter& painter, const Typeface& typeface) const {
    const PageLayout layout(report, typeface);
    painter.save();
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing);
    painter.fillRect(QRectF(0.0, 0.0, width, layout.height()), Theme::background);
    for (const PlacedText& text : layout.texts()) {
        painter.setFont(text.font);
        painter.setPen(text.color);
        painter.drawText(text.room, text.text, broken());
    }
    painter.translate(layout.graph().topLeft());
    TarvaneApp::paint(painter, graph, geometry, typeface);
    painter.restore();
}

}  // namespace TarvaneApp
