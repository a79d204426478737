// The subfolders of those folders whose rows the sidebar shows, listed in the background and kept.
//
// A folder is listed when its row appears or opens, and only then: what is kept may be behind the disk. While it is
// listed again the former answer stands, so that nothing flickers. Main thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

#include <QHash>
#include <QObject>

namespace lumbra {

class FolderListings : public QObject {
    Q_OBJECT

public:
    explicit FolderListings(QObject* parent = nullptr) : QObject(parent) {}

    // Lists the folder off the main thread; `changed` follows if the answer differs from the one that stands. Of
    // several requests for one folder the last one counts.
    void request(const Location& folder);

    // Visible subfolders in natural order, by folder; absent until the first answer.
    const QHash<Location, QList<Location>>& subfolders() const { return m_subfolders; }

Q_SIGNALS:
    void changed();

private:
    QHash<Location, QList<Location>> m_subfolders;
    QHash<Location, quint64> m_latest; // the number of the last request for each folder on its way
    quint64 m_requests = 0;
};

} // namespace lumbra
