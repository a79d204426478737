// The understanding of files, of which there is one in the process. It owns the one insight store, through which the
// views ask what is known.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "core/InsightStore.h"
#include "library/Library.h"

#include <QObject>

#include <memory>

namespace lumbra {

class InsightEngine : public QObject {
    Q_OBJECT

public:
    // Begins to open the library's store and returns at once; as long as the user has not chosen a library, there is
    // nothing to open, and nothing is made on disk. The library must outlive it.
    explicit InsightEngine(Library* library, QObject* parent = nullptr);

    // Absent until it is open, and for good when it can't be opened: nothing is known then, and nothing is found by its
    // content. Safe to use on any thread; ask off the main one.
    std::shared_ptr<InsightStore> store() const { return m_store; }

Q_SIGNALS:
    void storeOpened();

private:
    void openStore();

    Library* const m_library;
    std::shared_ptr<InsightStore> m_store;
    bool m_opening = false;
};

} // namespace lumbra
