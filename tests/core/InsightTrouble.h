// What the tests of an insight store in trouble share: two records that must survive it, and ways to spoil a database.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "InsightSupport.h"

#include <unistd.h>

#include <fstream>

namespace lumbra {

inline const Insight fox = insightWith("/p/fox.png", "fox");
inline const Insight goose = insightWith("/p/goose.png", "goose");

inline bool isWhole(InsightStore& store, const Insight& insight) {
    return kept(store, insight) == insight && found(store, qPrintable(insight.text)) == QStringList{insight.path};
}

inline bool isAbsent(InsightStore& store, const Insight& insight) {
    return !kept(store, insight) && found(store, qPrintable(insight.text)).isEmpty();
}

// Everything once, for its return.
inline void useAll(InsightStore& store) {
    store.save(goose);
    kept(store, fox);
    kept(store, insightWith("/elsewhere/fox.png"));
    found(store, "fox");
    store.featurePrintsUnder(QStringLiteral("/"));
    store.count();
    store.forget(QStringLiteral("/p/never.png"));
}

// What opening says when it fails; empty when it succeeds.
inline QString errorOfOpening(const Location& file) {
    try {
        InsightStore store(file);
    } catch (const CoreError& error) {
        return error.message;
    }
    return {};
}

inline void removeDatabase(const Location& file) {
    for (const char* suffix : {"", "-wal", "-shm"})
        ::unlink((file.path() + suffix).constData());
}

// Spoils bytes of a file from a position on.
inline void overwrite(const Location& file, qint64 at, const QByteArray& bytes) {
    std::fstream stream(std::string(file.view()), std::ios::in | std::ios::out | std::ios::binary);
    stream.seekp(at);
    stream.write(bytes.constData(), bytes.size());
}

inline QByteArray bytesOf(const Location& file) {
    QFile opened(file.toString());
    return opened.open(QIODevice::ReadOnly) ? opened.readAll() : QByteArray();
}

// Some hundred kilobytes, all in the database itself.
inline void fill(const Location& file) {
    InsightStore store(file);
    for (int i = 0; i < 60; ++i) {
        QString words;
        for (int word = 0; word < 300; ++word)
            words += QStringLiteral(" w%1x%2").arg(i % 7).arg(word);
        Insight insight = insightWith(("/p/filler" + std::to_string(i) + ".png").c_str());
        insight.text = words;
        store.save(insight);
    }
}

} // namespace lumbra
