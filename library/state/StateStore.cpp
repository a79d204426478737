// SPDX-License-Identifier: GPL-3.0-or-later
#include "StateStore.h"

#include "core/CoreError.h"
#include "core/JsonFile.h"

namespace lumbra::StateStore {

namespace {

// A state file of this size lists a hundred thousand names; anything larger is not one.
constexpr qint64 largestFile = 16 * 1024 * 1024;

Location fileIn(const Location& root) {
    return root.child(".lumbra").child("library.json");
}

} // namespace

std::optional<LibraryState> load(const Location& root) {
    const auto object = JsonFile::read(fileIn(root), largestFile);
    return object ? LibraryState::fromJson(*object) : std::nullopt;
}

void save(const LibraryState& state, const Location& root) {
    const Location file = fileIn(root);
    try {
        JsonFile::makeFolder(file.parent());
        JsonFile::write(file, state.toJson());
    } catch (const CoreError&) {
        // Silent, since the next change writes the whole state again.
    }
}

} // namespace lumbra::StateStore
