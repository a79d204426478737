// The files among what a drag brings, from other programs or from a tile of our own.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QList>
#include <QObject>
#include <QUrl>
#include <QtQml/qqmlregistration.h>

#include <algorithm>

namespace lumbra {

inline bool isFileHere(const QUrl& url) {
    return url.isLocalFile() && (url.host().isEmpty() || url.host() == QLatin1String("localhost"));
}

// In the order given. What is no file of this machine is left out.
inline QList<Location> droppedFiles(const QList<QUrl>& urls) {
    QList<Location> files;
    files.reserve(urls.size());
    for (const QUrl& url : urls)
        if (isFileHere(url))
            files.append(Location(url.path(QUrl::FullyDecoded)));
    return files;
}

// For views, which say yes to a drag only if it brings some: a web address is none.
class DroppedFiles : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    Q_INVOKABLE bool areIn(const QList<QUrl>& urls) const { return std::ranges::any_of(urls, isFileHere); }
};

} // namespace lumbra
