// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageList.h"

#include "platform/Tasks.h"

namespace lumbra {

namespace {

// From this length on, freeing a list takes long enough to be felt on the main thread.
constexpr qsizetype longList = 10'000;

quint32 hashOf(const Location& path) {
    return quint32(qHash(path));
}

} // namespace

QList<Location> urlsOf(const Assets& assets) {
    QList<Location> urls;
    urls.reserve(assets.size());
    for (const Asset& asset : assets)
        urls.append(asset.url);
    return urls;
}

PageList::PageList(Assets assets) : PageList(std::move(assets), {}) {}

PageList::PageList(Assets assets, const PageList& replaced) {
    if (assets.isEmpty())
        return;
    auto data = std::make_unique<Data>();
    data->byHash.reserve(size_t(assets.size()));
    for (qsizetype position = 0; position < assets.size(); ++position) {
        const Asset& asset = assets.at(position);
        data->bytes += asset.size;
        data->byHash.push_back({hashOf(asset.url), quint32(position)});
    }
    std::sort(data->byHash.begin(), data->byHash.end());
    for (size_t i = 1; i < data->byHash.size() && !data->repeats; ++i)
        for (size_t j = i; j > 0 && data->byHash[j - 1].hash == data->byHash[i].hash; --j)
            data->repeats =
                data->repeats || assets.at(data->byHash[j - 1].position).url == assets.at(data->byHash[i].position).url;
    data->assets = std::move(assets);
    if (replaced.m_data && !replaced.repeats() && !data->repeats) {
        data->replaced = replaced.m_data;
        data->positionsInReplaced = replaced.positionsOf(data->assets);
    }
    m_data = std::shared_ptr<const Data>(data.release(), [](const Data* dying) {
        if (dying->assets.size() < longList)
            delete dying;
        else
            Tasks::pool(Tasks::Pool::utility).start([dying] { delete dying; });
    });
}

PageList PageList::replacing(const PageList& previous, Assets assets) {
    return previous.assets() == assets ? previous : PageList(std::move(assets), previous);
}

const Assets& PageList::assets() const& {
    static const Assets none;
    return m_data ? m_data->assets : none;
}

std::optional<qsizetype> PageList::positionOf(const Location& path, qsizetype guess) const {
    if (!m_data)
        return {};
    if (!m_data->repeats && guess < size() && at(guess).url == path)
        return guess;
    const quint32 hash = hashOf(path);
    for (auto slot = std::lower_bound(m_data->byHash.begin(), m_data->byHash.end(), Slot{hash, 0});
         slot != m_data->byHash.end() && slot->hash == hash; ++slot)
        if (m_data->assets.at(slot->position).url == path)
            return slot->position;
    return {};
}

std::vector<qint32> PageList::positionsIn(const PageList& other) const {
    if (m_data && other.m_data && m_data->replaced.lock() == other.m_data)
        return m_data->positionsInReplaced;
    return other.positionsOf(assets());
}

std::vector<qint32> PageList::positionsOf(const Assets& assets) const {
    std::vector<qint32> positions;
    positions.reserve(size_t(assets.size()));
    // Most files of a page that has loaded again stand in the order of before.
    qsizetype next = 0;
    for (const Asset& asset : assets) {
        const auto position = positionOf(asset.url, next);
        positions.push_back(position ? qint32(*position) : -1);
        if (position)
            next = *position + 1;
    }
    return positions;
}

} // namespace lumbra
