// An open file, folder or the like that is closed with its owner.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace lumbra {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(Descriptor&& other) noexcept : m_number(std::exchange(other.m_number, -1)) {}
    Descriptor& operator=(Descriptor&& other) noexcept {
        std::swap(m_number, other.m_number);
        return *this;
    }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() { close(); }

    explicit operator bool() const { return m_number >= 0; }
    int number() const { return m_number; }

    void close() {
        if (m_number >= 0)
            ::close(std::exchange(m_number, -1)); // does not touch errno when it succeeds
    }

    // Whoever has taken the number over closes it.
    void release() { m_number = -1; }

private:
    int m_number = -1;
};

// The folder `name` of an open folder (or AT_FDCWD), never through a link. Invalid, with errno set, when it can't be
// opened.
inline Descriptor openFolder(int folder, const char* name) {
    return Descriptor(::openat(folder, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
}

} // namespace lumbra
