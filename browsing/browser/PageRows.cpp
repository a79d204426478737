// SPDX-License-Identifier: GPL-3.0-or-later
#include "PageRows.h"

#include <numeric>

namespace lumbra {

namespace {

// A block beyond this many tiles is told of as a whole: to compare them one by one would be felt, and the view asks for
// the few rows in sight only.
constexpr qsizetype comparedTiles = 20'000;

// As above for the tiles whose selection changed.
constexpr qsizetype comparedSelection = 200;

bool isToldWhole(const PageBlock& before, const PageBlock& after) {
    return before.captioned != after.captioned || before.onShelf != after.onShelf
           || std::max(before.size(), after.size()) > comparedTiles;
}

bool holdSame(const PageBlock& before, const PageBlock& after, qsizetype from, qsizetype to) {
    for (qsizetype position = from; position < to; ++position) {
        const bool was = position < before.size();
        const bool is = position < after.size();
        if (was != is || (is && before.item(position) != after.item(position)))
            return false;
    }
    return true;
}

int gapBelow(const PageBlock& block, int row, int rows) {
    return row == rows - 1 ? block.gap : PageRows::rowGap;
}

} // namespace

PageBlock::Item PageBlock::item(qsizetype position) const {
    if (position < folders.size())
        return folders.at(position);
    position -= folders.size();
    if (position < assets.size())
        return assets.at(position);
    return std::visit([](const auto& entry) { return Item(entry); }, entries.at(position - assets.size()));
}

PageRows::PageRows(Facts facts, QObject* parent) : QAbstractListModel(parent), m_facts(std::move(facts)) {
    m_slots.setCount(m_columns.count);
    m_resting.setSingleShot(true);
    connect(&m_resting, &QTimer::timeout, this, &PageRows::resizingChanged);
}

void PageRows::setWidth(double width) {
    if (m_width == width)
        return;
    m_width = width;
    layOut();
    Q_EMIT measuresChanged();
}

void PageRows::setZoom(double zoom) {
    if (m_zoom == zoom)
        return;
    m_zoom = zoom;
    const bool wasResizing = isResizing();
    m_resting.start(zoomRest);
    if (!wasResizing)
        Q_EMIT resizingChanged();
    layOut();
    Q_EMIT measuresChanged();
}

double PageRows::inset() const {
    return (m_width - m_columns.count * m_columns.width - (m_columns.count - 1) * spacing) / 2;
}

double PageRows::firstTile() const {
    return inset() + (m_columns.width - std::round(tileSize())) / 2 - tileMargin;
}

void PageRows::layOut() {
    const AdaptiveColumns next = AdaptiveColumns::fitting(m_width - 2 * margin, m_zoom, m_zoom * 1.35, spacing);
    if (next == m_columns)
        return;
    const bool moved = next.count != m_columns.count;
    m_columns = next;
    m_slots.setCount(next.count);
    if (moved)
        for (qsizetype block = 0; block < m_shown.size(); ++block)
            updateBlock(block, PageBlock(m_shown.at(block).block), true);
}

void PageRows::setBlocks(const QList<PageBlock>& blocks) {
    const auto isIn = [&](const QString& section) {
        return std::any_of(blocks.begin(), blocks.end(), [&](const PageBlock& b) { return b.section == section; });
    };
    for (qsizetype block = m_shown.size() - 1; block >= 0; --block)
        if (!isIn(m_shown.at(block).block.section))
            removeBlock(block);
    for (qsizetype block = 0; block < blocks.size(); ++block) {
        const PageBlock& next = blocks.at(block);
        if (block < m_shown.size() && m_shown.at(block).block.section == next.section)
            updateBlock(block, next, false);
        else
            insertBlock(block, next);
    }
}

void PageRows::insertBlock(qsizetype position, const PageBlock& block) {
    const Shown shown{block, tileRows(block), !block.more.isEmpty()};
    const int first = firstRow(position);
    // Qt has no empty range of rows.
    if (shown.rows() == 0) {
        m_shown.insert(position, shown);
        return;
    }
    beginInsertRows({}, first, first + shown.rows() - 1);
    m_shown.insert(position, shown);
    endInsertRows();
}

void PageRows::removeBlock(qsizetype position) {
    const int first = firstRow(position);
    const int rows = m_shown.at(position).rows();
    if (rows == 0) {
        m_shown.removeAt(position);
        return;
    }
    beginRemoveRows({}, first, first + rows - 1);
    m_shown.removeAt(position);
    endRemoveRows();
}

void PageRows::updateBlock(qsizetype position, const PageBlock& next, bool moved) {
    Shown& shown = m_shown[position];
    if (!moved && shown.block == next)
        return;
    const Shown before = shown;
    const int first = firstRow(position);
    const int rows = tileRows(next);
    const bool more = !next.more.isEmpty();

    shown.block = next;
    if (rows > before.tileRows) {
        beginInsertRows({}, first + before.tileRows, first + rows - 1);
        shown.tileRows = rows;
        endInsertRows();
    } else if (rows < before.tileRows) {
        beginRemoveRows({}, first + rows, first + before.tileRows - 1);
        shown.tileRows = rows;
        endRemoveRows();
    }
    if (more && !before.more) {
        beginInsertRows({}, first + rows, first + rows);
        shown.more = true;
        endInsertRows();
    } else if (!more && before.more) {
        beginRemoveRows({}, first + rows, first + rows);
        shown.more = false;
        endRemoveRows();
    }

    const bool whole = moved || isToldWhole(before.block, next);
    const qsizetype columns = m_columns.count;
    std::vector<bool> differs(size_t(std::min(rows, before.tileRows)));
    for (int row = 0; row < int(differs.size()); ++row)
        differs[size_t(row)] = whole || !holdSame(before.block, next, row * columns, (row + 1) * columns)
                               || gapBelow(before.block, row, before.rows()) != gapBelow(next, row, shown.rows());
    tell(first, differs);
    if (more && before.more && (before.block.more != next.more || before.block.gap != next.gap))
        tell(first + rows, {true});
}

void PageRows::tell(int first, const std::vector<bool>& differs) {
    for (auto begin = differs.begin(); (begin = std::find(begin, differs.end(), true)) != differs.end();) {
        const auto end = std::find(begin, differs.end(), false);
        Q_EMIT dataChanged(index(first + int(begin - differs.begin())), index(first + int(end - differs.begin()) - 1),
                           {rowRole});
        begin = end;
    }
}

void PageRows::setSelection(const PathSet& selection) {
    const auto changed = m_selection.differences(selection, comparedSelection);
    m_selection = selection;
    for (qsizetype position = 0; position < m_shown.size(); ++position) {
        const Shown& shown = m_shown.at(position);
        std::vector<bool> differs(size_t(shown.tileRows), !changed);
        const auto mark = [&](qsizetype item) { differs[size_t(item / m_columns.count)] = true; };
        for (const Location& path : changed.value_or(QList<Location>())) {
            if (const auto item = shown.block.assets.positionOf(path))
                mark(shown.block.folders.size() + *item);
            for (qsizetype item = 0; item < shown.block.entries.size(); ++item)
                if (const auto* asset = std::get_if<Asset>(&shown.block.entries.at(item)); asset && asset->url == path)
                    mark(shown.block.folders.size() + shown.block.assets.size() + item);
        }
        tell(firstRow(position), differs);
    }
}

void PageRows::refreshFolders() {
    for (qsizetype position = 0; position < m_shown.size(); ++position) {
        const qsizetype folders = m_shown.at(position).block.folders.size();
        const qsizetype rows = (folders + m_columns.count - 1) / m_columns.count;
        tell(firstRow(position), std::vector<bool>(size_t(rows), true));
    }
}

int PageRows::rowOf(const Location& asset) const {
    for (qsizetype position = 0; position < m_shown.size(); ++position) {
        const PageBlock& block = m_shown.at(position).block;
        if (const auto item = block.assets.positionOf(asset))
            return firstRow(position) + int((block.folders.size() + *item) / m_columns.count);
        for (qsizetype item = 0; item < block.entries.size(); ++item)
            if (const auto* entry = std::get_if<Asset>(&block.entries.at(item)); entry && entry->url == asset)
                return firstRow(position) + int((block.folders.size() + block.assets.size() + item) / m_columns.count);
    }
    return -1;
}

int PageRows::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : firstRow(m_shown.size());
}

