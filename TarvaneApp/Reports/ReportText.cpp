#include "Reports/ReportText.h"

#include <chrono>
#include <cmath>

namespace TarvaneApp::ReportText {

using TarvaneKit::Date;

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

}  // namespace TarvaneApp::ReportText
