// What is packed by gzip or zstd, unpacked as far as a bound: a small file may unpack to anything.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>

namespace lumbra::reader {

// At most the first `limit` bytes of what is packed; what can be had of it where it is damaged or cut short. Empty for
// what is packed by neither.
QByteArray unpacked(const QByteArray& packed, qint64 limit);

} // namespace lumbra::reader
