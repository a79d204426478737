// Pictures in memory by their keys, bounded in bytes and in number; what was used longest ago goes first.
//
// Any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QHash>
#include <QImage>
#include <QString>

#include <limits>
#include <list>
#include <mutex>

namespace lumbra {

class PictureCache {
public:
    explicit PictureCache(qsizetype largestBytes, qsizetype largestCount = std::numeric_limits<qsizetype>::max())
        : m_largestBytes(largestBytes), m_largestCount(largestCount) {}

    // The picture, which counts as a use; a null image if there is none.
    QImage find(const QString& key);

    // Replaces what the key had. A picture larger than the whole cache is not kept, nor is a null one.
    void insert(const QString& key, const QImage& image);

    qsizetype count() const;
    qsizetype bytes() const;

private:
    struct Entry {
        QString key;
        QImage image;
    };
    using Entries = std::list<Entry>;

    void remove(Entries::iterator entry);

    const qsizetype m_largestBytes;
    const qsizetype m_largestCount;
    mutable std::mutex m_mutex;
    Entries m_entries; // the last used first
    QHash<QString, Entries::iterator> m_places;
    qsizetype m_bytes = 0;
};

} // namespace lumbra
