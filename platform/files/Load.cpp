// SPDX-License-Identifier: GPL-3.0-or-later
#include "Load.h"

#include "Failure.h"
#include "FreeName.h"

#include <linux/limits.h>

#include <array>
#include <cerrno>
#include <cstdio>

namespace lumbra::files {

namespace {

constexpr int mostNames = 1'000'000;

bool isSame(const struct stat& a, const struct stat& b) {
    return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

// Canonical but for a link in the last component: that is carried itself.
Location place(const Location& location) {
    return location.parent().canonical().child(location.lastComponent());
}

} // namespace

TargetFolder::TargetFolder(const Location& location)
    : m_givenAs(location), m_folder(::open(location.path().constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC)) {
    if (!m_folder || ::fstat(m_folder.number(), &m_facts) != 0)
        throw Failure(errno, location.view());
}

Location TargetFolder::location() const {
    struct stat now;
    if (::stat(m_givenAs.path().constData(), &now) == 0 && isSame(now, m_facts))
        return m_givenAs;
    char itself[32];
    std::snprintf(itself, sizeof itself, "/proc/self/fd/%d", m_folder.number());
    std::array<char, PATH_MAX> path;
    const ssize_t length = ::readlink(itself, path.data(), path.size());
    if (length <= 0)
        return m_givenAs;
    return Location::fromFileSystem({path.data(), size_t(length)}).value_or(m_givenAs);
}

void refuseNonsense(const Files::Transfer& transfer) {
    const Location& source = transfer.source;
    const Location& target = transfer.target;
    if (isImpossibleName(source) || isImpossibleName(target))
        throw Failure(EINVAL, source.view());
    if (target.lastComponent().size() > NAME_MAX)
        throw Failure(ENAMETOOLONG, source.view()); // rather than when all of it is copied
    struct stat facts;
    if (::lstat(source.path().constData(), &facts) != 0)
        throw Failure(errno, source.view());
    if (S_ISDIR(facts.st_mode) && target.parent().isInside(source))
        throw Failure(EINVAL, source.view(), QStringLiteral("a folder can't go into itself"));
    if (transfer.ifTaken != Files::Transfer::IfTaken::replace)
        return;
    struct stat taken;
    if (::lstat(target.path().constData(), &taken) != 0)
        return;
    if (isSame(facts, taken))
        throw Failure(EINVAL, source.view(), QStringLiteral("it can't take its own place"));
    if (S_ISDIR(taken.st_mode) && place(source).isAtOrBelow(place(target)))
        throw Failure(EINVAL, source.view(), QStringLiteral("it can't take the place of a folder that it is in"));
}

bool isImpossibleName(const Location& location) {
    const std::string_view name = location.lastComponent();
    return name.empty() || name == "." || name == ".." || location.path().contains('\0');
}

int takeFreeName(QString& name, const std::function<int(const QString&)>& tryName) {
    const QString wished = name;
    int code = tryName(name);
    for (int counter = 2; code == EEXIST && counter < mostNames; ++counter) {
        name = numbered(wished, counter);
        code = tryName(name);
    }
    return code;
}

} // namespace lumbra::files
