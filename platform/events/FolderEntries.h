// Goes through the entries of one folder.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <string>

namespace lumbra::events {

// Calls `visit` with the open folder's descriptor, the entry's name and its type (a DT_ constant, DT_UNKNOWN where the
// file system does not tell) for each entry but "." and "..". A symbolic link is not followed. Does nothing for what
// cannot be read.
void forEachEntry(const std::string& folder,
                  const std::function<void(int descriptor, const char* name, unsigned char type)>& visit);

} // namespace lumbra::events
