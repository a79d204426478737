// SPDX-License-Identifier: GPL-3.0-or-later
#include "KnownFolder.h"

#include <sys/stat.h>

namespace lumbra {

std::optional<KnownFolder::Identity> KnownFolder::identityAt(const Location& path) {
    struct stat status;
    if (::stat(path.path().constData(), &status) != 0 || !S_ISDIR(status.st_mode))
        return std::nullopt;
    return Identity(status.st_dev, status.st_ino);
}

} // namespace lumbra
