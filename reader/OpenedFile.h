// A regular file opened for reading, and what its first bytes are. Pipes, folders and devices are not opened, so that
// none can hold the reader up.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/RegularFile.h"

#include <QByteArray>
#include <QFile>

#include <memory>
#include <string>

namespace lumbra::reader {

class OpenedFile {
public:
    // Nothing when the path is no regular file, can't be read or is empty.
    static std::unique_ptr<OpenedFile> open(const QByteArray& path);

    Q_DISABLE_COPY_MOVE(OpenedFile)

    int descriptor() const { return m_file.descriptor(); }

    // Bytes, when it was opened; it may grow and shrink since.
    qint64 size() const { return m_identity.size; }

    // Tells whether two that were opened at different times are the same bytes, as far as the file system knows.
    struct Identity {
        quint64 device = 0, number = 0;
        qint64 size = 0, seconds = 0, nanoseconds = 0; // when it was written last

        friend bool operator==(const Identity&, const Identity&) = default;
    };
    const Identity& identity() const { return m_identity; }

    // The first bytes, at most 4,096.
    const QByteArray& head() const { return m_head; }

    // Lower-cased, without the dot.
    const QByteArray& extension() const { return m_extension; }

    // The file as a device at its start. It takes the device before along.
    QFile& device();

    // At most `limit` bytes from the start.
    QByteArray bytes(qint64 limit);

private:
    OpenedFile(RegularFile file, const Identity& identity, QByteArray extension);

    RegularFile m_file;
    Identity m_identity;
    QByteArray m_head;
    QByteArray m_extension;
    std::unique_ptr<QFile> m_device;
};

} // namespace lumbra::reader
