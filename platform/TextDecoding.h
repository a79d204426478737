// The characters of a text's first bytes, whatever they are encoded in. A pure function; safe on any thread.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

namespace lumbra {

// UTF-8 and UTF-16 by their marks; without one, UTF-8 if it is that, else Latin-1. A character that the end cuts in two
// is left out. Lines end in "\n".
QString decodedText(const QByteArray& bytes);

} // namespace lumbra
