// Extended attributes of files: small named values that move, copy and rename with the file.
//
// Every attribute has its product name, such as "com.lumbra.starred"; on disk it stands in the system's namespace for
// users, as "user.com.lumbra.starred". All calls are stateless, block only for the disk and are safe on any thread. A
// symbolic link stands for its target, but in the `...At` calls, which a walk makes on what it has just examined.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "Location.h"

#include <QByteArray>

#include <array>
#include <optional>
#include <span>
#include <string_view>

namespace lumbra {

// An attribute's name with its namespace, made once at compile time rather than at each of a million reads.
class AttributeName {
public:
    template <size_t size>
    consteval AttributeName(const char (&productName)[size]) {
        static_assert(prefix.size() + size <= capacity);
        size_t at = 0;
        for (const char letter : prefix)
            m_text[at++] = letter;
        for (const char letter : productName)
            m_text[at++] = letter;
        m_length = at - 1; // without the terminator
    }

    // As the system knows it, NUL-terminated.
    const char* systemName() const { return m_text.data(); }
    std::string_view systemView() const { return {m_text.data(), m_length}; }

private:
    static constexpr std::string_view prefix = "user.";
    static constexpr size_t capacity = 64;

    std::array<char, capacity> m_text{};
    size_t m_length = 0;
};

namespace ExtendedAttributes {

// The whole value, however long it is. Absent when there is no such attribute or it can't be read.
std::optional<QByteArray> read(const Location& file, const AttributeName& name);

// The value if it has at most `limit` bytes; a longer one is absent, as one that can't be read is.
std::optional<QByteArray> read(const Location& file, const AttributeName& name, size_t limit);

// The value of the entry `file` of an open folder, into the caller's buffer: what of the buffer was filled, or absent
// when there is no such attribute, it can't be read, or it is longer than the buffer. One system call.
std::optional<std::string_view> readAt(int folder, const char* file, const AttributeName& name, std::span<char> buffer);

// Which attributes an entry has, in one system call.
class NamesAt {
public:
    // Absent when they can't be told: the list is too long to be held here.
    static std::optional<NamesAt> of(int folder, const char* file);

    bool holds(const AttributeName& name) const;

private:
    NamesAt() = default;

    std::array<char, 1024> m_names; // each one NUL-terminated
    size_t m_length = 0;
};

// Sets the whole value, replacing an older one. False when it could not be set; the older one is then still there.
bool write(const Location& file, const AttributeName& name, QByteArrayView value);

enum class Removal {
    removed,
    wasAbsent, // the file exists and has no such attribute
    failed,    // no such file, no right to change it, or a file system without attributes
};

Removal remove(const Location& file, const AttributeName& name);

// The names of all the attributes that users and programs may set on the file, with the namespace, as copying needs
// them.
QList<QByteArray> systemNames(const Location& file);

} // namespace ExtendedAttributes

} // namespace lumbra
