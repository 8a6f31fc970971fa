#include "Reports/LevelHistoryExporter.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDateTime>
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
// Of some hundred pages. A larger image would take the machine's memory, and nothing opens it.
constexpr double mostImagePixels = 5e8;
// Points are a seventy-second of an inch. A finer grid than points lets letters stand in between.
constexpr int dotsPerInch = 1200;
constexpr double pointsPerInch = 72.0;

QPageSize pageSize(const QSizeF& size) {
    return QPageSize(size, QPageSize::Point, {}, QPageSize::ExactMatch);
}

QString programName() {
    return QCoreApplication::applicationName() + u' ' + QCoreApplication::applicationVersion();
}

// What the document's own entries say, in the form that archives read (ISO 16684-1), and the
// author, for which QPdfWriter has no entry.
QByteArray metadata(const QString& title) {
    const QDateTime now = QDateTime::currentDateTime();
    return QStringLiteral(
               "<?xpacket begin=\"\uFEFF\" id=\"W5M0MpCehiHzreSzNTczkc9d\"?>\n"
               "<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
               "<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
               "<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\""
               " xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\">\n"
               "<dc:title><rdf:Alt><rdf:li "
               "xml:lang=\"x-default\">%1</rdf:li></rdf:Alt></dc:title>\n"
               "<dc:creator><rdf:Seq><rdf:li>%2</rdf:li></rdf:Seq></dc:creator>\n"
               "<xmp:CreatorTool>%2</xmp:CreatorTool>\n"
               "<xmp:CreateDate>%3</xmp:CreateDate>\n"
               "</rdf:Description>\n</rdf:RDF>\n</x:xmpmeta>\n<?xpacket end=\"r\"?>\n")
        .arg(title.toHtmlEscaped(), programName().toHtmlEscaped(),
             now.toOffsetFromUtc(now.offsetFromUtc()).toString(Qt::ISODate))
        .toUtf8();
}

QByteArray document(const std::vector<LevelHistoryReportView>& pages) {
    QBuffer bytes;
    bytes.open(QIODevice::WriteOnly);
    QPdfWriter writer(&bytes);
    writer.setResolution(dotsPerInch);
    writer.setTitle(pages.front().report.title);
    writer.setCreator(programName());
    writer.setDocumentXmpMetadata(metadata(pages.front().report.title));
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
    std::vector<QSize> sizes;
    QSize whole(0, 0);
    for (const LevelHistoryReportView& page : pages) {
        sizes.push_back((page.size() * imageScale).toSize());
        whole = QSize(sizes.back().width(), whole.height() + sizes.back().height());
    }
    if (static_cast<double>(whole.width()) * whole.height() > mostImagePixels) {
        throw Error(notRendered);
    }
    QImage picture(whole, QImage::Format_RGB32);
    if (picture.isNull()) {
        throw Error(notRendered);
    }
    // A page is a part of the picture with a painter of its own: none of them draws beyond row
    // 32767.
    int top = 0;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        QImage part(picture.scanLine(top), sizes[i].width(), sizes[i].height(),
                    picture.bytesPerLine(), picture.format());
        QPainter painter(&part);
        painter.scale(imageScale, imageScale);
        pages[i].paint(painter);
        top += sizes[i].height();
    }
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
    const auto failed = [&file] { return Error(file.errorString().toStdString()); };
    if (!file.open(QIODevice::WriteOnly)) {
        throw failed();
    }
    // A full disk takes what it can; only the next write says why.
    for (QByteArrayView left = bytes; !left.isEmpty();) {
        const qint64 taken = file.write(left.data(), left.size());
        if (taken <= 0) {
            throw failed();
        }
        left = left.sliced(taken);
    }
    if (!file.commit()) {
        throw failed();
    }
}

}  // namespace TarvaneApp::LevelHistoryExporter
