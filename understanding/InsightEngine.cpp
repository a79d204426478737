// SPDX-License-Identifier: GPL-3.0-or-later
#include "InsightEngine.h"

#include "platform/Tasks.h"

namespace lumbra {

namespace {

std::shared_ptr<InsightStore> opened(const Location& root) {
    try {
        return InsightStore::atLibrary(root);
    } catch (const CoreError&) {
        return nullptr; // nothing is lost by it but what can be understood again
    }
}

} // namespace

InsightEngine::InsightEngine(Library* library, QObject* parent) : QObject(parent), m_library(library) {
    connect(library, &Library::onboardingChanged, this, &InsightEngine::openStore);
    openStore();
}

// In the background, since a disk may be slow and the log of a process that died has to be read first.
void InsightEngine::openStore() {
    if (m_opening || m_library->onboarding())
        return;
    m_opening = true;
    Tasks::run(Tasks::Pool::userInitiated, [root = m_library->root()] {
        return opened(root);
    }).then(this, [this](const std::shared_ptr<InsightStore>& store) {
        m_store = store;
        if (store)
            Q_EMIT storeOpened();
    });
}

} // namespace lumbra
