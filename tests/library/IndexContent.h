// What an index holds, in a form that two can be compared in.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "library/AssetIndex.h"

#include <map>
#include <string>

namespace lumbra {

inline std::string text(const Location& location) {
    return std::string(location.view());
}

inline std::map<Location, Asset> content(const AssetIndex& index) {
    std::map<Location, Asset> content;
    for (const auto& folder : index.folders())
        for (size_t i = 0; i < folder->size(); ++i)
            content[folder->assetAt(i).url] = folder->assetAt(i);
    return content;
}

} // namespace lumbra
