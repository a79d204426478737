// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderEntries.h"

#include "platform/Descriptor.h"

#include <dirent.h>

#include <string_view>

namespace lumbra::events {

void forEachEntry(const std::string& folder,
                  const std::function<void(int descriptor, const char* name, unsigned char type)>& visit) {
    Descriptor opened = openFolder(AT_FDCWD, folder.c_str());
    DIR* const stream = ::fdopendir(opened.number());
    if (!stream)
        return;
    opened.release();
    while (const dirent* entry = ::readdir(stream)) {
        const std::string_view name(entry->d_name);
        if (name != "." && name != "..")
            visit(::dirfd(stream), entry->d_name, entry->d_type);
    }
    ::closedir(stream);
}

} // namespace lumbra::events
