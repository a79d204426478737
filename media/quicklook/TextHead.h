// The beginning of a text file: as much as anybody reads of it, so that the largest one opens as fast as a small one.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace lumbra {

struct TextHead {
    QString text;        // lines end in "\n"
    qint64 size = 0;     // bytes of the whole file
    bool isWhole = true; // false: the file goes on

    // Reads at most `limit` bytes; of a file that is longer, no line in half. Absent when there is no such regular file
    // or it can't be read. Blocks for the disk.
    static std::optional<TextHead> read(const Location& file, qint64 limit);
};

} // namespace lumbra
