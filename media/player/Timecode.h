// Times and codecs in words. Pure functions; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace lumbra {

// "1:05", from an hour on "1:00:00"; with `fraction` the hundredths behind it, "0:59.99". Cut off, never rounded up, so
// that no time is shown before it has come. What is no number reads "0:00", what is negative counts as 0.
QString timecode(double seconds, bool fraction);

// The name that people know a codec by, of its four-character code with the first character in the highest byte; of an
// unknown code the characters themselves.
QString codecName(quint32 code);

// The code of a codec as FFmpeg names it ("h264"), as film files carry it; of a name not in the table its first four
// characters.
quint32 codecCode(QByteArrayView name);

} // namespace lumbra
