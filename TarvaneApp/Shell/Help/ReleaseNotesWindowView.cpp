#include "Shell/Help/ReleaseNotesWindowView.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QShortcut>
#include <QVBoxLayout>

#include "Displays/Plate.h"
#include "Displays/RawText.h"
#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/Divider.h"
#include "Shell/Controls/Icon.h"
#include "Shell/Controls/SpokenRole.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Help/HelpBlockView.h"
#include "Shell/Help/HelpLook.h"
#include "Shell/Help/ReadingLabel.h"
#include "Shell/Help/ReadingPage.h"
#include "Shell/Help/ReleaseNote.h"

namespace TarvaneApp {

namespace {

constexpr QSize smallestNotesSize(420, 360);
constexpr QSize firstNotesSize(620, 640);
constexpr double badgeTint = 0.18;

class Badge final : public QLabel {
  public:
    Badge(const QString& text, QWidget* parent) : QLabel(text, parent) {
        styleTextLabel(*this, HelpLook::badgeSize, Theme::accent);
        setFont(Typeface::installed().systemFont(HelpLook::badgeSize, QFont::Bold));
        setContentsMargins(Theme::Space::related, 2, Theme::Space::related, 2);
    }

  protected:
    void paintEvent(QPaintEvent* event) override {
        QPainter painter(this);
        paintPlate(painter, rect(), Theme::Radius::plate, Theme::faded(Theme::accent, badgeTint));
        painter.end();
        QLabel::paintEvent(event);
    }
};

}  // namespace

ReleaseNotesWindowView::ReleaseNotesWindowView() : QWidget(nullptr, Qt::Window) {
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowRole(QStringLiteral("release-notes"));
    setSpokenRole(*this, QAccessible::Window);
    setWindowTitle(QStringLiteral("What's New in Tarvane"));
    setWindowIcon(Icon::application());
    setMinimumSize(smallestNotesSize);
    resize(firstNotesSize);
    auto* page = new ReadingPage(this);
    page->setAccessibleName(windowTitle());
    layOutColumn(this, 0)->addWidget(page);
    QVBoxLayout& column = page->column();
    const auto& notes = releaseNotes();
    for (std::size_t i = 0; i < notes.size(); ++i) {
        addNote(column, notes[i], i == 0);
        if (i + 1 < notes.size()) {
            column.addSpacing(Theme::Space::label);
            column.addWidget(makeDivider(nullptr));
            column.addSpacing(Theme::Space::label);
        }
    }
    column.addStretch(1);
    connect(new QShortcut(QKeySequence::Cancel, this), &QShortcut::activated, this,
            &QWidget::close);
}

void ReleaseNotesWindowView::addNote(QVBoxLayout& column, const ReleaseNote& note, bool isNewest) {
    auto* head = new QHBoxLayout;
    head->setSpacing(Theme::Space::section);
    auto* version =
        new HeadingLabel(QStringLiteral("Version ") + utf8Text(note.version), Theme::Text::number);
    version->setWordWrap(false);
    version->setMinimumWidth(version->fontMetrics().horizontalAdvance(version->text()));
    version->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
    head->addWidget(version);
    auto* date = makeTextLabel(utf8Text(note.date), Theme::Text::body, Theme::axisText, nullptr);
    // On the base line of the version.
    date->setContentsMargins(0, 0, 0,
                             version->fontMetrics().descent() - date->fontMetrics().descent());
    head->addWidget(date, 0, Qt::AlignBottom);
    if (isNewest) {
        head->addWidget(new Badge(QStringLiteral("LATEST"), nullptr), 0, Qt::AlignVCenter);
    }
    head->addStretch(1);
    column.addLayout(head);
    column.addWidget(new HelpBlockView(HelpBlocks::Bullets{note.highlights}));
}

}  // namespace TarvaneApp
