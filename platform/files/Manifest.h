// What exactly was copied from a tree, so that a move removes that and nothing else.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <vector>

namespace lumbra::files {

// The state of one file, link or folder. Any change, also one of its attributes alone, makes it another.
struct Stamp {
    uint64_t device = 0;
    uint64_t inode = 0;
    int64_t size = 0;
    uint64_t modified = 0; // nanoseconds since 1970, of which too many begin anew: they are only told apart
    uint64_t changed = 0;

    static Stamp of(const struct stat& facts) {
        const auto nanoseconds = [](const timespec& time) {
            return uint64_t(time.tv_sec) * 1'000'000'000 + uint64_t(time.tv_nsec);
        };
        return {facts.st_dev, facts.st_ino, facts.st_size, nanoseconds(facts.st_mtim), nanoseconds(facts.st_ctim)};
    }

    bool operator==(const Stamp&) const = default;
};

struct Copied {
    enum class Kind {
        file,      // or a link
        folder,    // what follows is in it, until its end
        folderEnd, // without a name and a stamp
    };

    Kind kind = Kind::file;
    bool hasOtherNames = false; // hard links
    std::string name;           // empty for the top
    Stamp stamp;
};

// In the order in which a walk meets it.
using Manifest = std::vector<Copied>;

} // namespace lumbra::files
