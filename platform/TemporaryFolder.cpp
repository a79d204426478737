// SPDX-License-Identifier: GPL-3.0-or-later
#include "TemporaryFolder.h"

#include <QDir>
#include <QTemporaryDir>

#include <memory>
#include <mutex>

namespace lumbra {

namespace {

// Readable to its owner only.
std::unique_ptr<QTemporaryDir> made() {
    const QString session = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const bool isThere = !session.isEmpty() && QFileInfo(session).isWritable();
    return std::make_unique<QTemporaryDir>((isThere ? session : QDir::tempPath()) + QStringLiteral("/lumbra-XXXXXX"));
}

} // namespace

Location temporaryFolder() {
    static std::mutex mutex;
    static std::unique_ptr<QTemporaryDir> folder;
    const std::lock_guard lock(mutex);
    if (!folder || !QFileInfo::exists(folder->path()))
        folder = made();
    return folder->isValid() ? Location(folder->path()) : Location();
}

} // namespace lumbra
