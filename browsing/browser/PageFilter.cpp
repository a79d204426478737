// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageFilter.h"

namespace lumbra {

namespace {

bool isAscii(std::string_view text) {
    return std::none_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) >= 0x80; });
}

char lower(char c) {
    return c >= 'A' && c <= 'Z' ? char(c + ('a' - 'A')) : c;
}

} // namespace

PageFilter::PageFilter(std::optional<AssetKind> kind, const QString& search, QSet<Location> hits)
    : m_kind(kind),
      m_query(search.toLower()),
      m_bytes(m_query.toStdString()),
      m_plain(isAscii(m_bytes)),
      m_hits(std::move(hits)) {}

bool PageFilter::matchesName(std::string_view name) const {
    if (m_bytes.empty())
        return true;
    // Nearly all names are ASCII; those need no conversion, and a million of them are looked at for one keystroke. Any
    // other name is lowered in full, since a letter beyond ASCII may have its lower form within it.
    if (!isAscii(name))
        return QString::fromUtf8(name.data(), qsizetype(name.size())).toLower().contains(m_query);
    if (!m_plain)
        return false;
    const auto equal = [](char ofName, char ofQuery) { return lower(ofName) == ofQuery; };
    return std::search(name.begin(), name.end(), m_bytes.begin(), m_bytes.end(), equal) != name.end();
}

bool PageFilter::matches(const AssetIndex::Folder& folder, std::string_view name) const {
    return matchesName(name)
           || (!m_hits.isEmpty() && isHit(Location(QByteArray::fromStdString(folder.path())).child(name)));
}

Assets PageFilter::passing(const Assets& assets) const {
    if (!m_kind && !hasQuery())
        return assets;
    Assets kept;
    std::copy_if(assets.begin(), assets.end(), std::back_inserter(kept), [this](const Asset& a) { return passes(a); });
    return kept;
}

KindCounts PageFilter::count(const Assets& assets) const {
    KindCounts counts;
    for (const Asset& asset : assets)
        if (matches(asset))
            ++counts[asset.kind];
    return counts;
}

} // namespace lumbra
