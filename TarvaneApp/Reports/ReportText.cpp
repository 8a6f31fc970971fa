#include "Reports/ReportText.h"

#include <QTextBoundaryFinder>
#include <algorithm>
#include <chrono>
#include <cmath>

#include "Displays/RawText.h"

namespace TarvaneApp::ReportText {

using TarvaneKit::Date;

namespace {

// Of the 255 bytes that a file's name has on Linux, what "Level History", the date, an extension
// and the ending of a file that is being written leave over.
constexpr qsizetype longestNameBytes = 200;

bool endsLine(QChar character) {
    const auto category = character.category();
    return category == QChar::Other_Control || category == QChar::Separator_Line ||
           category == QChar::Separator_Paragraph;
}

// Marks, embeddings, overrides and isolates of Unicode's bidirectional algorithm; and the two codes
// that are no character, and may be in no document.
bool isNoLetter(QChar character) {
    const char16_t code = character.unicode();
    return code == 0x061C || code == 0x200E || code == 0x200F ||
           (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069) ||
           code >= 0xFFFE;
}

}  // namespace

QDateTime localTime(Date date) {
    using namespace std::chrono;
    return QDateTime::fromMSecsSinceEpoch(floor<milliseconds>(date).time_since_epoch().count());
}

Date later(Date date, double seconds) {
    return date + std::chrono::round<Date::duration>(std::chrono::duration<double>(seconds));
}

QString dateTime(Date date) {
    return localTime(date).toString(QStringLiteral("yyyy-MM-dd HH:mm:ss"));
}

QString time(Date date) {
    return localTime(date).toString(QStringLiteral("HH:mm:ss"));
}

QString fileName(Date date) {
    return localTime(date).toString(QStringLiteral("yyyy-MM-dd HHmm"));
}

QString number(double value) {
    return QString::number(value, 'g', 6);
}

QString level(double value, const QString& unit) {
    return std::isfinite(value) ? QString::number(value, 'f', 1) + u' ' + unit
                                : QStringLiteral("—");
}

QString name(std::string_view text) {
    QString result;
    for (const QChar character : utf8Text(text)) {
        if (!isNoLetter(character)) {
            result += endsLine(character) ? QChar(u' ') : character;
        }
    }
    return result;
}

QString cut(const QString& text, qsizetype length) {
    QTextBoundaryFinder characters(QTextBoundaryFinder::Grapheme, text);
    characters.setPosition(std::min(length, text.size()));
    if (!characters.isAtBoundary()) {
        characters.toPreviousBoundary();
    }
    return text.left(characters.position());
}

QString nameInFileName(const QString& name) {
    QString result = QString(name).replace(u'/', u'-');
    while (result.toUtf8().size() > longestNameBytes) {
        result = cut(result, std::min(result.size() - 1, longestNameBytes));
    }
    return result;
}

}  // namespace TarvaneApp::ReportText
