// SPDX-License-Identifier: GPL-3.0-or-later
#include "OperationQueue.h"

#include <algorithm>
#include <utility>

namespace lumbra {

void OperationQueue::add(const QList<Location>& claims, Operation operation) {
    m_entries.push_back({claims, std::move(operation)});
    beginPossible();
}

void OperationQueue::beginPossible() {
    // Looked for anew after each: an operation may end within its call, and may give further ones.
    for (Position next = firstPossible(); next != m_entries.end(); next = firstPossible()) {
        const Operation operation = std::exchange(next->operation, nullptr);
        operation([this, next] {
            m_entries.erase(next);
            beginPossible();
        });
    }
}

OperationQueue::Position OperationQueue::firstPossible() {
    return std::find_if(m_entries.begin(), m_entries.end(), [this](const Entry& candidate) {
        const auto isBefore = [&](const Entry& entry) {
            return std::ranges::any_of(entry.claims,
                                       [&](const Location& claim) { return candidate.claims.contains(claim); });
        };
        for (const Entry& entry : m_entries) {
            if (&entry == &candidate)
                break;
            if (isBefore(entry))
                return false;
        }
        return bool(candidate.operation);
    });
}

} // namespace lumbra
