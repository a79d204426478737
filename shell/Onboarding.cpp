// SPDX-License-Identifier: GPL-3.0-or-later
#include "Onboarding.h"

#include "Relaunch.h"
#include "core/Config.h"
#include "core/CoreError.h"

namespace lumbra {

Onboarding::Onboarding(Library* library, QObject* parent) : Onboarding(library, &Relaunch::application, parent) {}

Onboarding::Onboarding(Library* library, std::function<void()> relaunch, QObject* parent)
    : QObject(parent), m_library(library), m_relaunch(std::move(relaunch)), m_folder(LumbraConfig::library()) {
    connect(library, &Library::onboardingChanged, this, [this] {
        // Each showing starts from what is configured by then.
        if (shown())
            setFolder(LumbraConfig::library());
        Q_EMIT shownChanged();
    });
}

void Onboarding::choose(const QString& path) {
    setFolder(Location::expandingTilde(path));
}

void Onboarding::finish() {
    const bool moved = m_folder.canonical() != m_library->root().canonical();
    try {
        LumbraConfig::setLibrary(m_folder);
    } catch (const CoreError& error) {
        m_library->setLastError(error.message);
        return;
    }
    m_library->setOnboarding(false);
    if (moved)
        m_relaunch();
}

void Onboarding::setFolder(const Location& folder) {
    if (m_folder == folder)
        return;
    m_folder = folder;
    Q_EMIT folderChanged();
}

} // namespace lumbra
