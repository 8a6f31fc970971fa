// Texts that guard what the program writes. One that doesn't match leaves the actual text in the
// build folder.
#pragma once

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QString>

#include "Support/GoldenImage.h"
#include "Support/TestPaths.h"

namespace TarvaneTests::GoldenText {

inline QString contents(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

inline bool write(const QString& path, const QString& text) {
    QFile file(path);
    const QByteArray bytes = text.toUtf8();
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// Byte for byte, with the golden of that name.
inline testing::AssertionResult matches(const QString& name, const QString& actual) {
    const QString path = QDir(QString::fromUtf8(TestPaths::goldenFolder())).filePath(name + ".txt");
    if (GoldenImage::updating) {
        return write(path, actual)
                   ? testing::AssertionSuccess()
                   : testing::AssertionFailure() << "can't write " << path.toStdString();
    }
    if (contents(path) == actual) {
        return testing::AssertionSuccess();
    }
    const QDir failures(QString::fromUtf8(TestPaths::goldenFailuresFolder()));
    failures.mkpath(QStringLiteral("."));
    const QString left = failures.filePath(name + "-actual.txt");
    write(left, actual);
    return testing::AssertionFailure()
           << path.toStdString() << " differs from " << left.toStdString() << ":\n"
           << actual.toStdString();
}

}  // namespace TarvaneTests::GoldenText
