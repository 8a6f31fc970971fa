#include "Shell/Help/HelpSearch.h"

#include <QStringList>
#include <algorithm>

#include "Displays/RawText.h"
#include "Shell/Help/HelpBook.h"
#include "Shell/Help/Prose.h"

namespace TarvaneApp {

namespace {

QString wholeText(const HelpTopic& topic) {
    QStringList texts{utf8Text(topic.title), utf8Text(topic.summary)};
    for (const HelpBlock& block : topic.blocks) {
        for (const std::string& text : textsOf(block)) {
            texts << plainProse(text);
        }
    }
    return texts.join(u'\n');
}

// "gain" is no part of "again", but "cali" begins "calibration".
bool hasWord(const QString& text, const QString& beginning) {
    const bool isWord = beginning.front().isLetterOrNumber();
    qsizetype at = text.indexOf(beginning, 0, Qt::CaseInsensitive);
    while (at > 0 && isWord && text[at - 1].isLetterOrNumber()) {
        at = text.indexOf(beginning, at + 1, Qt::CaseInsensitive);
    }
    return at >= 0;
}

bool hasAll(const QString& text, const QStringList& words) {
    return std::ranges::all_of(words, [&text](const QString& word) { return hasWord(text, word); });
}

}  // namespace

std::vector<const HelpTopic*> helpTopicsWith(const QString& query) {
    const QStringList words = query.simplified().split(u' ', Qt::SkipEmptyParts);
    std::vector<const HelpTopic*> byTitle;
    std::vector<const HelpTopic*> byText;
    for (const HelpTopic& topic : allHelpTopics()) {
        if (hasAll(utf8Text(topic.title), words)) {
            byTitle.push_back(&topic);
        } else if (hasAll(wholeText(topic), words)) {
            byText.push_back(&topic);
        }
    }
    byTitle.insert(byTitle.end(), byText.begin(), byText.end());
    return byTitle;
}

}  // namespace TarvaneApp
