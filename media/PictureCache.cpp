// SPDX-License-Identifier: GPL-3.0-or-later
#include "PictureCache.h"

namespace lumbra {

QImage PictureCache::find(const QString& key) {
    const std::lock_guard lock(m_mutex);
    const auto place = m_places.constFind(key);
    if (place == m_places.constEnd())
        return {};
    m_entries.splice(m_entries.begin(), m_entries, *place);
    return m_entries.front().image;
}

void PictureCache::insert(const QString& key, const QImage& image) {
    const std::lock_guard lock(m_mutex);
    if (const auto place = m_places.constFind(key); place != m_places.constEnd())
        remove(*place);
    if (image.isNull() || image.sizeInBytes() > m_largestBytes)
        return;
    m_entries.push_front({key, image});
    m_places.insert(key, m_entries.begin());
    m_bytes += image.sizeInBytes();
    while (m_bytes > m_largestBytes || m_places.size() > m_largestCount)
        remove(std::prev(m_entries.end()));
}

qsizetype PictureCache::count() const {
    const std::lock_guard lock(m_mutex);
    return m_places.size();
}

qsizetype PictureCache::bytes() const {
    const std::lock_guard lock(m_mutex);
    return m_bytes;
}

void PictureCache::remove(Entries::iterator entry) {
    m_bytes -= entry->image.sizeInBytes();
    m_places.remove(entry->key);
    m_entries.erase(entry);
}

} // namespace lumbra
