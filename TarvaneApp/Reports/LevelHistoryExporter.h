// The files that reports become: PDF, PNG, plain text. Which channels, which format and where is
// asked by the window. Pages are made on the main thread, files of them on any.
#pragma once

#include <QByteArray>
#include <QString>
#include <stdexcept>
#include <vector>

#include "Core/RawEnum.h"
#include "Core/UUID.h"
#include "Reports/LevelHistoryReportView.h"

namespace TarvaneApp {

class MeterEngine;

namespace LevelHistoryExporter {

enum class Format { pdf, png, text };

/// "pdf", "png", "txt"
QString fileExtension(Format format);

/// What goes wrong while a file is made or written; `what()` is a description for the user.
class Error : public std::runtime_error {
    using std::runtime_error::runtime_error;
};

inline constexpr const char* nothingRecorded =
    "There's no level history to export yet. Press Start to record a session.";
inline constexpr const char* nothingSelected =
    "The selected channels have no level history to export.";

/// The level history module's channel and its overlays, as far as they have something to export;
/// else the first channel that has.
std::vector<TarvaneKit::UUID> proposedChannels(const MeterEngine& engine);

/// The channels' pages, without those that have recorded nothing.
std::vector<LevelHistoryReportView> pages(const std::vector<TarvaneKit::UUID>& channelIDs,
                                          const MeterEngine& engine, TarvaneKit::Date exportDate);

/// The bytes of the whole file: a page per report in a document, all under each other in an image
/// of twice as many pixels as points. Throws an `Error` where it can't be drawn.
QByteArray render(Format format, const std::vector<LevelHistoryReportView>& pages);

/// All of it or nothing: whatever happens, a file that was there stays whole. Throws an `Error`.
void write(const QByteArray& bytes, const QString& path);

}  // namespace LevelHistoryExporter

}  // namespace TarvaneApp

/// As the format menu calls them.
template <>
struct TarvaneKit::RawCases<TarvaneApp::LevelHistoryExporter::Format> {
    using Format = TarvaneApp::LevelHistoryExporter::Format;
    static constexpr std::array all{RawCase{Format::pdf, "PDF Report"},
                                    RawCase{Format::png, "PNG Image"},
                                    RawCase{Format::text, "Summary Text"}};
};
