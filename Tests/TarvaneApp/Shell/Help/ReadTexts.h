// What a window that is read shows, as its user reads it.
#pragma once

#include <QLabel>
#include <QTextDocument>
#include <QWidget>

namespace TarvaneTests {

/// A label's text without mark-up.
inline QString readText(const QLabel& label) {
    if (label.textFormat() != Qt::RichText) {
        return label.text();
    }
    QTextDocument document;
    document.setHtml(label.text());
    return document.toPlainText();
}

/// All of them, in the order of their making, which is that of a screen reader.
inline QStringList readTexts(const QWidget& holder) {
    QStringList texts;
    for (const QLabel* label : holder.findChildren<QLabel*>()) {
        texts << readText(*label);
    }
    return texts;
}

}  // namespace TarvaneTests
