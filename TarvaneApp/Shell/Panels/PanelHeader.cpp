#include "Panels/PanelHeader.h"

#include <QLabel>

#include "Theme.h"

namespace TarvaneApp {

namespace {

constexpr int paddingAcross = 16;
constexpr int paddingUpDown = 8;
constexpr int spacing = 16;
constexpr double letterSpacing = 0.5;

}  // namespace

PanelHeader::PanelHeader(const QString& title, QWidget* parent)
    : QWidget(parent), row_(new QHBoxLayout(this)) {
    row_->setContentsMargins(paddingAcross, paddingUpDown, paddingAcross, paddingUpDown);
    row_->setSpacing(spacing);
    auto* label = new QLabel(title.toUpper(), this);
    QFont font = Theme::sectionLabelFont();
    font.setLetterSpacing(QFont::AbsoluteSpacing, letterSpacing);
    label->setFont(font);
    QPalette palette = label->palette();
    palette.setColor(QPalette::WindowText, Theme::axisText);
    label->setPalette(palette);
    row_->addWidget(label);
}

}  // namespace TarvaneApp
