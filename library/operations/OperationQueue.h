// Operations that leave the main thread between their steps, as if each were one step: of those that concern the same
// thing, the next begins when the one before has ended. Others go on beside it.
//
// Main thread only.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QList>

#include <functional>
#include <list>

namespace lumbra {

class OperationQueue {
public:
    // To be called once, when the operation has ended.
    using Done = std::function<void()>;
    using Operation = std::function<void(const Done& done)>;

    // `claims` are the locations that the operation concerns. It begins within the call when nothing given before that
    // shares one of them is unfinished. The queue must outlive every operation that it has begun.
    void add(const QList<Location>& claims, Operation operation);

private:
    struct Entry {
        QList<Location> claims;
        Operation operation; // empty once begun
    };
    using Position = std::list<Entry>::iterator;

    void beginPossible();
    Position firstPossible();

    std::list<Entry> m_entries; // in the order given, until they end
};

} // namespace lumbra
