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

PageList::PageList(Assets assets) {
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
    m_data = std::shared_ptr<const Data>(data.release(), [](const Data* dying) {
        if (dying->assets.size() < longList)
            delete dying;
        else
            Tasks::pool(Tasks::Pool::utility).start([dying] { delete dying; });
    });
}

PageList PageList::replacing(const PageList& previous, Assets assets) {
    return previous.assets() == assets ? previous : PageList(std::move(assets));
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

} // namespace lumbra
