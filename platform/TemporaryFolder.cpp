// SPDX-License-Identifier: GPL-3.0-or-later
#include "TemporaryFolder.h"

#include <QDir>
#include <QTemporaryDir>

namespace lumbra {

Location temporaryFolder() {
    // A QTemporaryDir is readable to its owner only.
    static const QTemporaryDir folder([] {
        const QString session = qEnvironmentVariable("XDG_RUNTIME_DIR");
        const bool isThere = !session.isEmpty() && QFileInfo(session).isWritable();
        return (isThere ? session : QDir::tempPath()) + QStringLiteral("/lumbra-XXXXXX");
    }());
    return folder.isValid() ? Location(folder.path()) : Location();
}

} // namespace lumbra
