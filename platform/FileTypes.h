// What a file or folder is by its name alone: image, movie or audio by the extension, a package by the folder's name.
//
// The tables are our own, since the desktop's database of types differs between machines. Pure functions.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <string_view>

namespace lumbra {

enum class FileType : unsigned char { image, movie, audio };

// Absent for everything else. The extension is given lower-cased and without the dot.
std::optional<FileType> fileTypeOf(std::string_view extension);

// True for a folder whose name makes it a package, which is one thing to the user. The case of the extension does not
// count.
bool isPackage(std::string_view folderName);

} // namespace lumbra
