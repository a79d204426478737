// What a page of HTML says, without how it looks: no style, script, picture or address of it is followed.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "TextPage.h"

namespace lumbra::reader {

Paragraphs webPageText(const QString& markup);

} // namespace lumbra::reader
