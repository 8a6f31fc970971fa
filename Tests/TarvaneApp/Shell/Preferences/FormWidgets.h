// Finding the controls of a form by what a user calls them.
#pragma once

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QSlider>
#include <QStringList>
#include <QWidget>
#include <stdexcept>
#include <string>

namespace TarvaneTests {

/// The visible widget with that accessible name.
template <class Widget>
Widget& named(const QWidget& form, const QString& name) {
    for (Widget* widget : form.findChildren<Widget*>()) {
        if (widget->accessibleName() == name && widget->isVisible()) {
            return *widget;
        }
    }
    throw std::logic_error("nothing is called " + name.toStdString());
}

inline QAbstractButton& button(const QWidget& form, const QString& text) {
    for (QAbstractButton* each : form.findChildren<QAbstractButton*>()) {
        if (each->text() == text && each->isVisible()) {
            return *each;
        }
    }
    throw std::logic_error("no button says " + text.toStdString());
}

/// Every text that can be read.
inline QStringList labels(const QWidget& form) {
    QStringList texts;
    for (const QLabel* label : form.findChildren<QLabel*>()) {
        if (label->isVisible()) {
            texts.append(label->text());
        }
    }
    return texts;
}

inline QStringList entries(const QComboBox& combo) {
    QStringList texts;
    for (int i = 0; i < combo.count(); ++i) {
        texts.append(combo.itemText(i));
    }
    return texts;
}

inline void pick(QComboBox& combo, const QString& text) {
    const int index = combo.findText(text);
    if (index < 0) {
        throw std::logic_error("no entry says " + text.toStdString());
    }
    combo.setCurrentIndex(index);
    Q_EMIT combo.activated(index);
}

}  // namespace TarvaneTests
