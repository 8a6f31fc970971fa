#include "Reports/LevelHistoryExporter.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QFileInfo>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSaveFile>
#include <algorithm>
#include <cmath>

#include "Engine/MeterEngine.h"

namespace TarvaneApp::LevelHistoryExporter {

using TarvaneKit::Date;
using TarvaneKit::UUID;

namespace {

constexpr const char* notRendered = "The report couldn't be rendered.";

constexpr double imageScale = 2.0;
// Points are a seventy-second of an inch. A finer grid than points lets letters stand in between.
constexpr int dotsPerInch = 1200;
constexpr double pointsPerInch = 72.0;

QPageSize pageSize(const QSizeF& size) {
    return QPageSize(size, QPageSize::Point, {}, QPageSize::ExactMatch);
}

QByteArray document(const std::vector<LevelHistoryReportView>& pages) {
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    QPdfWriter writer(&bytes);
    writer.setResolution(dotsPerInch);
    writer.setTitle(pages.front().report.title);
    writer.setCreator(QCoreApplication::applicationName() + u' ' +
                      QCoreApplication::applicationVersion());
    writer.setPageMargins(QMarginsF());
    QPainter painter;
    for (const LevelHistoryReportView& page : pages) {
        writer.setPageSize(pageSize(page.size()));
        if (painter.isActive() ? !writer.newPage() : !painter.begin(&writer)) {
            throw Error(notRendered);
        }
        painter.resetTransform();
        painter.scale(dotsPerInch / pointsPerInch, dotsPerInch / pointsPerInch);
        page.paint(painter);
    }
    painter.end();
    return bytes.data();
}

QByteArray image(const std::vector<LevelHistoryReportView>& pages) {
    double height = 0.0;
    for (const LevelHistoryReportView& page : pages) {
        height += page.size().height();
    }
    QImage picture(QSizeF(LevelHistoryReportView::width * imageScale, height * imageScale).toSize(),
                   QImage::Format_RGB32);
    QPainter painter;
    if (picture.isNull() || !painter.begin(&picture)) {
        throw Error(notRendered);
    }
    painter.scale(imageScale, imageScale);
    for (const LevelHistoryReportView& page : pages) {
        page.paint(painter);
        painter.translate(0.0, page.size().height());
    }
    painter.end();
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    if (!picture.save(&bytes, "PNG")) {
        throw Error(notRendered);
    }
    return bytes.data();
}

QByteArray plainText(const std::vector<LevelHistoryReportView>& pages) {
    std::vector<LevelHistoryReport> reports;
    for (const LevelHistoryReportView& page : pages) {
        reports.push_back(page.report);
    }
    return LevelHistoryReport::plainText(reports).toUtf8();
}

}  // namespace

QString fileExtension(Format format) {
    switch (format) {
        case Format::pdf:
            return QStringLiteral("pdf");
        case Format::png:
            return QStringLiteral("png");
        case Format::text:
            break;
    }
    return QStringLiteral("txt");
}

std::vector<UUID> proposedChannels(const MeterEngine& engine) {
    const auto exportable = LevelHistoryReport::exportableChannels(engine);
    std::vector<UUID> shown = engine.levelHistoryOverlayChannelIDs();
    shown.push_back(engine.resolvedChannelID(
        engine.levelHistoryChannelID().value_or(engine.splMeterChannelID())));
    std::vector<UUID> proposed;
    for (const ChannelInfo& channel : exportable) {
        if (std::ranges::find(shown, channel.id) != shown.end()) {
            proposed.push_back(channel.id);
        }
    }
    if (proposed.empty() && !exportable.empty()) {
        proposed.push_back(exportable.front().id);
    }
    return proposed;
}

std::vector<LevelHistoryReportView> pages(const std::vector<UUID>& channelIDs,
                                          const MeterEngine& engine, Date exportDate) {
    std::vector<LevelHistoryReportView> pages;
    for (const UUID& id : channelIDs) {
        if (auto page = LevelHistoryReportView::page(id, engine, exportDate)) {
            pages.push_back(std::move(*page));
        }
    }
    return pages;
}

QByteArray render(Format format, const std::vector<LevelHistoryReportView>& pages) {
    if (pages.empty()) {
        throw Error(notRendered);
    }
    switch (format) {
        case Format::pdf:
            return document(pages);
        case Format::png:
            return image(pages);
        case Format::text:
            break;
    }
    return plainText(pages);
}

void write(const QByteArray& bytes, const QString& path) {
    // The way in which the old file is kept would put a file in the place of a device.
    if (const QFileInfo there(path); there.exists() && !there.isFile()) {
        throw Error("There is something of that name that is not a file.");
    }
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.commit()) {
        throw Error(file.errorString().toStdString());
    }
}

}  // namespace TarvaneApp::LevelHistoryExporter
