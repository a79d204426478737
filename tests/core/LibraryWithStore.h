// A library with an open insight store, for each test function its own; at the end its database must be sound.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "InsightSupport.h"
#include "support/TestHome.h"

#include <memory>

namespace lumbra {

class LibraryWithStore {
protected:
    void makeLibrary() {
        m_home = std::make_unique<TestHome>();
        m_root = m_home->folder("library");
        m_file = m_root.child(".lumbra/insights.sqlite");
        m_store = InsightStore::atLibrary(m_root);
    }

    // Closes the store and removes the library.
    QByteArray soundnessAtTheEnd() {
        m_store.reset();
        const QByteArray found = soundness(m_file);
        m_home.reset();
        return found;
    }

    std::unique_ptr<TestHome> m_home;
    Location m_root;
    Location m_file;
    std::shared_ptr<InsightStore> m_store;
};

} // namespace lumbra
