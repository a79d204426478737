// SPDX-License-Identifier: GPL-3.0-or-later
#include "Stills.h"

#include "media/AssetKey.h"

#include <algorithm>

namespace lumbra {

namespace {

bool isInside(const QSize& size, const QSize& box) {
    return size.width() <= box.width() && size.height() <= box.height();
}

// Smaller than it had to be on both sides, so that nothing was taken from it.
bool isWhole(const QImage& image, const QSize& box) {
    return image.width() < box.width() && image.height() < box.height();
}

} // namespace

void Stills::setBox(const QSize& box) {
    m_box = box;
    makeNext();
}

void Stills::setHeldBack(bool heldBack) {
    if (std::exchange(m_isHeldBack, heldBack) != heldBack)
        makeNext();
}

void Stills::want(const std::optional<Asset>& shown, const Assets& neighbours) {
    QList<std::pair<QString, Location>> wanted;
    if (shown)
        wanted.append({assetKey(*shown), shown->url});
    for (const Asset& asset : neighbours.first(std::min(neighbours.size(), mostNeighbours)))
        wanted.append({assetKey(asset), asset.url});
    m_shown = shown ? wanted.first().first : QString();
    m_order.clear();
    for (const auto& [key, file] : wanted)
        m_order.append(key);
    std::erase_if(m_entries, [this](const auto& entry) { return !m_order.contains(entry.first); });
    for (const auto& [key, file] : wanted)
        m_entries[key].file = file;
    makeNext();
}

std::optional<Still> Stills::find(const Asset& asset) const {
    const auto found = m_entries.find(assetKey(asset));
    return found == m_entries.end() ? std::nullopt : found->second.still;
}

qsizetype Stills::count() const {
    return std::ranges::count_if(m_entries, [](const auto& entry) { return entry.second.still.has_value(); });
}

bool Stills::isGood(const Entry& entry) const {
    if (!entry.still)
        return false;
    // A file that yields nothing yields nothing in any size.
    return isInside(m_box, entry.decodedFor) || entry.still->image.isNull()
           || isWhole(entry.still->image, entry.decodedFor);
}

// One after the other: two decoders at work would each take twice as long, and what is on show is waited for.
void Stills::makeNext() {
    if (m_box.isEmpty() || m_isHeldBack)
        return;
    for (const QString& key : std::as_const(m_order)) {
        const Entry& entry = m_entries.at(key);
        if (isGood(entry))
            continue;
        // What was asked for a smaller box is let come, lest a window that is being drawn larger shows nothing at all.
        if (!entry.askedFor)
            make(key);
        return;
    }
}

void Stills::make(const QString& key) {
    Entry& entry = m_entries.at(key);
    const std::stop_source stop;
    entry.request = MediaRequest(stop);
    entry.askedFor = m_box;
    // A neighbour is as urgent: it may come on show while it waits.
    m_reader.thumbnail(entry.file, m_box, Reader::Urgency::visible, stop.get_token())
        .then(this, [this, key, token = stop.get_token()](const QImage& image) {
            if (!token.stop_requested())
                take(key, image);
        });
}

void Stills::take(const QString& key, const QImage& image) {
    Entry& entry = m_entries.at(key);
    entry.decodedFor = *std::exchange(entry.askedFor, {});
    // A file that can't be read any more leaves what it gave before.
    const QSize known = entry.still ? entry.still->pixels : QSize();
    if (!image.isNull() || !entry.still)
        entry.still = Still{image, isWhole(image, entry.decodedFor) ? image.size() : known};
    const bool isCut = entry.still->pixels.isEmpty() && !entry.still->image.isNull();
    if (key == m_shown)
        Q_EMIT made();
    if (isCut && m_entries.contains(key))
        askForPixels(key);
    makeNext();
}

// Of a picture that was decoded smaller than it is.
void Stills::askForPixels(const QString& key) {
    m_reader.pixels(m_entries.at(key).file).then(this, [this, key](const QSize& pixels) {
        const auto entry = m_entries.find(key);
        if (entry == m_entries.end() || !entry->second.still || pixels.isEmpty())
            return;
        entry->second.still->pixels = pixels;
        if (key == m_shown)
            Q_EMIT made();
    });
}

} // namespace lumbra
