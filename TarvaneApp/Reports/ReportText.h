// Times, numbers and names as reports write them.
#pragma once

#include <QDateTime>
#include <QString>
#include <string_view>

#include "Core/Date.h"

namespace TarvaneApp::ReportText {

/// On the machine's wall clock.
QDateTime localTime(TarvaneKit::Date date);
TarvaneKit::Date later(TarvaneKit::Date date, double seconds);

/// "2026-03-01 21:05:00"
QString dateTime(TarvaneKit::Date date);
/// "21:05:00"
QString time(TarvaneKit::Date date);
/// "2026-03-01 2105", for the name of a file
QString fileName(TarvaneKit::Date date);

/// The shortest form of a number, as C's %g writes it.
QString number(double value);
/// With one decimal and the unit behind a blank; "—" for a value that is not finite.
QString level(double value, const QString& unit);

/// A name that somebody gave, as it stands within a line: what would end the line or turn its
/// direction is not of the name.
QString name(std::string_view text);
/// At most so many of the first characters, and none of them halved.
QString cut(const QString& text, qsizetype length);
/// A name within the name of a file: without "/", and so short that the whole can be written.
QString nameInFileName(const QString& name);

}  // namespace TarvaneApp::ReportText
