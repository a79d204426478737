// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderListings.h"

#include "library/Scanner.h"
#include "platform/Tasks.h"

namespace lumbra {

void FolderListings::request(const Location& folder) {
    const quint64 number = ++m_requests;
    m_latest.insert(folder, number);
    Tasks::run(Tasks::Pool::userInitiated, [folder] {
        return Scanner::list(folder).folders;
    }).then(this, [this, folder, number](const QList<Location>& folders) {
        if (m_latest.value(folder) != number)
            return;
        m_latest.remove(folder);
        const auto known = m_subfolders.constFind(folder);
        if (known != m_subfolders.constEnd() && *known == folders)
            return;
        m_subfolders.insert(folder, folders);
        Q_EMIT changed();
    });
}

} // namespace lumbra
