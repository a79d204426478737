// SPDX-License-Identifier: GPL-3.0-or-later
#include "Location.h"

#include "FileTypes.h"

#include <QDir>

#include <sys/stat.h>

#include <algorithm>
#include <climits>
#include <filesystem>

namespace lumbra {

namespace {

bool isThere(const char* path) {
    struct stat status;
    return ::stat(path, &status) == 0;
}

// How much of an absolute path, up to a slash or its end, the disk can resolve: what is missing, lies in a circle of
// links or in a folder that may not be entered can't be. 0 for no more than the root.
size_t resolvableLength(const std::string& path) {
    // No system call takes a path as long as PATH_MAX, so that there is no need to ask about one.
    size_t length = path.size() < PATH_MAX ? path.size() : path.rfind('/', PATH_MAX - 1);
    while (length > 0 && !isThere(path.substr(0, length).c_str()))
        length = path.rfind('/', length - 1);
    return length;
}

} // namespace

Location::Location(QByteArray path) : m_path(std::move(path)) {
    if (m_path.contains('\0'))
        m_path.clear();
    qsizetype length = m_path.size();
    while (length > 1 && m_path[length - 1] == '/')
        --length;
    m_path.truncate(length);
}

Location::Location(QStringView path) : Location(path.isValidUtf16() ? path.toUtf8() : QByteArray()) {}

std::optional<Location> Location::fromFileSystem(std::string_view bytes) {
    const QByteArrayView view(bytes.data(), qsizetype(bytes.size()));
    if (bytes.find('\0') != std::string_view::npos || !view.isValidUtf8())
        return std::nullopt;
    return Location(view.toByteArray());
}

Location Location::home() {
    return Location(QDir::homePath());
}

Location Location::expandingTilde(QStringView path) {
    if (path == u"~")
        return home();
    if (path.startsWith(u"~/"))
        return Location(QString(QDir::homePath() + path.mid(1).toString()));
    return Location(path);
}

Location Location::canonical() const {
    namespace fs = std::filesystem;
    if (isEmpty())
        return {};
    std::error_code error;
    const std::string path = fs::absolute(view(), error).native();
    const size_t length = resolvableLength(path);
    const std::string beginning = path.substr(0, std::max<size_t>(length, 1));
    fs::path resolved = fs::canonical(beginning, error);
    if (error) // it has gone since
        resolved = beginning;
    const std::string standard = fs::path(resolved.native() + path.substr(length)).lexically_normal().native();
    return Location(QByteArray(standard.data(), qsizetype(standard.size())));
}

bool Location::isInside(const Location& other) const {
    return canonical().isAtOrBelow(other.canonical());
}

bool Location::isAtOrBelow(const Location& folder) const {
    if (folder.isEmpty() || !m_path.startsWith(folder.m_path))
        return false;
    return m_path.size() == folder.m_path.size() || folder.m_path.endsWith('/') || m_path[folder.m_path.size()] == '/';
}

Location Location::parent() const {
    const qsizetype slash = m_path.lastIndexOf('/');
    if (slash < 0)
        return {};
    return Location(m_path.left(slash == 0 ? 1 : slash));
}

std::string_view Location::lastComponent() const {
    return view().substr(size_t(m_path.lastIndexOf('/') + 1));
}

QString Location::name() const {
    const auto last = lastComponent();
    return QString::fromUtf8(last.data(), qsizetype(last.size()));
}

std::string_view Location::extension() const {
    return extensionOf(lastComponent());
}

Location Location::child(std::string_view name) const {
    if (isEmpty())
        return {};
    QByteArray path;
    path.reserve(m_path.size() + 1 + qsizetype(name.size()));
    path += m_path;
    if (!path.endsWith('/'))
        path += '/';
    path.append(name.data(), qsizetype(name.size()));
    return Location(std::move(path));
}

Location Location::child(QStringView name) const {
    const QByteArray bytes = name.toUtf8();
    return child(std::string_view(bytes.constData(), size_t(bytes.size())));
}

bool Location::exists() const {
    return isThere(m_path.constData());
}

bool Location::isFolder() const {
    struct stat status;
    return ::stat(m_path.constData(), &status) == 0 && S_ISDIR(status.st_mode);
}

QString Location::abbreviated() const {
    const Location homeFolder = home();
    if (homeFolder.m_path.size() > 1 && isAtOrBelow(homeFolder))
        return u'~' + QString::fromUtf8(m_path.mid(homeFolder.m_path.size()));
    return toString();
}

} // namespace lumbra
