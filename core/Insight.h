// What has been understood about one file, as a plain value.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

namespace lumbra {

struct Insight {
    // Of a file as it is now, with nothing understood; analyzed at the present moment.
    Insight(const QString& file, qint64 bytes, double changed);

    QString path;        // absolute; what a store keeps it by
    qint64 size = 0;     // of the file when analyzed, bytes
    double modified = 0; // the file's modification time when analyzed, seconds since 1970-01-01 UTC

    QString title;                          // generated, short
    QString summary;                        // generated, one sentence
    QStringList tags;                       // generated, for searching
    QStringList labels;                     // of what is to be seen
    QString text;                           // read out of the file
    QString transcript;                     // heard in the file
    QString note;                           // the words of the agent's note when analyzed
    std::optional<QByteArray> featurePrint; // encoded; absent for files without a look of their own

    int level = 0;       // 0: nothing yet; 1: read by machine; 2: also described by the language model
    double analyzed = 0; // when, in seconds since 1970-01-01 UTC

    // The last component of the path.
    QString name() const { return nameOf(path); }
    static QString nameOf(const QString& file);

    friend bool operator==(const Insight&, const Insight&) = default;
};

} // namespace lumbra