QVariant PageRows::data(const QModelIndex& index, int role) const {
    if (!index.isValid())
        return {};
    int within = index.row();
    for (const Shown& shown : m_shown) {
        if (within < shown.rows())
            return role == rowRole       ? QVariant::fromValue(row(shown, within))
                   : role == sectionRole ? QVariant(shown.block.section)
                                         : QVariant();
        within -= shown.rows();
    }
    return {};
}

QHash<int, QByteArray> PageRows::roleNames() const {
    return {{rowRole, "row"}, {sectionRole, "section"}};
}

int PageRows::tileRows(const PageBlock& block) const {
    return int((block.size() + m_columns.count - 1) / m_columns.count);
}

int PageRows::firstRow(qsizetype block) const {
    return std::accumulate(m_shown.begin(), m_shown.begin() + block, 0,
                           [](int sum, const Shown& shown) { return sum + shown.rows(); });
}

PageRow PageRows::row(const Shown& shown, int row) const {
    PageRow made;
    made.section = shown.block.section;
    made.captioned = shown.block.captioned;
    made.gap = gapBelow(shown.block, row, shown.rows());
    if (row == shown.tileRows) {
        made.more = shown.block.more;
        return made;
    }
    const qsizetype begin = qsizetype(row) * m_columns.count;
    const qsizetype end = std::min(begin + m_columns.count, shown.block.size());
    for (qsizetype position = begin; position < end; ++position)
        made.cells.append(cell(shown.block, position));
    return made;
}

PageCell PageRows::cell(const PageBlock& block, qsizetype position) const {
    const PageBlock::Item item = block.item(position);
    PageCell cell;
    cell.onShelf = block.onShelf;
    if (const auto* folder = std::get_if<Location>(&item)) {
        const FolderStats stats = m_facts.stats(*folder);
        cell.kind = PageCell::Kind::folder;
        cell.url = *folder;
        cell.count = stats.count;
        for (const Asset& asset : stats.newest)
            cell.newest.append(QVariant::fromValue(asset));
    } else if (const auto* stack = std::get_if<RecentStack>(&item)) {
        cell.kind = PageCell::Kind::stack;
        cell.url = stack->folder;
        cell.asset = stack->cover;
        cell.count = stack->count;
        cell.caption = m_facts.displayPath(stack->folder);
    } else {
        cell.kind = PageCell::Kind::asset;
        cell.asset = std::get<Asset>(item);
        cell.url = cell.asset.url;
        cell.selected = m_selection.contains(cell.url);
        if (block.captioned)
            cell.caption = m_facts.projectName(cell.url);
    }
    cell.name = cell.url.name();
    return cell;
}

} // namespace lumbra
