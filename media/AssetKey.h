// What anything read from a file is kept under: its path and when it was written, so that a file that is rewritten in
// place is read anew.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

#include <QLocale>
#include <QString>

namespace lumbra {

inline QString assetKey(const Asset& asset) {
    return asset.url.toString() + u'|' + QString::number(asset.modified.seconds, 'f', QLocale::FloatingPointShortest);
}

} // namespace lumbra
