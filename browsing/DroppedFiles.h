// The files among what a drag brings, from other programs or from a tile of our own.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QList>
#include <QUrl>

namespace lumbra {

// In the order given. What is no file of this machine is left out.
inline QList<Location> droppedFiles(const QList<QUrl>& urls) {
    QList<Location> files;
    files.reserve(urls.size());
    for (const QUrl& url : urls)
        if (url.isLocalFile() && (url.host().isEmpty() || url.host() == QLatin1String("localhost")))
            files.append(Location(url.path(QUrl::FullyDecoded)));
    return files;
}

} // namespace lumbra
