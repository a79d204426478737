// SPDX-License-Identifier: GPL-3.0-or-later
#include "Location.h"

#include <QDir>

#include <sys/stat.h>

#include <filesystem>

namespace lumbra {

namespace {

void dropTrailingSlashes(QByteArray& path) {
    qsizetype length = path.size();
    while (length > 1 && path[length - 1] == '/')
        --length;
    path.truncate(length);
}

} // namespace

Location::Location(QByteArray path) : m_path(std::move(path)) {
    dropTrailingSlashes(m_path);
}

Location::Location(QStringView path) : Location(path.toUtf8()) {}

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
    std::error_code error;
    const fs::path given{std::string(view())};
    fs::path resolved = fs::weakly_canonical(given, error);
    // A loop of links or a folder that may not be entered: the text alone can still be made standard.
    if (error)
        resolved = fs::absolute(given, error).lexically_normal();
    if (resolved.is_relative()) {
        // weakly_canonical leaves a path relative when not even its first component exists.
        resolved = fs::absolute(resolved, error).lexically_normal();
    }
    const std::string& text = resolved.native();
    return Location(QByteArray(text.data(), qsizetype(text.size())));
}

bool Location::isInside(const Location& other) const {
    return canonical().isAtOrBelow(other.canonical());
}

bool Location::isAtOrBelow(const Location& folder) const {
    if (!m_path.startsWith(folder.m_path))
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
    const auto last = lastComponent();
    const size_t dot = last.rfind('.');
    if (dot == std::string_view::npos || dot == 0)
        return {};
    return last.substr(dot + 1);
}

Location Location::child(std::string_view name) const {
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
    struct stat status;
    return ::stat(m_path.constData(), &status) == 0;
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
