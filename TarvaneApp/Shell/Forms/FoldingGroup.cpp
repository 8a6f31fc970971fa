#include "Shell/Forms/FoldingGroup.h"

#include <QAbstractButton>
#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/SpokenRole.h"

namespace TarvaneApp {

namespace {

constexpr int headerHeight = 34;

class FoldingHeader final : public QAbstractButton {
  public:
    explicit FoldingHeader(QWidget* parent) : QAbstractButton(parent) {
        setAttribute(Qt::WA_Hover);
        setFocusPolicy(Qt::TabFocus);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        setMinimumHeight(headerHeight);
    }

    QSize sizeHint() const override { return {minimumWidth(), headerHeight}; }

    void setExpanded(bool isExpanded) {
        isExpanded_ = isExpanded;
        const QString help = isExpanded ? QStringLiteral("Collapse") : QStringLiteral("Expand");
        setToolTip(help);
        sayWhatAPressDoes();
        update();
    }

    void setTitle(const QString& title) {
        title_ = title;
        sayWhatAPressDoes();
    }

    static constexpr int symbolRoom = Theme::Space::section + Theme::Symbol::chevron;

  protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintPlate(painter, rect(), Theme::Radius::control,
                   underMouse() ? Theme::gridLine : Theme::controlBackground);
        // The same symbol, turned.
        Icon::paint(painter,
                    isExpanded_ ? QStringLiteral("chevron.down") : QStringLiteral("chevron.right"),
                    QRectF(Theme::Space::section, (height() - Theme::Symbol::chevron) / 2.0,
                           Theme::Symbol::chevron, Theme::Symbol::chevron),
                    Theme::axisText);
        if (hasFocus()) {
            paintFocusRing(painter, rect(), Theme::Radius::control);
        }
    }

  private:
    // Of several groups in a form each must tell its own.
    void sayWhatAPressDoes() {
        setAccessibleName(title_.isEmpty() ? toolTip() : toolTip() + u' ' + title_);
    }

    bool isExpanded_ = false;
    QString title_;
};

}  // namespace

FoldingGroup::FoldingGroup(MakeContent makeContent, QWidget* parent)
    : QWidget(parent),
      makeContent_(std::move(makeContent)),
      header_(new FoldingHeader(this)),
      headerRow_(new QHBoxLayout(header_)) {
    setSpokenRole(*this, QAccessible::Grouping);
    headerRow_->setContentsMargins(FoldingHeader::symbolRoom + Theme::Space::row, 0,
                                   Theme::Space::section, 0);
    headerRow_->setSpacing(Theme::Space::row);
    layOutColumn(this, Theme::Space::section)->addWidget(header_);
    connect(header_, &QAbstractButton::clicked, this, [this] {
        setExpanded(!isExpanded_);
        Q_EMIT folded(isExpanded_);
    });
    setExpanded(false);
}

void FoldingGroup::setExpanded(bool isExpanded) {
    isExpanded_ = isExpanded;
    if (isExpanded && content_ == nullptr) {
        content_ = makeContent_(this);
        layout()->addWidget(content_);
    }
    if (content_ != nullptr) {
        content_->setVisible(isExpanded);
    }
    static_cast<FoldingHeader*>(header_)->setExpanded(isExpanded);
}

void FoldingGroup::setTitle(const QString& title) {
    setAccessibleName(title);
    static_cast<FoldingHeader*>(header_)->setTitle(title);
}

}  // namespace TarvaneApp
