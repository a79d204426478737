// How a project folder and a git repository know each other: a manifest in the folder names the repository, and one key
// in the repository's own git configuration names the folder. Nothing else is written to the repository.
//
// Every operation blocks for git and the disk, and may be called on any thread. A git that is missing, fails or takes
// longer than five seconds says nothing.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "CoreError.h"
#include "platform/Location.h"

#include <optional>

namespace lumbra::ProjectLinks {

class LinkError : public CoreError {
public:
    using CoreError::CoreError;
};

// The manifest's name in the project folder, and the key in the repository's local git configuration.
inline constexpr std::string_view manifest = ".lumbra.json";
inline constexpr std::string_view gitKey = "lumbra.folder";

// The repository that the folder's manifest names; it need not exist.
std::optional<Location> repoOf(const Location& folder);

// True when there is a `.git` in it, be it a folder or a file.
bool isRepository(const Location& folder);

// Makes the folder if needed and ties the two together; what else stands in the manifest is kept, the date of the first
// link too. Throws CoreError when the folder or the manifest can't be written, LinkError when git's key can't (the
// manifest then stays written).
void link(const Location& folder, const Location& repo);

// Points the repository at a folder that has been renamed. The manifest travels with the folder and is left alone.
void repoint(const Location& repo, const Location& folder);

// Removes the manifest, and the repository's key if it still names this folder.
void unlink(const Location& folder);

// The repository that a location inside a work tree belongs to: for a linked worktree the main one.
std::optional<Location> mainRepositoryContaining(const Location& inside);

// The repository's folder in the library, linked and made if need be. Throws as `link` does.
Location folderForRepository(const Location& repo, const Location& library);

// The first folder of the library, by name, whose manifest names the repository.
std::optional<Location> findFolderForRepository(const Location& repo, const Location& library);

} // namespace lumbra::ProjectLinks
