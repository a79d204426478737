// Remembers hidden copies under way, one to a line with the process that makes it, so that another process can remove
// what a dead one has left. Several processes share the file.
//
// A journal that can't be read or written never stops a transfer: it only means that a crash would leave a hidden copy.
// What it says is not trusted: only something whose name has the form of a hidden copy's is ever removed.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QList>
#include <QSet>

namespace lumbra::files {

// A name that nothing has: ".lumbra-part-" and a UUID.
QByteArray partName();
bool isPartName(std::string_view name);

class Journal {
public:
    explicit Journal(Location file) : m_file(std::move(file)) {}

    // Before the copies are begun; on disk when it returns.
    void note(const QList<Location>& parts) const;
    // Once they are gone or have their final names.
    void forget(const QList<Location>& parts) const;

    // Removes the copies whose processes have ended, and the lines about them. One on a disk that isn't there now stays
    // noted.
    void clean() const;

private:
    void drop(const QSet<QByteArray>& lines) const;

    Location m_file;
};

} // namespace lumbra::files
