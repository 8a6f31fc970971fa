// Measures the library against the standards that it follows and writes what it found:
//
//     tarvane-conformance FOLDER [INSTRUCTION-SET]
//
// makes conformance.html and conformance.txt, for people, and conformance.md, which is the same on
// every machine. On the best instruction set of this machine, unless another one is named; the
// names are Highway's, as the report prints them. Ends with 1 when a figure is outside its limits
// and is no known exception.

#include <fmt/format.h>

#include <cstdio>
#include <exception>
#include <fstream>
#include <future>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "Build/Version.h"
#include "Chapters.h"
#include "DSP/Kernels/VectorTarget.h"
#include "HTMLReport.h"
#include "ReportWords.h"
#include "TextReport.h"

namespace {

using namespace TarvaneConformance;

std::vector<Chapter> measure() {
    std::vector<std::future<Chapter>> underWay;
    for (Chapter (*const chapter)() :
         {frequencyWeightings, timeWeightings, tonebursts, levelLinearity, peaksAndOverload,
          octaveBands, programmeLoudness, truePeak, loudnessRange}) {
        underWay.push_back(std::async(std::launch::async, chapter));
    }
    std::vector<Chapter> chapters;
    for (std::future<Chapter>& chapter : underWay) {
        chapters.push_back(chapter.get());
    }
    return chapters;
}

void useInstructionSet(const std::string& name) {
    std::string known;
    for (const TarvaneKit::VectorTarget& target : TarvaneKit::availableVectorTargets()) {
        if (target.name == name) {
            TarvaneKit::useVectorTarget(target);
            return;
        }
        known += ' ' + target.name;
    }
    throw std::runtime_error("this machine has no " + name + ", but" + known);
}

void write(const std::string& path, const std::string& text) {
    std::ofstream file(path, std::ios::binary);
    file << text;
    file.close();
    if (!file) {
        throw std::runtime_error("can't write " + path);
    }
}

int report(const std::string& folder) {
    const std::vector<Chapter> chapters = measure();
    const Build build{TarvaneApp::Build::version, TarvaneKit::vectorTargetInUse().name};
    write(folder + "/conformance.html", htmlReport(chapters, build));
    write(folder + "/conformance.txt", textReport(chapters, build));
    write(folder + "/conformance.md", textReport(chapters, std::nullopt));
    const Count count = countOf(chapters);
    fmt::print("{}\n", summaryOf(count));
    return count.outside == 0 ? 0 : 1;
}

}  // namespace

int main(int argumentCount, char** arguments) {
    if (argumentCount != 2 && argumentCount != 3) {
        std::fputs("Usage: tarvane-conformance FOLDER [INSTRUCTION-SET]\n", stderr);
        return 2;
    }
    try {
        if (argumentCount == 3) {
            useInstructionSet(arguments[2]);
        }
        return report(arguments[1]);
    } catch (const std::exception& error) {
        fmt::print(stderr, "tarvane-conformance: {}\n", error.what());
        return 2;
    }
}
