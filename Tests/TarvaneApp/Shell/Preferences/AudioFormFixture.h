// The audio tab of a settings window, and ways to what it shows: a channel's section by its id,
// rows by their labels.
#pragma once

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "Shell/Preferences/ChannelSection.h"
#include "Shell/Preferences/PreferencesWindow.h"
#include "TarvaneApp/Engine/EngineFixture.h"
#include "TarvaneApp/Profiles/TestProfiles.h"

namespace TarvaneTests {

class AudioFormFixture : public EngineFixture {
  protected:
    AudioFormFixture() { openWindow(); }
    ~AudioFormFixture() override { window.reset(); }

    void openWindow() {
        window = std::make_unique<TarvaneApp::PreferencesWindow>(
            TarvaneApp::PreferencesWindow::Environment{
                .engine = *engine,
                .profiles = profiles.store,
                .store = store,
                .openChannelWindow = [this](const TarvaneKit::UUID& id) {
                    openedChannelWindows.push_back(id);
                }});
        window->show();
        settle();
    }
    // The program ends and starts again.
    void relaunch() {
        window.reset();
        makeEngine();
        openWindow();
    }

    TarvaneApp::ChannelSection& section(const TarvaneKit::UUID& id = TarvaneKit::UUID::main()) {
        for (auto* section : window->findChildren<TarvaneApp::ChannelSection*>()) {
            if (section->channelID() == id && !section->isHidden()) {
                return *section;
            }
        }
        throw std::logic_error("the channel has no section");
    }
    // The channel's section, unfolded.
    TarvaneApp::ChannelSection& unfolded(const TarvaneKit::UUID& id) {
        auto& found = section(id);
        found.setExpanded(true);
        settle();
        return found;
    }

    static QGroupBox* group(QWidget& in, const char* title) {
        for (auto* box : in.findChildren<QGroupBox*>()) {
            if (box->title() == QString::fromUtf8(title)) {
                return box;
            }
        }
        return nullptr;
    }
    static bool isGroupShown(QWidget& in, const char* title) {
        const QGroupBox* box = group(in, title);
        return box != nullptr && box->isVisible();
    }

    // The control behind a label; null where the row isn't shown.
    static QWidget* row(QWidget& in, const char* label) {
        for (const auto* rows : in.findChildren<QFormLayout*>()) {
            for (int i = 0; i < rows->rowCount(); ++i) {
                const auto* item = rows->itemAt(i, QFormLayout::LabelRole);
                const auto* field = rows->itemAt(i, QFormLayout::FieldRole);
                const auto* text =
                    item != nullptr ? qobject_cast<QLabel*>(item->widget()) : nullptr;
                if (text != nullptr && text->isVisible() && field != nullptr &&
                    text->text().replace(QStringLiteral("&&"), QStringLiteral("&")) ==
                        QString::fromUtf8(label)) {
                    return field->widget();
                }
            }
        }
        return nullptr;
    }
    template <class Control>
    static Control& control(QWidget& in, const char* label) {
        QWidget* found = row(in, label);
        auto* own = qobject_cast<Control*>(found);
        auto* control = own != nullptr     ? own
                        : found != nullptr ? found->findChild<Control*>()
                                           : nullptr;
        if (control == nullptr) {
            throw std::logic_error(std::string("there is no row ") + label);
        }
        return *control;
    }
    static QComboBox& picker(QWidget& in, const char* label) {
        return control<QComboBox>(in, label);
    }
    static QSlider& slider(QWidget& in, const char* label) { return control<QSlider>(in, label); }
    static QString reading(QWidget& in, const char* label) {
        return control<QLabel>(in, label).text();
    }
    static QCheckBox& toggle(QWidget& in, const char* text) {
        for (auto* box : in.findChildren<QCheckBox*>()) {
            if (box->text() == QString::fromUtf8(text)) {
                return *box;
            }
        }
        throw std::logic_error(std::string("there is no toggle ") + text);
    }
    static QPushButton& button(QWidget& in, const char* text) {
        for (auto* found : in.findChildren<QPushButton*>()) {
            if (found->text() == QString::fromUtf8(text)) {
                return *found;
            }
        }
        throw std::logic_error(std::string("there is no button ") + text);
    }
    // Whether a text stands on the screen that begins like that.
    static bool says(QWidget& in, const char* beginning) {
        for (const auto* label : in.findChildren<QLabel*>()) {
            if (label->isVisible() && label->text().startsWith(QString::fromUtf8(beginning))) {
                return true;
            }
        }
        return false;
    }

    static QStringList entries(const QComboBox& combo) {
        QStringList texts;
        for (int i = 0; i < combo.count(); ++i) {
            texts.append(combo.itemText(i));
        }
        return texts;
    }
    static void pick(QComboBox& combo, const char* text) {
        const int index = combo.findText(QString::fromUtf8(text));
        if (index < 0) {
            throw std::logic_error(std::string("there is no entry ") + text);
        }
        combo.setCurrentIndex(index);
        Q_EMIT combo.activated(index);
    }

    // Sound on every input of the default input's device, with its publications: a second of it
    // unless told otherwise.
    void play(double frequencyHz, double amplitude, double seconds = 1.0) {
        for (int block = 0; block < static_cast<int>(seconds * 20.0); ++block) {
            audio.feed("", {sine(frequencyHz, amplitude, 2400, played_)});
            played_ += 2400;
            clock.advance(0.05);
            tick();
        }
    }

    std::vector<TarvaneKit::UUID> openedChannelWindows;
    TestProfiles profiles{store, clock};
    std::unique_ptr<TarvaneApp::PreferencesWindow> window;

  private:
    int played_ = 0;
};

}  // namespace TarvaneTests
