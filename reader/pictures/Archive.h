// A zip file's entries by their names, each unpacked as far as a bound.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "reader/OpenedFile.h"

#include <QByteArray>

#include <memory>

struct zip;

namespace lumbra::reader {

class Archive {
public:
    // Nothing when the file is no archive, or a damaged one. `file` must live as long as the result.
    static std::unique_ptr<Archive> open(const OpenedFile& file);

    // The bytes of one entry; empty when there is none, when it is encrypted or damaged, and when it unpacks to more
    // than `limit` bytes.
    QByteArray entry(const char* name, qint64 limit) const;

private:
    explicit Archive(zip* opened) : m_zip(opened, &discard) {}
    static void discard(zip* opened);

    std::unique_ptr<zip, void (*)(zip*)> m_zip;
};

} // namespace lumbra::reader
