// Makes files, folders and attributes for tests, and tells all that is to be seen of a tree, so that two can be
// compared.
//
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/Location.h"

#include <QByteArrayList>
#include <QCryptographicHash>
#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

namespace lumbra {

inline void writeFile(const std::string& path, const QByteArray& bytes) {
    std::ofstream(path, std::ios::binary).write(bytes.constData(), bytes.size());
}

inline QByteArray fileBytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    QByteArray bytes(std::max<qsizetype>(qsizetype(file.tellg()), 0), '\0');
    if (bytes.isEmpty()) // as /proc says of what it has
        return QByteArray::fromStdString({std::istreambuf_iterator<char>(file.seekg(0)), {}});
    file.seekg(0).read(bytes.data(), bytes.size());
    return bytes;
}

inline std::string pathOf(const Location& location) {
    return location.path().toStdString();
}

inline QByteArray fileBytes(const Location& location) {
    return fileBytes(pathOf(location));
}

inline bool setAttribute(const std::string& path, const char* name, const QByteArray& value) {
    return ::setxattr(path.c_str(), name, value.constData(), size_t(value.size()), 0) == 0;
}

inline bool setAttribute(const Location& location, const char* name, const QByteArray& value) {
    return setAttribute(pathOf(location), name, value);
}

// Every attribute with its value; empty where there are none.
inline std::map<QByteArray, QByteArray> attributesOf(const std::string& path) {
    std::map<QByteArray, QByteArray> all;
    QByteArray names(65536, '\0');
    const ssize_t listed = ::llistxattr(path.c_str(), names.data(), size_t(names.size()));
    names.truncate(std::max<ssize_t>(listed, 0));
    for (const QByteArray& name : names.split('\0')) {
        QByteArray value(65536, '\0');
        const ssize_t length = ::lgetxattr(path.c_str(), name.constData(), value.data(), size_t(value.size()));
        if (name.startsWith("user.") && length >= 0)
            all[name] = value.left(length);
    }
    return all;
}

inline std::map<QByteArray, QByteArray> attributesOf(const Location& location) {
    return attributesOf(pathOf(location));
}

// One line for each thing in the tree, and for its top: its path from there, kind, mode, size, time to the nanosecond,
// attributes and what it holds.
inline QByteArrayList everythingIn(const Location& top) {
    namespace fs = std::filesystem;
    QByteArrayList lines;
    const auto tell = [&](const std::string& path) {
        struct stat facts;
        if (::lstat(path.c_str(), &facts) != 0)
            return;
        QByteArray line = QByteArray::fromStdString(path.substr(pathOf(top).size())).toPercentEncoding("/ ");
        line += " mode " + QByteArray::number(facts.st_mode, 8) + " time "
                + QByteArray::number(qint64(facts.st_mtim.tv_sec)) + '.'
                + QByteArray::number(qint64(facts.st_mtim.tv_nsec));
        for (const auto& [name, value] : attributesOf(path))
            line += ' ' + name + '=' + value.toHex();
        if (S_ISREG(facts.st_mode)) {
            line += " size " + QByteArray::number(qint64(facts.st_size)) + ' '
                    + QCryptographicHash::hash(fileBytes(path), QCryptographicHash::Md5).toHex();
        } else if (S_ISLNK(facts.st_mode)) {
            line += " to " + QByteArray::fromStdString(fs::read_symlink(path).native());
        }
        lines.append(line);
    };
    tell(pathOf(top));
    if (fs::is_directory(fs::symlink_status(pathOf(top)))) {
        for (const auto& entry : fs::recursive_directory_iterator(pathOf(top)))
            tell(entry.path().native());
    }
    std::ranges::sort(lines);
    return lines;
}

// The names in a folder, in order.
inline QByteArrayList namesIn(const Location& folder) {
    QByteArrayList names;
    for (const auto& entry : std::filesystem::directory_iterator(pathOf(folder)))
        names.append(QByteArray::fromStdString(entry.path().filename().native()));
    std::ranges::sort(names);
    return names;
}

// A folder with some of all that folders hold.
inline void makeMixedTree(const Location& top) {
    const std::string path = pathOf(top);
    std::filesystem::create_directories(path + "/deep/er");
    std::filesystem::create_directory(path + "/empty");
    writeFile(path + "/a.png", "a picture");
    writeFile(path + "/deep/nothing", "");
    writeFile(path + "/deep/er/large.bin", QByteArray(700'001, 'l'));
    writeFile(path + "/not \xff\xfe text", "bytes");
    writeFile(path + "/deep/new\nline %41", "n");
    std::filesystem::create_symlink("a.png", path + "/link");
    std::filesystem::create_symlink("/no/where", path + "/broken");
    setAttribute(path + "/a.png", "user.com.lumbra.starred", "1");
    setAttribute(path + "/a.png", "user.other", QByteArray("\0\xff\n binary", 10));
    setAttribute(path + "/deep", "user.com.lumbra.note", "of a folder");
    setAttribute(path, "user.top", "");
    ::chmod((path + "/deep/nothing").c_str(), 0640);
    ::chmod((path + "/empty").c_str(), 0711);
    const timespec times[2] = {{1'000'000'000, 123'456'789}, {1'111'111'111, 987'654'321}};
    for (const char* entry : {"/a.png", "/link", "/deep/er", "/deep", ""})
        ::utimensat(AT_FDCWD, (path + entry).c_str(), times, AT_SYMLINK_NOFOLLOW);
}

// Empties a temporary folder at the end of a test: Qt's own can't remove names that are no text, nor what is in
// read-only folders.
class EmptiedAtEnd {
public:
    explicit EmptiedAtEnd(Location folder) : m_folder(std::move(folder)) {}
    ~EmptiedAtEnd() {
        namespace fs = std::filesystem;
        std::error_code error;
        for (const auto& entry : fs::recursive_directory_iterator(pathOf(m_folder), error)) {
            if (entry.is_directory() && !entry.is_symlink())
                fs::permissions(entry.path(), fs::perms::owner_all, fs::perm_options::add, error);
        }
        for (const auto& entry : fs::directory_iterator(pathOf(m_folder), error))
            fs::remove_all(entry.path(), error);
    }
    Q_DISABLE_COPY_MOVE(EmptiedAtEnd)

private:
    Location m_folder;
};

} // namespace lumbra
