#include "Shell/Help/HelpSidebar.h"

#include <QAction>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

#include "Displays/FocusRing.h"
#include "Displays/Plate.h"
#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Controls/WrappedLabel.h"
#include "Shell/Help/HelpBook.h"
#include "Shell/Help/HelpLook.h"
#include "Shell/Help/HelpNavigation.h"
#include "Shell/Help/HelpSearch.h"

namespace TarvaneApp {

namespace {

constexpr int rowHeight = 28;
constexpr int headingHeight = 34;

// The topic that is shown lies on a plate, as a chosen tab does, and has a ring with the focus.
class RowDelegate final : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const bool isSelected = (option.state & QStyle::State_Selected) != 0;
        if (isSelected) {
            painter->save();
            paintPlate(*painter, option.rect, Theme::Radius::control, Theme::gridLineStrong);
            painter->restore();
        }
        QStyleOptionViewItem plain = option;
        plain.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus | QStyle::State_MouseOver);
        QStyledItemDelegate::paint(painter, plain, index);
        if (isSelected && (option.state & QStyle::State_HasFocus) != 0) {
            paintFocusRing(*painter, option.rect, Theme::Radius::control - 1.0);
        }
    }
};

}  // namespace

HelpSidebar::HelpSidebar(HelpNavigation& navigation, QWidget* parent)
    : QWidget(parent),
      navigation_(navigation),
      search_(new QLineEdit(this)),
      list_(new QListWidget(this)),
      nothing_(new WrappedLabel(Theme::Text::body, HelpLook::bodyText, this)) {
    setAutoFillBackground(true);
    QPalette ground = palette();
    ground.setColor(QPalette::Window, Theme::panelBackground);
    setPalette(ground);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, Theme::Space::section, 0, 0);
    column->setSpacing(Theme::Space::row);
    auto* head = new QVBoxLayout;
    head->setContentsMargins(Theme::Space::section, 0, Theme::Space::section, 0);
    head->addWidget(search_);
    head->addWidget(nothing_);
    column->addLayout(head);
    auto* rows = new QVBoxLayout;
    rows->setContentsMargins(Theme::Space::row, 0, Theme::Space::label, 0);
    rows->addWidget(list_);
    column->addLayout(rows, 1);
    setFocusProxy(list_);

    search_->setPlaceholderText(QStringLiteral("Search"));
    search_->setAccessibleName(QStringLiteral("Search the help"));
    search_->setToolTip(QStringLiteral("Search the help (Ctrl+F)"));
    search_->setClearButtonEnabled(true);
    QAction* glass = search_->addAction(
        Icon::tinted(QStringLiteral("magnifyingglass"), Theme::Symbol::options, Theme::axisText),
        QLineEdit::LeadingPosition);
    glass->setText(QStringLiteral("Search"));
    connect(glass, &QAction::triggered, this, &HelpSidebar::search);
    search_->installEventFilter(this);
    connect(search_, &QLineEdit::textChanged, this, [this] { showTopics(); });

    nothing_->setText(QStringLiteral("No topic has these words."));

    list_->setAccessibleName(QStringLiteral("Topics"));
    list_->setFrameShape(QFrame::NoFrame);
    list_->setItemDelegate(new RowDelegate(list_));
    list_->setIconSize(QSize(Theme::Symbol::toolbar, Theme::Symbol::toolbar));
    list_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    list_->setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    QPalette colors = list_->palette();
    colors.setColor(QPalette::Base, Theme::panelBackground);
    list_->setPalette(colors);
    connect(list_, &QListWidget::itemSelectionChanged, this, [this] { select(); });
    showTopics();
    follow(navigation.selection, this, [this] { showSelection(); });
}

void HelpSidebar::search() {
    search_->setFocus(Qt::ShortcutFocusReason);
    search_->selectAll();
}

void HelpSidebar::showTopics() {
    const QSignalBlocker quiet(list_);
    list_->clear();
    if (search_->text().trimmed().isEmpty()) {
        for (const HelpGroup& group : helpGroups()) {
            addHeading(utf8Text(group.title));
            for (const HelpTopic& topic : group.topics) {
                addTopic(topic);
            }
        }
    } else {
        for (const HelpTopic* topic : helpTopicsWith(search_->text())) {
            addTopic(*topic);
        }
    }
    nothing_->setVisible(list_->count() == 0);
    showSelection();
}

// No key and no click stops at a heading.
void HelpSidebar::addHeading(const QString& title) {
    auto* item = new QListWidgetItem(title, list_);
    item->setFlags(Qt::NoItemFlags);
    item->setFont(Theme::sectionLabelFont());
    item->setForeground(Theme::axisText);
    item->setTextAlignment(Qt::AlignLeft | Qt::AlignBottom);
    item->setSizeHint(QSize(0, headingHeight));
}

void HelpSidebar::addTopic(const HelpTopic& topic) {
    auto* item = new QListWidgetItem(Icon::tinted(QString::fromStdString(topic.symbol),
                                                  Theme::Symbol::toolbar, Theme::primaryText),
                                     utf8Text(topic.title), list_);
    item->setFont(Typeface::installed().systemFont(HelpLook::bodySize));
    item->setToolTip(utf8Text(topic.summary));
    item->setSizeHint(QSize(0, rowHeight));
}

void HelpSidebar::showSelection() {
    const QSignalBlocker quiet(list_);
    const auto& selection = navigation_.selection();
    for (int row = 0; row < list_->count(); ++row) {
        QListWidgetItem* item = list_->item(row);
        if (selection && item->flags() != Qt::NoItemFlags && item->text() == utf8Text(*selection)) {
            list_->setCurrentItem(item);
            return;
        }
    }
    list_->setCurrentItem(nullptr);
    list_->clearSelection();
}

void HelpSidebar::select() {
    const auto selected = list_->selectedItems();
    if (selected.isEmpty()) {
        navigation_.selection.set(std::nullopt);
    } else {
        navigation_.selection.set(selected.front()->text().toStdString());
    }
}

// From the search field down into what it found, at the best hit.
void HelpSidebar::enterList() {
    for (int row = 0; row < list_->count(); ++row) {
        if (list_->item(row)->flags() != Qt::NoItemFlags) {
            list_->setCurrentRow(row);
            list_->setFocus(Qt::OtherFocusReason);
            return;
        }
    }
}

bool HelpSidebar::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress) {
        switch (static_cast<QKeyEvent*>(event)->key()) {
            case Qt::Key_Escape:
                search_->clear();
                return true;
            case Qt::Key_Down:
            case Qt::Key_Return:
            case Qt::Key_Enter:
                enterList();
                return true;
            default:
                break;
        }
    }
    return QWidget::eventFilter(watched, event);
}

}  // namespace TarvaneApp
