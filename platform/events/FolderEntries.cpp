// SPDX-License-Identifier: GPL-3.0-or-later
#include "FolderEntries.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <string_view>

namespace lumbra::events {

void forEachEntry(const std::string& folder,
                  const std::function<void(int descriptor, const char* name, unsigned char type)>& visit) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0)
        return;
    DIR* stream = ::fdopendir(descriptor);
    if (!stream) {
        ::close(descriptor);
        return;
    }
    while (const dirent* entry = ::readdir(stream)) {
        const std::string_view name(entry->d_name);
        if (name != "." && name != "..")
            visit(descriptor, entry->d_name, entry->d_type);
    }
    ::closedir(stream);
}

} // namespace lumbra::events
