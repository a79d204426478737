// What of a library a page lets through: the kind filter, and the text of the search field against file names and
// against the files whose content was found to hold it. A plain value for any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/AssetIndex.h"
#include "library/Model.h"

#include <QSet>

namespace lumbra {

// How many items of each kind there are.
class KindCounts {
public:
    qsizetype& operator[](AssetKind kind) { return m_counts[size_t(kind)]; }
    qsizetype operator[](AssetKind kind) const { return m_counts[size_t(kind)]; }

    friend bool operator==(const KindCounts&, const KindCounts&) = default;

private:
    std::array<qsizetype, allAssetKinds.size()> m_counts{};
};

class PageFilter {
public:
    // `search` is taken as typed, blanks included, and compared in lower case. `hits` are files that the content search
    // found for it.
    PageFilter(std::optional<AssetKind> kind, const QString& search, QSet<Location> hits = {});

    // The search in lower case.
    const QString& query() const { return m_query; }
    bool hasQuery() const { return !m_query.isEmpty(); }

    bool matchesName(std::string_view name) const;

    // The name, or the content, holds the query.
    bool matches(const Asset& asset) const { return matchesName(asset.url.lastComponent()) || isHit(asset.url); }
    bool matches(const AssetIndex::Folder& folder, std::string_view name) const;

    bool hasKind(AssetKind kind) const { return !m_kind || *m_kind == kind; }
    bool passes(const Asset& asset) const { return hasKind(asset.kind) && matches(asset); }

    // Those that pass, in the order given.
    Assets passing(const Assets& assets) const;

    // Of those that match, whatever their kind: the other chips keep their numbers while one is on.
    KindCounts count(const Assets& assets) const;

private:
    bool isHit(const Location& url) const { return !m_hits.isEmpty() && m_hits.contains(url); }

    std::optional<AssetKind> m_kind;
    QString m_query;
    std::string m_bytes; // the query in UTF-8
    bool m_plain;        // the query is ASCII
    QSet<Location> m_hits;
};

} // namespace lumbra

Q_DECLARE_METATYPE(lumbra::KindCounts)
