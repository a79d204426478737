// Giving things other names without ever overwriting what is there, also on file systems that can't promise it.
//
// Names are relative to open folders (or AT_FDCWD). Every call answers with 0 or an error number.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace lumbra::files {

// EEXIST when anything has the new name, EXDEV when it lies on another file system.
int renameNoReplace(int fromFolder, const char* from, int toFolder, const char* to);

// What has the new name goes the moment that the other takes it. A folder that has it is removed with all that it
// holds; what of it can't be removed is left under the old name.
int renameReplacing(int fromFolder, const char* from, int toFolder, const char* to);

} // namespace lumbra::files
