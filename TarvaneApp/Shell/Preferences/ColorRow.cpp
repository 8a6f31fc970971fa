#include "Shell/Preferences/ColorRow.h"

#include <QHBoxLayout>
#include <QLabel>

#include "Displays/Theme.h"
#include "Shell/Controls/BareLayout.h"
#include "Shell/Controls/TextLabel.h"
#include "Shell/Forms/ColorWell.h"
#include "Shell/Forms/FormSection.h"

namespace TarvaneApp {

namespace {

// The details of rows under each other begin in a column.
constexpr int titleWidth = 150;

// The title without what only points at the well, as "Color: Below all thresholds".
QString spokenName(const QString& title) {
    return QStringLiteral("Color: ") + QString(title).remove(QStringLiteral(" →"));
}

}  // namespace

FormRow& addColorRow(FormSection& section, const QString& title, std::function<QString()> detail,
                     FormValue<TarvaneKit::RGBAColor> color) {
    auto* holder = new QWidget(&section);
    auto* row = layOutRow(holder, Theme::Space::section);
    auto* name = makeTextLabel(title, Theme::Text::body, Theme::primaryText, holder);
    name->setMinimumWidth(titleWidth);
    row->addWidget(name);
    auto* note = makeTextLabel({}, Theme::Text::caption, Theme::axisText, holder);
    QSizePolicy place = note->sizePolicy();
    place.setRetainSizeWhenHidden(true);  // which keeps the well where the others are
    note->setSizePolicy(place);
    row->addWidget(note, 1);
    auto* well = new ColorWell(spokenName(title), std::move(color.set), holder);
    row->addWidget(well);
    return section.addControl({}, holder,
                              [well, note, detail = std::move(detail), get = std::move(color.get)] {
                                  note->setText(detail());
                                  note->setVisible(!note->text().isEmpty());
                                  well->setColor(get());
                              });
}

}  // namespace TarvaneApp
