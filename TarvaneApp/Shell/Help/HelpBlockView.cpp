#include "Shell/Help/HelpBlockView.h"

#include <QGridLayout>
#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

#include "Displays/Plate.h"
#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Help/HelpLook.h"
#include "Shell/Help/ReadingLabel.h"

namespace TarvaneApp {

namespace {

using namespace HelpBlocks;

constexpr int aboveHeading = 8;
constexpr int itemSpacing = 6;
constexpr int numberWidth = 24;
constexpr int tipPadding = 12;
constexpr int tipIcon = 18;
constexpr double tipTint = 0.14;
constexpr int keysWidth = 176;

class TipPlate final : public QWidget {
  public:
    using QWidget::QWidget;

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintPlate(painter, rect(), Theme::Radius::panel, Theme::faded(Theme::accent, tipTint));
    }
};

// Texts under each other, each with its mark in a column of its own.
class Items {
  public:
    Items(QWidget& holder, int markWidth) : holder_(holder), rows_(new QGridLayout(&holder)) {
        rows_->setContentsMargins(0, 0, 0, 0);
        rows_->setHorizontalSpacing(Theme::Space::row);
        rows_->setVerticalSpacing(itemSpacing);
        rows_->setColumnMinimumWidth(0, markWidth);
        rows_->setColumnStretch(1, 1);
        markWidth_ = markWidth;
    }

    void add(const QString& mark, QFont::Weight weight, std::string_view text) {
        const int row = rows_->rowCount();
        auto* label = makeReadingLabel(mark, HelpLook::bodySize, Theme::primaryText, &holder_);
        label->setFont(Typeface::installed().systemFont(HelpLook::bodySize, weight));
        label->setFixedWidth(markWidth_);
        rows_->addWidget(label, row, 0, Qt::AlignTop);
        rows_->addWidget(makeProseLabel(text, &holder_), row, 1);
    }

  private:
    QWidget& holder_;
    QGridLayout* rows_;
    int markWidth_ = 0;
};

struct Fill {
    QWidget& view;

    void operator()(const Paragraph& block) const {
        layOutColumn(&view, 0)->addWidget(makeProseLabel(block.text, &view));
    }

    void operator()(const Heading& block) const {
        auto* column = layOutColumn(&view, 0);
        column->setContentsMargins(0, aboveHeading, 0, 0);
        column->addWidget(new HeadingLabel(utf8Text(block.text), HelpLook::headingSize, &view));
    }

    void operator()(const Steps& block) const {
        Items items(view, numberWidth);
        for (std::size_t i = 0; i < block.items.size(); ++i) {
            items.add(QString::number(i + 1), QFont::Bold, block.items[i]);
        }
    }

    void operator()(const Bullets& block) const {
        Items items(view, numberWidth);
        for (const std::string& item : block.items) {
            items.add(QStringLiteral("•"), QFont::Bold, item);
        }
    }

    void operator()(const Tip& block) const {
        auto* plate = new TipPlate(&view);
        layOutColumn(&view, 0)->addWidget(plate);
        auto* row = layOutRow(plate, tipPadding);
        row->setContentsMargins(tipPadding, tipPadding, tipPadding, tipPadding);
        auto* icon = new QLabel(plate);
        icon->setPixmap(Icon::tinted(QStringLiteral("lightbulb"), tipIcon, Theme::accent)
                            .pixmap(QSize(tipIcon, tipIcon), view.devicePixelRatioF()));
        icon->setAccessibleName(QStringLiteral("Tip"));
        row->addWidget(icon, 0, Qt::AlignTop);
        row->addWidget(makeProseLabel(block.text, plate), 1);
    }

    void operator()(const Shortcuts& block) const {
        Items items(view, keysWidth);
        for (const Shortcut& shortcut : block.rows) {
            items.add(utf8Text(shortcut.keys), QFont::Medium, shortcut.action);
        }
    }
};

}  // namespace

HelpBlockView::HelpBlockView(const HelpBlock& block, QWidget* parent) : QWidget(parent) {
    std::visit(Fill{*this}, block);
}

}  // namespace TarvaneApp
