// Our own small JSON files: read within a bound, written in one step.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QJsonObject>

#include <optional>

namespace lumbra::JsonFile {

// Absent when the file can't be read, is no regular file, has more than `largest` bytes, or holds anything but one JSON
// object.
std::optional<QJsonObject> read(const Location& file, qint64 largest = 4 << 20);

// Writes the object pretty-printed with sorted keys and unescaped slashes; readers see the old file or the new one,
// never a mixture. Throws CoreError; the old file is then as it was.
void write(const Location& file, const QJsonObject& object);

// Makes a folder, with those above it; no error if it is there. Throws CoreError.
void makeFolder(const Location& folder);

} // namespace lumbra::JsonFile
