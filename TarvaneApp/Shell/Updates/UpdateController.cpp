#include "Shell/Updates/UpdateController.h"

#include <QByteArray>
#include <QString>
#include <string_view>
#include <utility>

#include "Displays/RawText.h"
#include "Shell/Controls/NoteBar.h"
#include "Shell/Updates/UpdateFetch.h"
#include "Shell/Updates/UpdateOffer.h"

namespace TarvaneApp {

UpdateController::UpdateController(Environment environment)
    : environment_(std::move(environment)) {}

// One question at a time; the user's turns the launch's into theirs.
void UpdateController::check(bool isAskedFor) {
    isAskedFor_ = isAskedFor_ || isAskedFor;
    if (isAskedFor) {
        environment_.note.say(QStringLiteral("Looking for updates…"), {});
    }
    if (std::exchange(isChecking_, true)) {
        return;
    }
    environment_.fetch.fetch(environment_.feed, [this](const UpdateFetch::Answer& answer) {
        answered(answer.content, answer.failure);
    });
}

void UpdateController::answered(const QByteArray& content, const QString& failure) {
    isChecking_ = false;
    const bool isAskedFor = std::exchange(isAskedFor_, false);
    const auto tellIfAsked = [&](const QString& text) {
        if (isAskedFor) {
            environment_.note.say(text, {});
        }
    };
    if (!failure.isEmpty()) {
        tellIfAsked(QStringLiteral("Couldn't look for updates: ") + failure);
        return;
    }
    const auto offer = UpdateOffer::parse(
        std::string_view(content.constData(), static_cast<std::size_t>(content.size())));
    if (!offer) {
        tellIfAsked(QStringLiteral("Couldn't look for updates: the feed's answer is none"));
        return;
    }
    const QString running = utf8Text(environment_.runningVersion);
    if (!offer->isNewerThan(environment_.runningVersion)) {
        tellIfAsked(QStringLiteral("Tarvane %1 is the newest version.").arg(running));
        return;
    }
    // Nobody asked, and what stands there may be of more weight. The next launch tells it.
    if (!isAskedFor && !environment_.note.isHidden()) {
        return;
    }
    // The host is told ahead of the click, in letters that can't pass for others.
    const QUrl page(utf8Text(offer->page), QUrl::StrictMode);
    environment_.note.say(QStringLiteral("Tarvane %1 is available. This is %2.")
                              .arg(utf8Text(offer->version), running),
                          {{QStringLiteral("Open %1").arg(page.host(QUrl::FullyEncoded)),
                            [this, page] { environment_.openPage(page); }}});
}

}  // namespace TarvaneApp
