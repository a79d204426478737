// SPDX-License-Identifier: GPL-3.0-or-later
#include "Selection.h"

namespace lumbra {

Selection Selection::clicked(const Location& path, const PageList& list, Qt::KeyboardModifiers modifiers) const {
    if (modifiers.testFlag(Qt::ControlModifier)) {
        Selection next{paths, path};
        if (!next.paths.remove(path))
            next.paths.insert(path);
        return next;
    }
    if (modifiers.testFlag(Qt::ShiftModifier) && anchor) {
        const auto from = list.positionOf(*anchor);
        const auto to = list.positionOf(path);
        if (from && to)
            return {PathSet::range(list, std::min(*from, *to), std::max(*from, *to)), anchor};
    }
    return just(path);
}

Selection Selection::stepped(int step, const PageList& order) const {
    if (order.isEmpty())
        return *this;
    const auto from = anchor ? order.positionOf(*anchor) : std::nullopt;
    const qsizetype to = from ? std::clamp<qsizetype>(*from + step, 0, order.size() - 1) : 0;
    return just(order.at(to).url);
}

PathSet Selection::targets(const Location& url, const PageList& order) const {
    if (!paths.contains(url))
        return {url};
    return paths.on(order);
}

std::optional<Asset> revealed(const std::optional<Location>& pending, const PageList& assets) {
    if (!pending)
        return {};
    const auto position = assets.positionOf(pending->canonical());
    return position ? std::optional(assets.at(*position)) : std::nullopt;
}

} // namespace lumbra
