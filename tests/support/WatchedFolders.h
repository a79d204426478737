// What tests of watched folders have in common.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/FileEvents.h"

#include <fcntl.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <string_view>

namespace lumbra {

inline std::string text(const Location& location) {
    return std::string(location.view());
}

// A name with a number in it.
inline std::string numbered(std::string_view before, int number, std::string_view after = {}) {
    std::string name(before);
    name.append(std::to_string(number));
    name.append(after);
    return name;
}

// A file of so many bytes. It is never emptied first: some file systems then wait for the disk.
inline void write(const std::filesystem::path& path, size_t bytes = 1) {
    const int file = ::open(path.c_str(), O_CREAT | O_WRONLY | O_CLOEXEC, 0644);
    if (file < 0)
        return; // somebody else was quicker
    [[maybe_unused]] const int failed = ::ftruncate(file, off_t(bytes));
    ::close(file);
}

inline void write(const Location& location, size_t bytes = 1) {
    write(text(location), bytes);
}

// Windows so short that no test waits for one.
inline FileEvents::Options quick() {
    FileEvents::Options options;
    options.latency = 0.02;
    return options;
}

inline FileEvents::Options withoutDotFolders() {
    FileEvents::Options options = quick();
    options.enters = [](std::string_view name) { return !name.starts_with('.'); };
    return options;
}

// The folders that are to have a watch, the root included.
inline size_t foldersIn(const Location& root) {
    size_t count = 1;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(text(root)))
        count += entry.is_directory() ? 1 : 0;
    return count;
}

} // namespace lumbra
