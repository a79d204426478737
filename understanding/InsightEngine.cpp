// SPDX-License-Identifier: GPL-3.0-or-later
#include "InsightEngine.h"

#include "core/PreferenceKeys.h"
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

InsightEngine::InsightEngine(Library* library, QObject* parent)
    : QObject(parent), m_enabled(Preferences::shared().value(PreferenceKeys::insightsEnabled)), m_library(library) {
    connect(library, &Library::onboardingChanged, this, &InsightEngine::openStore);
    openStore();
}

void InsightEngine::setEnabled(bool enabled) {
    if (m_enabled == enabled)
        return;
    Preferences::shared().setValue(PreferenceKeys::insightsEnabled, enabled);
    m_enabled = enabled;
}

// No model is asked as yet.
QString InsightEngine::aiStatus() const {
    return QStringLiteral("This Mac can't run Apple Intelligence. Vision still reads text and finds similar files.");
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
