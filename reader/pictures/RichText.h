// What a document of the Rich Text Format says, without how it looks.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TextPage.h"

#include <QByteArray>

namespace lumbra::reader {

Paragraphs richText(const QByteArray& document);

} // namespace lumbra::reader
