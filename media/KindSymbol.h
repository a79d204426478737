// The name of the symbol that stands for a kind of file, wherever there is no picture of it.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/Model.h"

namespace lumbra {

QString kindSymbol(AssetKind kind);

} // namespace lumbra
