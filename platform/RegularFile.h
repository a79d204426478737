// A regular file opened to be read. What only bears a file's name may be a pipe or a device, which may never begin or
// never end: nothing here waits for such a thing, and it reads as absent.
//
// Blocks for the disk; not for the main thread, unless the file is small and ours.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Descriptor.h"
#include "Location.h"

#include <sys/stat.h>

#include <optional>

namespace lumbra {

class RegularFile {
public:
    // Absent for what can't be opened or is no regular file. A symbolic link stands for its target.
    static std::optional<RegularFile> open(const Location& location);

    int descriptor() const { return m_descriptor.number(); }

    // When it was opened; it may grow and shrink since.
    const struct stat& facts() const { return m_facts; }
    qint64 size() const { return m_facts.st_size; } // bytes

    // At most `limit` bytes from where it stands, less only at its end. Absent when the disk fails.
    std::optional<QByteArray> read(qint64 limit) const;

    // All of a file; absent if it has more than `largest` bytes, too.
    static std::optional<QByteArray> bytes(const Location& location, qint64 largest);

private:
    RegularFile(Descriptor descriptor, const struct stat& facts)
        : m_descriptor(std::move(descriptor)), m_facts(facts) {}

    Descriptor m_descriptor;
    struct stat m_facts;
};

} // namespace lumbra
