// What a file or folder is by its name alone: image, movie or audio by the extension, a package by the folder's name.
//
// The tables are our own, since the desktop's database of types differs between machines. Pure functions.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace lumbra {

// What follows the last dot of a name; empty when there is no dot, or when it is the first or the last character.
std::string_view extensionOf(std::string_view name);

// The extension of a name in small letters, made without allocating: a walk looks at a million names. Empty for one
// that is longer than any that means something here.
class SmallExtension {
public:
    explicit SmallExtension(std::string_view name);

    std::string_view view() const { return {m_letters.data(), m_length}; }

private:
    std::array<char, 16> m_letters;
    size_t m_length = 0;
};

enum class FileType : unsigned char { image, movie, audio };

// Absent for everything else. The extension is given in small letters and without the dot.
std::optional<FileType> fileTypeOf(std::string_view extension);

// True for a folder whose name makes it a package, which is one thing to the user. The case of the extension does not
// count.
bool isPackage(std::string_view folderName);

} // namespace lumbra
